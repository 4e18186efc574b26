#include <windows.h>

#include <algorithm>

#include "platform/WindowsText.h"
#include "platform/files/Paths.h"
#include "platform/files/PathsSystem.h"

namespace qx {
namespace {

// The position behind the segment that begins at `at`, its delimiter too.
std::size_t SegmentEnd(std::string_view path, std::size_t at) {
  while (at < path.size() && !IsDelimiter(path[at])) ++at;
  return std::min(at + 1, path.size());
}

// In UTF-8, whatever it came in, so that names from UTF-8 files can be put behind it.
std::string Native(const std::string& path) {
  std::string native = system::FromWide(system::ToWide(path));
  std::replace(native.begin(), native.end(), '/', '\\');
  return native;
}

DWORD Attributes(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) return INVALID_FILE_ATTRIBUTES;
  return GetFileAttributesW(system::WidePath(path).c_str());
}

}  // namespace

// Shares are the system's own here.
void SetShares(std::map<std::string, std::string>) {}

namespace system {

std::optional<std::string> Mounted(std::string_view) { return {}; }

std::string CurrentFolder() {
  std::wstring folder(32768, L'\0');
  folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
  return WithTrailingDelimiter(FromWide(folder));
}

std::size_t RootLength(std::string_view path) {
  if (path.empty()) return 0;
  if (path.size() >= 2 && IsDelimiter(path[0]) && IsDelimiter(path[1])) {
    return SegmentEnd(path, SegmentEnd(path, 2));  // "\\server\share\"
  }
  if (IsDelimiter(path[0])) return 1;
  return path.size() >= 3 && path[1] == ':' && IsDelimiter(path[2]) ? 3 : 0;
}

std::size_t DriveLength(std::string_view path) { return path.size() >= 2 && path[1] == ':' ? 2 : 0; }
bool LacksDrive(std::string_view path) { return RootLength(path) == 1; }

}  // namespace system

char NativeDelimiter() { return '\\'; }
bool SystemPassesOverSpelling() { return true; }

// The system itself looks names up without regard to case: there is nothing to keep.
struct PathFinder::Cache {};

PathFinder::PathFinder() = default;
PathFinder::~PathFinder() = default;
PathFinder::PathFinder(PathFinder&&) noexcept = default;

bool PathFinder::FindFile(std::string& path) {
  const DWORD attributes = Attributes(path);
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  path = Native(path);
  return true;
}

std::string PathFinder::Find(const std::string& path) {
  return Attributes(path) == INVALID_FILE_ATTRIBUTES ? std::string() : Native(path);
}

}  // namespace qx
