#include <windows.h>

#include <cstring>
#include <new>

#include "host/system/LockedText.h"

namespace qx {
namespace {

// A function that newer systems have; null elsewhere.
template <class Function>
Function FindInKernel(const char* name) {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(kernel, name)));
}

// Of the reports that the system makes of a program that fell.
void LeaveOutOfReports(void* memory, std::size_t size) {
  using Exclude = HRESULT(WINAPI*)(const void*, DWORD);
  static const auto exclude = FindInKernel<Exclude>("WerRegisterExcludedMemoryBlock");
  if (exclude != nullptr) exclude(memory, static_cast<DWORD>(size));
}

void ReportAgain(void* memory) {
  using Include = HRESULT(WINAPI*)(const void*);
  static const auto include = FindInKernel<Include>("WerUnregisterExcludedMemoryBlock");
  if (include != nullptr) include(memory);
}

}  // namespace

LockedText::LockedText(std::string_view text) : size_(text.size()) {
  if (text.empty()) return;
  const std::size_t size = text.size() + 1;
  bytes_ = static_cast<char*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (bytes_ == nullptr) throw std::bad_alloc();
  // A system that locks no more is no reason to do without the secret.
  VirtualLock(bytes_, size);
  LeaveOutOfReports(bytes_, size);
  std::memcpy(bytes_, text.data(), text.size());
}

LockedText::~LockedText() {
  if (bytes_ == nullptr) return;
  SecureZeroMemory(bytes_, size_);
  ReportAgain(bytes_);
  VirtualUnlock(bytes_, size_ + 1);
  VirtualFree(bytes_, 0, MEM_RELEASE);
}

void Wipe(std::string& text) {
  // What lies behind the end was text once.
  text.resize(text.capacity());
  SecureZeroMemory(text.data(), text.size());
  text.clear();
}

void KeepOutOfDumps() {
  using SetFlags = HRESULT(WINAPI*)(DWORD);
  static const auto setFlags = FindInKernel<SetFlags>("WerSetFlags");
  constexpr DWORD kNoHeap = 1;
  if (setFlags != nullptr) setFlags(kNoHeap);
}

}  // namespace qx
