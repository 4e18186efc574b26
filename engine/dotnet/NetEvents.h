// The commands that a project has run before and behind its build, with its macros replaced.
#pragma once

#include <string>
#include <string_view>

#include "engine/Project.h"
#include "projects/net/NetProject.h"

namespace qx {

enum class WhenToRun { Always, OnBuildSuccess, OnOutputUpdated };
// As RunPostBuildEvent says; OnBuildSuccess where it says nothing.
WhenToRun WhenPostBuildEventRuns(const NetProject& project);

// One of them: "PreBuildEvent" or "PostBuildEvent", run through Wine in the output's folder. `intermediate`:
// where it is written down, with a delimiter behind. The answer is why it failed, one line; empty: it
// succeeded, or there is none.
std::string RunBuildEvent(const char* name, const NetProject& project, const ProjectTask& task,
                          const std::string& output, const std::string& intermediate, Console& console);

// Whether the post-build event was begun and did not succeed since: it failed, or the build was stopped in it. What
// it was to do is still to be done, however new the output is.
bool IsPostBuildEventOwed(const NetProject& project, const ProjectTask& task,
                          const std::string& intermediate);

// $(TargetPath) and its like, letter case aside, as Windows' command line knows the files; what is no macro stays.
std::string ExpandEventMacros(std::string_view commands, const NetProject& project, const ProjectTask& task,
                              const std::string& output);

}  // namespace qx
