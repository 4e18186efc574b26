// Where assemblies that nobody built here are found: mono's own, the global assembly cache, Debian's.
#pragma once

#include <string>
#include <string_view>

namespace qx {

struct AssemblyFolders {
  std::string framework;  // "/usr/lib/mono/4.5/"
  std::string cache;      // "/usr/lib/mono/gac/": NAME/VERSION__TOKEN/NAME.dll
  std::string packages;   // "/usr/lib/cli/": NAME-VERSION/NAME.dll
};

// As the compiler's own place tells them.
AssemblyFolders SystemAssemblyFolders(const std::string& compiler);

// An assembly by its simple name, letter case aside; of several versions the newest. Empty: there is none.
std::string FindFrameworkAssembly(const AssemblyFolders& folders, std::string_view name);
std::string FindCachedAssembly(const AssemblyFolders& folders, std::string_view name);
std::string FindPackagedAssembly(const AssemblyFolders& folders, std::string_view name);

}  // namespace qx
