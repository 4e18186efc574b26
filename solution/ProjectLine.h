// The line of a solution that begins a project's block: Project("{TYPE}") = "NAME", "PATH", "{IDENTIFIER}".
#pragma once

#include <string>
#include <string_view>

namespace qx {

struct ProjectLine {
  std::string name, path, typeGuid, guid;  // as written; typeGuid: the 38 characters behind `Project("`
};

// Whether a trimmed line begins a project's block.
bool IsProjectLine(std::string_view line);
// Reads such a line. Raises "Error parsing project string".
ProjectLine ReadProjectLine(std::string_view line);

}  // namespace qx
