// What can be known of a run before it: what each action finds wrong, what its own check says, and how all of it
// is written, as text or as JSON.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/project/OpenProject.h"
#include "plugin/Qxcheck.h"

namespace qx {

// Each with the 1-based number of its action; 0: the project as a whole.
struct ProjectCheck {
  std::vector<std::pair<int, CheckFinding>> findings;
  std::vector<std::pair<int, CheckedProject>> projects;
  std::vector<std::pair<int, CheckedStamp>> stamps;

  bool HasErrors() const;
};

// What the enabled actions that have a check of their own say. Changes nothing; the current folder is the
// project's.
ProjectCheck AskChecks(const OpenProject& project);
// The same, and before it what Validate finds, as it would before a run: an exception that leaves it, and an
// action that no loaded package has, are errors too.
ProjectCheck CheckProject(const OpenProject& project);

// {"findings":[...],"projects":[...],"stamps":[...]}, indented. What is not UTF-8 becomes U+FFFD.
std::string CheckAsJson(const ProjectCheck& check);
// A line a finding, errors first, then which projects are built and which files stamped.
std::string CheckAsText(const ProjectCheck& check);
// "error", "warning", "info"
std::string_view NameOf(CheckSeverity severity);
// "SUBJECT: MESSAGE (HINT)"
std::string LineOf(const CheckFinding& finding);

}  // namespace qx
