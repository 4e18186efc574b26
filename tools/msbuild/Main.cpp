// The program "MSBuild.exe" outside Windows: becomes the build engine that the machine has.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "tools/msbuild/HandOver.h"

namespace {

// The exit codes that a shell gives for the same two faults.
constexpr int kNotFound = 127;
constexpr int kNotStarted = 126;

constexpr const char* kUsualPath = "/usr/local/bin:/usr/bin:/bin";  // where an environment without PATH looks

}  // namespace

int main(int argc, char** argv) {
  const char* search_path = std::getenv("PATH");
  const std::optional<qx::Engine> engine = qx::FindEngine(search_path == nullptr ? kUsualPath : search_path);
  if (!engine) {
    std::fputs(
        "MSBuild.exe: no build engine was found on the PATH (msbuild, dotnet or xbuild). Install one of "
        "them: "
        "Debian's package mono-devel has xbuild.\n",
        stderr);
    return kNotFound;
  }

  std::vector<std::string> command = qx::EngineCommand(*engine, {argv + (argc > 0 ? 1 : 0), argv + argc});
  std::vector<char*> pointers;
  pointers.reserve(command.size() + 1);
  for (std::string& argument : command) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execv(pointers[0], pointers.data());
  std::fprintf(stderr, "MSBuild.exe: cannot start %s: %s\n", pointers[0], std::strerror(errno));
  return kNotStarted;
}
