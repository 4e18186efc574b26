// The build engine of this machine for projects of 2005 (msbuild, dotnet msbuild or xbuild), and how
// properties are handed to it. Starts nothing.
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
std::optional<Engine> FindEngine(std::string_view searchPath);

// The text of a /p: switch with the backslashes of every value turned that is a folder or file by its
// property's name (OutputPath, IntermediateOutputPath, OutDir, DocumentationFile ...): an engine of this
// system would make a folder named "bin\Release". Any other argument as it is.
std::string WithTurnedPaths(const std::string& argument);

}  // namespace qx
