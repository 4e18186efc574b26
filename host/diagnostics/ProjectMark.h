// The lines by which a build tells whose output follows: those of Visual Studio 2002 to 2005, in any language,
// and of MSBuild. Text in, views into it out; linear, allocates nothing.
#pragma once

#include <optional>
#include <string_view>

namespace qx {

enum class MarkKind {
  Begins,  // a project's output follows: of Visual Studio, which tells no ends
  Enters,  // MSBuild begins a project, within the one that asked for it
  Leaves,  // and is done with it
  Closes,  // no project's output follows
  Repeats  // what follows was told before: MSBuild lists all errors and warnings once more
};

struct ProjectMark {
  MarkKind kind = MarkKind::Begins;
  std::string_view project;  // its name; empty for a solution, and where none is meant
  int number = 0;            // that stands before the line: whose line this is ("3>"); 0: none
  int projectNumber = 0;     // that the project's lines bear; 0: none
};

std::optional<ProjectMark> ReadProjectMark(std::string_view line);
// A quick look, for the many lines that are none: false says so for sure.
inline bool MayBeProjectMark(std::string_view line) {
  if (line.empty()) return false;
  const char first = line.front();
  return first == '-' || first == '=' || first == 'P' || first == 'D' || first == 'B' || first <= ' ' ||
         (first >= '0' && first <= '9');
}

}  // namespace qx
