// The hand-over to a build engine outside Windows: an action starts "MSBuild.exe" with the command line that
// the engine of Windows would get, and this program passes it on to the engine that the machine has. The
// core: it looks at files and folders, starts nothing and prints nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/MsBuildEngine.h"

namespace qx {

// Whether an engine would take the argument for a switch (-t:Build, /t:Build, /nologo) or a response file
// (@FILE) rather than for a file to build. A path from the root such as /home/me/App.sln is none.
bool IsSwitch(std::string_view argument);

// The name of the file that the author of `name` meant. A name that exists is given back as it is. In any
// other, backslashes become slashes, and each folder that does not exist is looked up without regard to the
// case of ASCII letters; of several the first in byte order is taken. What is not found even so stays as it
// was written.
std::string FindProjectFile(std::string_view name);

// The whole command line for the engine: its program, its own arguments, then the caller's: of those the
// first that is no switch (FindProjectFile) and the paths in properties are as this system has them.
std::vector<std::string> EngineCommand(const Engine& engine, std::vector<std::string> arguments);

}  // namespace qx
