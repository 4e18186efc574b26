// What the stamping of a run would meet in the files of its solution: which files they are, what stands there
// now, and what keeps it from writing them. Reads, and writes nothing.
#pragma once

#include "actions/Qxvsdotnetaction.h"
#include "plugin/Qxcheck.h"

namespace qx {

// Both append to the report's stamps and findings, as the action is set. They raise nothing.
// The AssemblyInfo files of the chosen projects. Files behind WebDAV are not fetched, and said so.
void CheckAssemblyInfos(TQXCustomVSDotNetAction& action, IVSDotNetSolution& solution, CheckReport& report);
// The resource scripts of the chosen C++ projects.
void CheckResourceScripts(TQXCustomVSDotNetAction& action, IVSDotNetSolution& solution, CheckReport& report);

}  // namespace qx
