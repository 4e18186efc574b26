// Outside Windows there is no framework: the engine that the host brings along has an MSBuild.exe, which
// stands for that of 2.0.
#include "host/settings/DotNetInfo.h"
#include "host/settings/Engine.h"

namespace qx {

std::string InstalledFrameworkFolder(const std::string& version) {
  return version == "v2.0" ? InstalledEngineFolder() : std::string();
}

}  // namespace qx
