// The frameworks that Windows knows: InstallRoot in the registry and a folder for each version below it.
#include <array>
#include <string_view>

#include "host/settings/DotNetInfo.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/registry/Registry.h"

namespace qx {
namespace {

struct VersionFolder {
  std::string_view version;
  std::string_view folder;
};

// The folders' names carry the build of each release; Microsoft documents them under ".NET Framework versions
// and dependencies". Version 3.0 has no MSBuild.exe of its own.
constexpr std::array<VersionFolder, 5> kFolders{{
    {"v1.0", "v1.0.3705"},
    {"v1.1", "v1.1.4322"},
    {"v2.0", "v2.0.50727"},
    {"v3.5", "v3.5"},
    {"v4.0", "v4.0.30319"},
}};

}  // namespace

std::string InstalledFrameworkFolder(const std::string& version) {
  const std::string root = ReadMachineText("SOFTWARE\\Microsoft\\.NETFramework", "InstallRoot").value_or("");
  if (root.empty()) return {};
  for (const VersionFolder& entry : kFolders) {
    if (entry.version != version) continue;
    const std::string folder = WithTrailingDelimiter(root) + std::string(entry.folder);
    return FileExists(WithTrailingDelimiter(folder) + "MSBuild.exe") ? folder : std::string();
  }
  return {};
}

}  // namespace qx
