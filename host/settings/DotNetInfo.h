// The system's side of the .NET framework table: DotNetInfoWindows.cpp and DotNetInfoPosix.cpp.
#pragma once

#include <string>

namespace qx {

// The folder that holds MSBuild.exe of the version ("v2.0", lower case), when nothing is set for it; empty: none.
std::string InstalledFrameworkFolder(const std::string& version);

}  // namespace qx
