// The log's stream as a handle. A console is written to in UTF-16, anything else gets the bytes.
#include <windows.h>

#include <algorithm>

#include "host/log/LogStream.h"
#include "platform/Texts.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

HANDLE HandleOf(std::intptr_t native) { return reinterpret_cast<HANDLE>(native); }

// Whether it is a console; one is made to understand colours.
bool PrepareConsole(HANDLE handle) {
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode) == 0) return false;
  SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  return true;
}

std::string WriteToConsole(HANDLE handle, std::string_view bytes) {
  const std::u16string text = ToUtf16(bytes);
  // Consoles of older systems take no more than 64 KiB at once.
  for (std::size_t at = 0; at < text.size();) {
    const auto size = static_cast<DWORD>(std::min<std::size_t>(text.size() - at, 8192));
    DWORD written = 0;
    if (WriteConsoleW(handle, text.data() + at, size, &written, nullptr) == 0) return system::LastError();
    at += written;
  }
  return {};
}

}  // namespace

LogFile LogFile::StandardOutput() {
  HANDLE handle = GetStdHandle(STD_OUTPUT_HANDLE);
  return LogFile("standard output", reinterpret_cast<std::intptr_t>(handle), PrepareConsole(handle), false);
}

LogFile LogFile::Create(const std::string& path) {
  HANDLE handle = CreateFileW(system::WidePath(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) throw Exception("Cannot write " + path + ": " + system::LastError());
  return LogFile(path, reinterpret_cast<std::intptr_t>(handle), PrepareConsole(handle), true);
}

LogFile::~LogFile() {
  if (owned_) CloseHandle(HandleOf(native_));
}

std::string LogFile::Write(std::string_view bytes) {
  if (terminal_) return WriteToConsole(HandleOf(native_), bytes);
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::size_t{1} << 20));
    if (WriteFile(HandleOf(native_), bytes.data(), size, &written, nullptr) == 0) return system::LastError();
    bytes.remove_prefix(written);
  }
  return {};
}

}  // namespace qx
