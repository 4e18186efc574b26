#include "platform/files/Paths.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/files/PathsSystem.h"

namespace qx {
namespace {

std::size_t FileStart(std::string_view path) {
  for (std::size_t at = path.size(); at > 0; --at) {
    if (IsDelimiter(path[at - 1])) return at;
  }
  return system::DriveLength(path);
}

// Appends the segments of a relative path to a root with native delimiters; ".." never climbs above the root.
void AppendSegments(std::string& out, std::size_t root, std::string_view path) {
  const char delimiter = NativeDelimiter();
  while (!path.empty()) {
    const auto end = std::find_if(path.begin(), path.end(), IsDelimiter);
    const std::string_view segment = path.substr(0, static_cast<std::size_t>(end - path.begin()));
    const bool delimited = end != path.end();
    path.remove_prefix(segment.size() + (delimited ? 1 : 0));
    if (segment.empty() || segment == ".") continue;
    if (segment == "..") {
      std::size_t size = out.size();
      if (size > root) --size;  // the delimiter behind the segment that goes
      while (size > root && out[size - 1] != delimiter) --size;
      out.resize(size);
      continue;
    }
    if (!out.empty() && out.back() != delimiter) out += delimiter;
    out += segment;
    if (delimited) out += delimiter;
  }
}

}  // namespace

std::string FolderPart(std::string_view path) { return std::string(path.substr(0, FileStart(path))); }
std::string FilePart(std::string_view path) { return std::string(path.substr(FileStart(path))); }

std::string ExtensionOf(std::string_view path) {
  const std::string_view file = path.substr(FileStart(path));
  const std::size_t point = file.rfind('.');
  return point == std::string_view::npos ? std::string() : std::string(file.substr(point));
}

// An extension begins with its only point: a path that ends in it has it.
bool HasExtension(std::string_view path, std::string_view extension) {
  return path.size() >= extension.size() && SameText(path.substr(path.size() - extension.size()), extension);
}

std::string WithTrailingDelimiter(std::string_view path) {
  std::string out(path);
  if (!out.empty() && !IsDelimiter(out.back())) out += NativeDelimiter();
  return out;
}

bool IsAbsolute(std::string_view path) { return system::RootLength(path) > 0; }

std::string ExpandPath(std::string_view base, std::string_view relative) {
  const auto mountedRelative = system::Mounted(relative);
  const auto mountedBase = system::Mounted(base);
  if (mountedRelative) relative = *mountedRelative;
  if (mountedBase) base = *mountedBase;
  std::string current;  // keeps what pieces[0] may point to
  std::string_view pieces[] = {relative, {}, {}};
  const bool rootedOnly = system::LacksDrive(relative);
  if (rootedOnly || !IsAbsolute(relative)) {
    if (!IsAbsolute(base)) current = system::CurrentFolder();
    pieces[0] = current.empty() ? base : current;
    pieces[1] = current.empty() ? std::string_view() : base;
    pieces[2] = relative;
    if (rootedOnly) {
      pieces[0] = pieces[0].substr(0, system::RootLength(pieces[0]));
      pieces[1] = {};
    }
  }
  const std::size_t root = system::RootLength(pieces[0]);
  std::string out;
  out.reserve(pieces[0].size() + base.size() + relative.size() + 2);
  out.assign(pieces[0].substr(0, root));
  std::replace_if(out.begin(), out.end(), IsDelimiter, NativeDelimiter());
  if (!out.empty() && !IsDelimiter(out.back())) out += NativeDelimiter();
  const std::size_t floor = out.size();
  pieces[0].remove_prefix(root);
  bool folder = true;  // the path as given ends in a delimiter, and so does the result
  for (const std::string_view piece : pieces) {
    if (piece.empty()) continue;
    AppendSegments(out, floor, piece);
    folder = IsDelimiter(piece.back());
  }
  if (!folder && out.size() > floor && IsDelimiter(out.back())) out.pop_back();
  return out;
}

std::string FindExisting(const std::string& path) { return PathFinder().Find(path); }

std::string FindAsFarAsThere(const std::string& path) {
  std::string native = path;
  std::replace_if(native.begin(), native.end(), IsDelimiter, NativeDelimiter());
  for (std::size_t size = native.size(); size > 0;) {
    if (std::string found = FindExisting(native.substr(0, size)); !found.empty()) {
      return found + native.substr(size);
    }
    const std::size_t delimiter = native.rfind(NativeDelimiter(), size - 1);
    if (delimiter == std::string::npos || delimiter == 0) break;
    size = delimiter;
  }
  return native;
}

}  // namespace qx
