#include <windows.h>

#include <shellapi.h>  // needs what stands above it

#include <cstdlib>

#include "host/testing/TestChild.h"

namespace qx::test_child {
namespace {

std::string Narrow(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow.data(), size, nullptr, nullptr);
  narrow.pop_back();
  return narrow;
}

std::wstring Wide(const std::string& text) {
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, wide.data(), size);
  wide.pop_back();
  return wide;
}

BOOL WINAPI IgnoreControl(DWORD) { return TRUE; }

}  // namespace

std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  wchar_t** const texts = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Narrow(texts[i]));
  LocalFree(texts);
  return arguments;
}

std::string CommandLine() { return Narrow(GetCommandLineW()); }

std::string CurrentFolder() {
  wchar_t folder[MAX_PATH];
  return GetCurrentDirectoryW(MAX_PATH, folder) != 0 ? Narrow(folder) : "?";
}

void Write(int stream, std::string_view bytes) {
  const HANDLE handle = GetStdHandle(stream == 1 ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) ExitProcess(3);
    bytes.remove_prefix(written);
  }
}

std::size_t ReadInput() {
  char buffer[4096];
  std::size_t total = 0;
  DWORD count = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof buffer, &count, nullptr) && count > 0)
    total += count;
  return total;
}

void Sleep(int milliseconds) { ::Sleep(static_cast<DWORD>(milliseconds)); }

void Spawn(const std::vector<std::string>& orders) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring line = L"qx_test_child";
  for (const std::string& order : orders) line += L" \"" + Wide(order) + L"\"";
  STARTUPINFOW info{};
  info.cb = sizeof info;
  info.dwFlags = STARTF_USESTDHANDLES;
  info.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  info.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  info.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(program, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &info, &started)) {
    ExitProcess(3);
  }
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
}

void LeaveSession() { FreeConsole(); }

void DropEnvironment() {}

void IgnoreRequests() { SetConsoleCtrlHandler(IgnoreControl, TRUE); }

void KillParent() {}

// The default window procedure destroys a window that is asked to close.
bool AwaitRequest() {
  const HWND window = CreateWindowExW(0, L"STATIC", L"qx_test_child", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100,
                                      nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  MSG message;
  while (IsWindow(window) && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return window != nullptr;
}

void EndBySignal(int signal) { ExitProcess(static_cast<UINT>(signal)); }

// Handles of files and pipes that came by inheritance are inheritable still.
int OpenBeyondStandard() {
  int count = 0;
  for (std::uintptr_t number = 4; number < 4096; number += 4) {
    const HANDLE handle = reinterpret_cast<HANDLE>(number);
    DWORD flags = 0;
    const bool standard = handle == GetStdHandle(STD_INPUT_HANDLE) ||
                          handle == GetStdHandle(STD_OUTPUT_HANDLE) ||
                          handle == GetStdHandle(STD_ERROR_HANDLE);
    if (standard || !GetHandleInformation(handle, &flags) || (flags & HANDLE_FLAG_INHERIT) == 0) continue;
    if (GetFileType(handle) == FILE_TYPE_DISK || GetFileType(handle) == FILE_TYPE_PIPE) ++count;
  }
  return count;
}

}  // namespace qx::test_child
