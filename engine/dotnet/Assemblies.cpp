#include "engine/dotnet/Assemblies.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <vector>

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

// "2.6.3.0__96d0": the numbers up to what is none.
std::vector<int> VersionOf(std::string_view text) {
  std::vector<int> version;
  while (!text.empty()) {
    int part = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), part);
    if (error != std::errc()) break;
    version.push_back(part);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (!text.starts_with('.')) break;
    text.remove_prefix(1);
  }
  return version;
}

// The newest NAME.dll in the folders below `folder` whose names are `prefix` and a version.
std::string FindNewest(const std::string& folder, std::string_view prefix, const std::string& file) {
  std::string found;
  std::vector<int> newest;
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    const std::string name = at->path().filename().string();
    if (!SameText(std::string_view(name).substr(0, prefix.size()), prefix)) continue;
    std::string path = FindExisting(folder + name + "/" + file);
    std::vector<int> version = VersionOf(std::string_view(name).substr(std::min(prefix.size(), name.size())));
    if (path.empty() || version.empty() || (!found.empty() && version <= newest)) continue;
    found = std::move(path);
    newest = std::move(version);
  }
  return found;
}

}  // namespace

AssemblyFolders SystemAssemblyFolders(const std::string& compiler) {
  std::error_code ignored;
  const fs::path prefix = fs::weakly_canonical(compiler, ignored).parent_path().parent_path();
  const std::string lib = (prefix / "lib" / "").string();
  return {lib + "mono/4.5/", lib + "mono/gac/", lib + "cli/"};
}

std::string FindFrameworkAssembly(const AssemblyFolders& folders, std::string_view name) {
  return FindExisting(folders.framework + std::string(name) + ".dll");
}

std::string FindCachedAssembly(const AssemblyFolders& folders, std::string_view name) {
  const std::string folder = FindExisting(folders.cache + std::string(name));
  return folder.empty() ? "" : FindNewest(folder + "/", "", std::string(name) + ".dll");
}

std::string FindPackagedAssembly(const AssemblyFolders& folders, std::string_view name) {
  return FindNewest(folders.packages, std::string(name) + "-", std::string(name) + ".dll");
}

}  // namespace qx
