#include "engine/front/SolutionPlan.h"

#include <algorithm>
#include <unordered_map>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "projects/BuildOrder.h"

namespace qx {
namespace {

using Fate = PlannedProject::Fate;

constexpr std::string_view kNotSelected = "Project not selected to build for this solution configuration";

// The kinds that nobody can build here, and what the user may do about it.
const char* ReasonAgainst(ProjectKind kind) {
  switch (kind) {
    case ProjectKind::JSharp:
      return "there is no J# compiler outside Windows";
    case ProjectKind::Setup:
      return "setup projects need Visual Studio itself";
    case ProjectKind::Web:
      return "projects of a web server are not built here";
    case ProjectKind::Other:
      return "projects of this kind are not known here";
    default:
      return nullptr;
  }
}

void Refuse(PlannedProject& project, std::string reason, std::string_view limit) {
  project.fate = Fate::Refuse;
  project.reason = std::move(reason);
  project.limit = limit;
}

void TakeConfiguration(const MappedProject& mapped, const std::string& configuration,
                       PlannedProject& project) {
  OwnConfiguration own = ConfigurationOf(mapped, configuration);
  project.configuration = std::move(own.configuration);
  project.platform = std::move(own.platform);
  project.isDeployed = own.isDeployed;
  if (own.isBuilt) return;
  project.fate = Fate::PassOver;
  project.reason = kNotSelected;
}

PlannedProject Plan(const MappedProject& mapped, const std::string& folder, const std::string& configuration,
                    PathFinder& finder) {
  PlannedProject project;
  project.name = mapped.name;
  project.guid = mapped.guid;
  project.typeGuid = mapped.typeGuid;
  project.path = mapped.path;
  project.kind = KindOfProject(mapped.path, mapped.typeGuid);
  TakeConfiguration(mapped, configuration, project);
  project.file = project.kind == ProjectKind::Web ? mapped.path : ExpandPath(folder, mapped.path);
  if (project.fate == Fate::PassOver) {
    finder.FindFile(project.file);
  } else if (const char* reason = ReasonAgainst(project.kind)) {
    Refuse(project, reason, KeyOfKind(project.kind));
  } else if (!finder.FindFile(project.file)) {
    Refuse(project, "its file is not there: " + project.file, "");
  }
  return project;
}

// Numbers of projects by identifier (in lower case) and by path. Of several with one identifier the first counts.
class ProjectIndex {
 public:
  explicit ProjectIndex(const std::vector<PlannedProject>& projects) {
    for (std::size_t i = 0; i < projects.size(); ++i) {
      numbers_.try_emplace(LowerCase(projects[i].guid), i);
      numbers_.try_emplace(FoldCase(projects[i].file), i);
    }
  }
  // The size of the list when there is none.
  std::size_t Find(const std::string& reference) const {
    for (const std::string& key : {LowerCase(reference), FoldCase(reference)}) {
      const auto found = numbers_.find(key);
      if (found != numbers_.end()) return found->second;
    }
    return static_cast<std::size_t>(-1);
  }

 private:
  std::unordered_map<std::string, std::size_t> numbers_;
};

std::vector<std::string> ReferencesOf(const PlannedProject& project, const ReadReferences& references) {
  if (project.fate != Fate::Build || !references) return {};
  try {
    return references(project);
  } catch (const Exception&) {
    return {};  // whoever builds it reads the file again and says what is wrong with it
  }
}

std::string NamesAlong(const std::vector<PlannedProject>& projects, const std::vector<std::size_t>& circle) {
  std::string names;
  for (const std::size_t number : circle) names += projects[number].name + " -> ";
  return names + projects[circle.front()].name;
}

// Puts the projects into the order of their needs, and the needs into the numbers of that order.
void Order(SolutionPlan& plan) {
  std::vector<std::vector<std::size_t>> needs;
  for (const PlannedProject& project : plan.projects) needs.push_back(project.needs);
  const BuildOrder order = OrderByNeeds(needs);
  for (const auto& circle : order.circles) {
    plan.warnings.push_back("These projects need one another in a circle: " +
                            NamesAlong(plan.projects, circle) + ". The last need was passed over.");
  }
  std::vector<std::size_t> place(plan.projects.size());
  for (std::size_t i = 0; i < order.order.size(); ++i) place[order.order[i]] = i;
  std::vector<PlannedProject> ordered;
  for (const std::size_t number : order.order) {
    PlannedProject project = std::move(plan.projects[number]);
    for (std::size_t& need : project.needs) need = place[need];
    // What a circle's end pointed back to stands behind it.
    std::erase_if(project.needs, [&](std::size_t need) { return need >= ordered.size(); });
    std::ranges::sort(project.needs);
    ordered.push_back(std::move(project));
  }
  plan.projects = std::move(ordered);
}

bool IsMeant(const PlannedProject& project, const std::string& asked) {
  std::string turnedPath = project.path, turnedAsked = asked;
  std::ranges::replace(turnedPath, '\\', '/');
  std::ranges::replace(turnedAsked, '\\', '/');
  return SameText(project.name, asked) || SameText(turnedPath, turnedAsked) ||
         SameText(project.guid, asked) || SameText(project.file, turnedAsked);
}

// With what was asked for exactly as it is written, else the nearest of the other ways.
std::size_t FindAsked(const std::vector<PlannedProject>& projects, const std::string& asked) {
  std::vector<std::size_t> meant, byPath;
  for (std::size_t i = 0; i < projects.size(); ++i) {
    if (IsMeant(projects[i], asked)) meant.push_back(i);
    if (projects[i].path == asked) byPath.push_back(i);
  }
  if (byPath.size() == 1) return byPath.front();
  if (meant.size() == 1) return meant.front();
  std::string names;
  for (const PlannedProject& project : projects) names += (names.empty() ? "" : ", ") + project.path;
  throw Exception(meant.empty() ? "The solution has no project \"" + asked + "\". It has: " + names
                                : "More than one project is meant by \"" + asked +
                                      "\". Name one by its path: " + names);
}

}  // namespace

SolutionPlan PlanSolution(const SolutionMap& map, const std::string& solutionFile,
                          const std::string& configuration, const ReadReferences& references) {
  SolutionPlan plan;
  std::vector<const MappedProject*> mapped;
  PathFinder finder;
  for (const MappedProject& project : map.projects) {
    if (KindOfProject(project.path, project.typeGuid) == ProjectKind::Folder) continue;
    plan.projects.push_back(Plan(project, FolderPart(solutionFile), configuration, finder));
    mapped.push_back(&project);
  }
  const ProjectIndex index(plan.projects);
  for (std::size_t i = 0; i < plan.projects.size(); ++i) {
    PlannedProject& project = plan.projects[i];
    std::vector<std::string> all = mapped[i]->needs;
    for (std::string& reference : ReferencesOf(project, references)) all.push_back(std::move(reference));
    for (const std::string& need : all) {
      const std::size_t number = index.Find(need);
      const bool isNew = std::ranges::find(project.needs, number) == project.needs.end();
      if (number < plan.projects.size() && number != i && isNew) project.needs.push_back(number);
    }
  }
  Order(plan);
  return plan;
}

SolutionPlan SelectProject(SolutionPlan plan, const std::string& asked, const std::string& ownConfiguration) {
  const std::size_t chosen = FindAsked(plan.projects, asked);
  if (!ownConfiguration.empty()) {
    const ConfigurationName parts = SplitConfiguration(ownConfiguration);
    plan.projects[chosen].configuration = parts.configuration;
    if (!parts.platform.empty()) plan.projects[chosen].platform = parts.platform;
  }
  std::vector<bool> isNeeded(plan.projects.size());
  isNeeded[chosen] = true;
  for (std::size_t i = chosen + 1; i-- > 0;) {
    if (!isNeeded[i]) continue;
    for (const std::size_t need : plan.projects[i].needs) isNeeded[need] = true;
  }
  std::vector<std::size_t> place(plan.projects.size());
  std::vector<PlannedProject> kept;
  for (std::size_t i = 0; i < plan.projects.size(); ++i) {
    if (!isNeeded[i]) continue;
    place[i] = kept.size();
    for (std::size_t& need : plan.projects[i].needs) need = place[need];
    kept.push_back(std::move(plan.projects[i]));
  }
  plan.projects = std::move(kept);
  return plan;
}

}  // namespace qx
