#include <windows.h>

#include <algorithm>

#include "platform/WindowsText.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/RandomAccessFile.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw Exception("Cannot read " + path + ": " + reason);
}

HANDLE HandleOf(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }

}  // namespace

RandomAccessFile::RandomAccessFile(const std::string& path) {
  system::Handle file(CreateFileW(system::WidePath(path).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size;
  if (!file.IsOpen() || !GetFileSizeEx(file.Get(), &size)) {
    const std::string reason = system::LastError();
    Fail(path, !file.IsOpen() && system::IsFolder(path) ? "it is a folder" : reason);
  }
  file_ = reinterpret_cast<std::intptr_t>(file.Release());
  size_ = static_cast<std::uint64_t>(size.QuadPart);
}

RandomAccessFile::~RandomAccessFile() { const system::Handle closing(HandleOf(file_)); }

std::size_t RandomAccessFile::Read(std::uint64_t offset, std::span<char> into) const {
  std::size_t used = 0;
  while (used < into.size()) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset + used);
    place.OffsetHigh = static_cast<DWORD>((offset + used) >> 32);
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(into.size() - used, system::kMostAtOnce));
    if (!::ReadFile(HandleOf(file_), into.data() + used, wanted, &count, &place)) {
      if (GetLastError() == ERROR_HANDLE_EOF) break;
      throw Exception(system::LastError());
    }
    if (count == 0) break;
    used += count;
  }
  return used;
}

}  // namespace qx
