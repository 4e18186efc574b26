// Outside Windows there is no framework of that name: a folder of the host's own holds an MSBuild.exe that
// hands over to the engine of this system, and counts as installed when there is one.
#include "host/runtime/DotNetInfo.h"
#include "host/runtime/HostProgram.h"
#include "platform/Files.h"

namespace qx {
namespace {

bool HasEngine() {
  return !FindOnPath("msbuild").empty() || !FindOnPath("dotnet").empty() || !FindOnPath("xbuild").empty();
}

}  // namespace

std::string InstalledFrameworkFolder(const std::string& version) {
  const std::string program = ProgramFolder();
  // Beside the program in a build tree, under libexec where it was installed.
  for (const char* place : {"framework/", "../libexec/qxhost/framework/"}) {
    const std::string folder = program + place + version;
    if (FileExists(folder + "/MSBuild.exe")) return HasEngine() ? folder : std::string();
  }
  return {};
}

}  // namespace qx
