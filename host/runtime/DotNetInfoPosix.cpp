// Outside Windows there is no framework of that name: a folder of the host's own holds an MSBuild.exe that
// hands over to the engine of this system, and counts as installed when there is one.
#include <unistd.h>

#include <string_view>

#include "host/runtime/DotNetInfo.h"
#include "host/runtime/HostProgram.h"
#include "host/runtime/Variables.h"
#include "platform/Files.h"

namespace qx {
namespace {

bool IsOnPath(std::string_view program) {
  std::string folders = ReadEnvironment("PATH").value_or("") + ":";
  for (std::size_t end = folders.find(':'); end != std::string::npos; end = folders.find(':')) {
    const std::string file = folders.substr(0, end) + "/" + std::string(program);
    if (end > 0 && access(file.c_str(), X_OK) == 0 && FileExists(file)) return true;
    folders.erase(0, end + 1);
  }
  return false;
}

bool HasEngine() { return IsOnPath("msbuild") || IsOnPath("dotnet") || IsOnPath("xbuild"); }

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
