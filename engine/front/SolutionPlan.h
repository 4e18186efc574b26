// What a build of a solution will do, before anything runs: each project with its file, the configuration it is
// mapped to, what it needs, and whether it is built, passed over, or cannot be built; in the order of building.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "projects/ProjectKind.h"
#include "projects/SolutionMap.h"

namespace qx {

struct PlannedProject {
  enum class Fate { Build, PassOver, Refuse };
  std::string name, guid, typeGuid;
  std::string path;  // as the solution has it
  std::string file;  // on disk; of a project that is not there where it was expected; of a URL the URL
  ProjectKind kind = ProjectKind::Other;
  std::string configuration, platform;  // the project's own
  bool isDeployed = false;
  Fate fate = Fate::Build;
  std::string reason;  // of PassOver and Refuse, one line
  std::string limit;   // of Refuse: the key that the user may skip it by; empty: a fault of the solution
  std::vector<std::size_t> needs;  // numbers in the plan, all of them before this one
};

struct SolutionPlan {
  std::vector<PlannedProject> projects;
  std::vector<std::string> warnings;
};

// The projects that a project's own file refers to: identifiers, or absolute paths. May raise Exception.
using ReadReferences = std::function<std::vector<std::string>(const PlannedProject&)>;

// `solutionFile` is absolute; `configuration` one of the map's. Looks up files of projects. Solution folders
// are left out. A reference that cannot be read is left for the project's own build to report.
SolutionPlan PlanSolution(const SolutionMap& map, const std::string& solutionFile,
                          const std::string& configuration, const ReadReferences& references);

// Only the project that `asked` names (by name, path as written or on disk, identifier; letter case and the
// kind of delimiters aside) and all it needs. `ownConfiguration` is for that project, instead of the one it
// is mapped to; empty: none. Raises Exception when no project or more than one has that name.
SolutionPlan SelectProject(SolutionPlan plan, const std::string& asked, const std::string& ownConfiguration);

}  // namespace qx
