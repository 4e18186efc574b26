#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "platform/Posix.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "platform/files/PathsSystem.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsDrive(std::string_view path) {
  const char letter = path.empty() ? '\0' : static_cast<char>(path[0] | 0x20);
  return path.size() >= 3 && letter >= 'a' && letter <= 'z' && path[1] == ':' && IsDelimiter(path[2]);
}

enum class Wanted { Any, File };

bool Exists(const std::string& path, Wanted wanted) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return false;
  return wanted == Wanted::Any || !S_ISDIR(status.st_mode);
}

// What the system itself knows on Windows: where shares lead is a fact of the whole process there, and every
// path is looked up by it. The host sets it with its settings (HostSettingsInUse) and takes it away again.
std::map<std::string, std::string>& MountedShares() {
  static std::map<std::string, std::string> shares;
  return shares;
}

}  // namespace

void SetShares(std::map<std::string, std::string> shares) { MountedShares() = std::move(shares); }

namespace system {

std::optional<std::string> Mounted(std::string_view path) {
  if (MountedShares().empty() || path.size() < 2 || !IsDelimiter(path[0]) || !IsDelimiter(path[1])) return {};
  const auto server = std::find_if(path.begin() + 2, path.end(), IsDelimiter);
  if (server == path.end()) return {};
  const auto share = std::find_if(server + 1, path.end(), IsDelimiter);
  std::string name = LowerCase(std::string_view(path.begin(), share));
  std::replace(name.begin(), name.end(), '/', '\\');
  const auto found = MountedShares().find(name);
  if (found == MountedShares().end()) return {};
  return found->second + std::string(share, path.end());
}

std::string CurrentFolder() {
  std::string folder(256, '\0');
  while (getcwd(folder.data(), folder.size()) == nullptr) {
    if (errno != ERANGE) throw Exception("Cannot read the current folder: " + LastError());
    folder.resize(folder.size() * 2);
  }
  folder.resize(std::strlen(folder.c_str()));
  return WithTrailingDelimiter(folder);
}

std::size_t RootLength(std::string_view path) {
  if (path.empty()) return 0;
  if (IsDelimiter(path[0])) return 1;
  return IsDrive(path) ? 3 : 0;
}

std::size_t DriveLength(std::string_view) { return 0; }
bool LacksDrive(std::string_view) { return false; }

}  // namespace system

char NativeDelimiter() { return '/'; }
bool SystemPassesOverSpelling() { return false; }

struct PathFinder::Cache {
  // The names in a folder by their folded form, in byte order where several fold alike.
  using Names = std::unordered_map<std::string, std::vector<std::string>>;
  std::unordered_map<std::string, Names> folders;

  const Names& List(const std::string& folder) {
    const auto [place, isNew] = folders.try_emplace(folder);
    Names& names = place->second;
    if (!isNew) return names;
    DIR* stream = opendir(folder.empty() ? "." : folder.c_str());
    if (stream == nullptr) return names;
    while (const dirent* entry = readdir(stream)) names[FoldCase(entry->d_name)].emplace_back(entry->d_name);
    closedir(stream);
    for (auto& [folded, same] : names) std::sort(same.begin(), same.end());
    return names;
  }

  // Extends `found`, a folder with its delimiter, by the rest of a path; false, with `found` as it was, when
  // nothing of that name exists. The exact name is tried first, then those that differ in case.
  bool Walk(std::string& found, std::string_view rest, Wanted wanted) {
    while (!rest.empty() && rest[0] == '/') rest.remove_prefix(1);
    if (rest.empty()) return Exists(found.empty() ? "." : found, wanted);
    const std::string segment(rest.substr(0, rest.find('/')));
    rest.remove_prefix(segment.size());
    const std::size_t size = found.size();
    const auto tryName = [&](const std::string& name) {
      found.append(name).append(rest.empty() ? "" : "/");
      const Wanted here = rest.empty() ? wanted : Wanted::Any;
      if (Exists(found, here) && (rest.empty() || Walk(found, rest, wanted))) return true;
      found.resize(size);
      return false;
    };
    if (tryName(segment)) return true;
    if (segment == "." || segment == "..") return false;
    const Names& names = List(found);
    const auto same = names.find(FoldCase(segment));
    if (same == names.end()) return false;
    const std::vector<std::string> candidates = same->second;  // deeper walks may move the listings
    return std::any_of(candidates.begin(), candidates.end(),
                       [&](const std::string& name) { return name != segment && tryName(name); });
  }

  bool Find(std::string& path, Wanted wanted) {
    if (path.empty() || path.find('\0') != std::string::npos) return false;
    std::string native = system::Mounted(path).value_or(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    if (Exists(native, wanted)) {
      path = std::move(native);
      return true;
    }
    // A name made outside Windows may hold a backslash of its own.
    if (native != path && Exists(path, wanted)) return true;
    std::string found;
    if (native[0] == '/') found = "/";
    if (!Walk(found, native, wanted)) return false;
    path = std::move(found);
    return true;
  }
};

PathFinder::PathFinder() : cache_(std::make_unique<Cache>()) {}
PathFinder::~PathFinder() = default;
PathFinder::PathFinder(PathFinder&&) noexcept = default;

bool PathFinder::FindFile(std::string& path) { return cache_->Find(path, Wanted::File); }

std::string PathFinder::Find(const std::string& path) {
  std::string found = path;
  return cache_->Find(found, Wanted::Any) ? found : std::string();
}

}  // namespace qx
