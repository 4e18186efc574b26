#include "platform/WindowsText.h"

#include <windows.h>

#include <algorithm>

#include "platform/Texts.h"

namespace qx::system {

std::wstring ToWide(std::string_view text) {
  if (const auto wide = ToUtf16Strict(text)) return std::wstring(wide->begin(), wide->end());
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size)));
  return wide;
}

std::string FromWide(std::wstring_view text) { return ToUtf8(std::u16string(text.begin(), text.end())); }

std::wstring WidePath(std::string_view path) {
  // The system's limit for paths without the prefix, less what a folder needs for a short name in it.
  constexpr std::size_t kLongest = MAX_PATH - 12;
  std::wstring wide = ToWide(path);
  if (wide.size() < kLongest || wide.starts_with(L"\\\\?\\")) return wide;
  std::wstring full(32768, L'\0');
  full.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  if (full.empty()) return wide;
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

std::string ErrorText(unsigned long error) {
  wchar_t buffer[512];
  const DWORD size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                    error, 0, buffer, 512, nullptr);
  if (size == 0) return "error " + std::to_string(error);
  const std::string text = FromWide(std::wstring_view(buffer, size));
  return text.substr(0, text.find_last_not_of("\r\n .") + 1);
}

std::string LastError() { return ErrorText(GetLastError()); }

Handle::Handle(void* handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}

bool Handle::Close() {
  void* const handle = Release();
  return handle == nullptr || CloseHandle(handle) != 0;
}

bool WriteAll(const Handle& file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (!WriteFile(file.Get(), bytes.data(), wanted, &count, nullptr)) return false;
    bytes.remove_prefix(count);
  }
  return true;
}

}  // namespace qx::system
