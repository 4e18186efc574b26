// The two programs: devenv.com and MSBuild.exe outside Windows. A program's main calls one of these.
#pragma once

#include <string>
#include <vector>

namespace qx {

// The exit code: 0 all succeeded, 1 something failed or the command line cannot be followed, 128 + N ended by
// signal N. `arguments` without the program's own name.
int RunDevenv(const std::vector<std::string>& arguments);

// The same. What only a full MSBuild knows (other files, targets and switches) is handed over to the engine
// on the PATH, which takes this process's place; 127 when there is none, 126 when it cannot be started.
int RunMsBuild(const std::vector<std::string>& arguments);

}  // namespace qx
