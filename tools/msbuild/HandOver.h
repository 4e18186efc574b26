// The hand-over to a build engine outside Windows: an action starts "MSBuild.exe" with the command line that
// the engine of Windows would get, and this program passes it on to the engine that the machine has. The
// core: it looks at files and folders, starts nothing and prints nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// An engine that was found: the program's path, and the arguments that come before the caller's own.
struct Engine {
  std::string program;
  std::vector<std::string> arguments;
};

// The first of "msbuild", "dotnet msbuild" and "xbuild" that stands in a folder of the search path (the
// folders separated by colons, an empty one meaning the current folder). Nothing when there is none.
std::optional<Engine> FindEngine(std::string_view search_path);

// Whether an engine would take the argument for a switch (-t:Build, /t:Build, /nologo) or a response file
// (@FILE) rather than for a file to build. A path from the root such as /home/me/App.sln is none.
bool IsSwitch(std::string_view argument);

// The name of the file that the author of `name` meant. A name that exists is given back as it is. In any
// other, backslashes become slashes, and each folder that does not exist is looked up without regard to the
// case of ASCII letters; of several the first in byte order is taken. What is not found even so stays as it
// was written.
std::string FindProjectFile(std::string_view name);

// The whole command line for the engine: its program, its own arguments, then the caller's, of which only the
// first that is no switch is touched (FindProjectFile).
std::vector<std::string> EngineCommand(const Engine& engine, std::vector<std::string> arguments);

}  // namespace qx
