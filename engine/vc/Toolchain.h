// The MinGW-w64 compilers and binutils for one machine, and where they look for headers and libraries.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

struct Toolchain {
  std::string prefix;                            // "i686-w64-mingw32-"
  std::string c, cpp, windres, ar, nm, dlltool;  // absolute paths
  std::vector<std::string> includeFolders;       // with their delimiters, in the order they are searched
  std::vector<std::string> libraryFolders;
};

// For a platform of a project: "Win32" or "x64", letter case aside. Raises Exception that says what is
// missing and which package brings it. The same one is found once in the life of the process. Any thread.
const Toolchain& ToolchainFor(std::string_view platform);

// Ninja. Raises in the same way.
const std::string& NinjaProgram();

}  // namespace qx
