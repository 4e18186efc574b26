// Where the program or library of a C# or Visual Basic project lies when it is built.
#pragma once

#include <string>
#include <string_view>

#include "projects/net/NetProject.h"

namespace qx {

struct NetOutput {
  std::string path;  // absolute; outside Windows folders as they are named on disk, as far as they are there.
                     // Empty: unknown
  std::string reason;  // why it is unknown, one line
};

// Never guesses: what hangs on an import that cannot be read or a condition that cannot be decided is unknown.
NetOutput WhereOutputLies(const NetProject& project);

// ".exe" or ".dll" (".netmodule") by the project's output type; empty for any other.
std::string_view NetOutputExtension(std::string_view outputType);

// The absolute path that a project file means by a name: from the project's folder, with native delimiters
// and as it is named on disk as far as it is there.
std::string NetPath(const NetProject& project, std::string_view written);

}  // namespace qx
