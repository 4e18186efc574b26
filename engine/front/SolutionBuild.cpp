#include "engine/front/SolutionBuild.h"

#include <algorithm>
#include <map>

#include "engine/ChildCommand.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Fate = PlannedProject::Fate;
using Status = BuiltProject::Status;

// Of every error and warning that is the engine's own and no tool's.
constexpr const char* kCode = "QXE0001";

BuiltProject Outcome(Status status, std::string reason, std::string limit = "") {
  BuiltProject outcome;
  outcome.status = status;
  outcome.reason = std::move(reason);
  outcome.limit = std::move(limit);
  return outcome;
}

bool HasSucceeded(const BuiltProject& project) {
  return project.status == Status::Succeeded || project.status == Status::UpToDate;
}

class SolutionRun {
 public:
  SolutionRun(SolutionPlan plan, std::string solutionFile, const BuildRequest& request,
              const FrontSettings& settings, const Builders& builders, Console& console, BuildReport report)
      : plan_(std::move(plan)),
        solutionFile_(std::move(solutionFile)),
        request_(request),
        settings_(settings),
        builders_(builders),
        console_(console),
        report_(report),
        built_(plan_.projects.size()) {}

  bool Run() {
    for (const std::string& warning : plan_.warnings) {
      console_.Warning(solutionFile_, 0, kCode, warning);
    }
    for (std::size_t i = 0; i < plan_.projects.size() && !IsStopped(); ++i) RunProject(i);
    if (IsStopped()) console_.Line("The build was stopped.");
    report_.Closed(totals_);
    return (!request_.isDeployed || Deploy()) && totals_.failed == 0 && !IsStopped();
  }

 private:
  void RunProject(std::size_t number) {
    const PlannedProject& project = plan_.projects[number];
    BuiltProject& built = built_[number];
    if (project.fate == Fate::PassOver) {
      report_.Skipped(project.name, project.configuration, project.platform, project.reason);
      built = Outcome(Status::Skipped, project.reason);
      ++totals_.skipped;
    } else {
      report_.Started(project.name, project.configuration, project.platform);
      const Console::Counts before = console_.Counted();
      built = Build(project);
      Judge(project, built);
      if (built.status == Status::Failed) Complain(project, built, console_.Counted().errors > before.errors);
      built.errors = console_.Counted().errors - before.errors;
      built.warnings = console_.Counted().warnings - before.warnings;
      report_.Ended(project.name, built.errors, built.warnings);
      Count(built);
    }
    built.name = project.name;
    built.guid = project.guid;
    built.file = project.file;
    built.configuration = project.configuration;
    built.platform = project.platform;
  }

  BuiltProject Build(const PlannedProject& project) {
    if (project.fate == Fate::Refuse) return Outcome(Status::Failed, project.reason, project.limit);
    for (const std::size_t need : project.needs) {
      if (built_[need].status != Status::Failed || request_.goal == Goal::Clean) continue;
      return Outcome(Status::Failed,
                     "not built, for it needs " + plan_.projects[need].name + ", which failed");
    }
    const auto& builder = project.kind == ProjectKind::VisualCpp ? builders_.visualCpp : builders_.dotNet;
    try {
      return builder(TaskFor(project), console_);
    } catch (const std::exception& failure) {
      return Outcome(Status::Failed, failure.what());
    }
  }

  ProjectTask TaskFor(const PlannedProject& project) const {
    ProjectTask task;
    task.name = project.name;
    task.guid = project.guid;
    task.file = project.file;
    task.typeGuid = project.typeGuid;
    task.configuration = project.configuration;
    task.platform = project.platform;
    task.solutionFile = solutionFile_;
    task.goal = request_.goal;
    task.properties = request_.properties;
    if (request_.usesEnvironment) task.properties["useenv"] = "1";
    task.launcher = settings_.launcher;
    task.jobs = settings_.jobs;
    for (const std::size_t need : NeedsOf(project)) task.needs.push_back(&built_[need]);
    return task;
  }

  // Directly or not, each once, in the order of building.
  std::vector<std::size_t> NeedsOf(const PlannedProject& project) const {
    std::vector<bool> isNeeded(plan_.projects.size());
    for (const std::size_t need : project.needs) isNeeded[need] = true;
    std::vector<std::size_t> all;
    for (std::size_t i = plan_.projects.size(); i-- > 0;) {
      if (!isNeeded[i]) continue;
      all.push_back(i);
      for (const std::size_t need : plan_.projects[i].needs) isNeeded[need] = true;
    }
    std::ranges::reverse(all);
    return all;
  }

  // Tools have been seen to report success without a program: what is not there was not built.
  void Judge(const PlannedProject& project, BuiltProject& built) {
    if (!HasSucceeded(built) || request_.goal == Goal::Clean || built.output.empty()) return;
    if (!FileExists(built.output)) {
      built = Outcome(Status::Failed, "its build reports success, but there is no " + built.output);
      return;
    }
    const auto [first, isNew] = outputs_.try_emplace(built.output, project.name);
    if (isNew) return;
    console_.Warning(project.file, 0, kCode,
                     "wrote over " + built.output + ", which " + first->second + " had built");
  }

  // Says why a project failed: as an error, unless its tools have printed theirs; as a warning where the user
  // asked for such projects to be skipped.
  void Complain(const PlannedProject& project, BuiltProject& built, bool hasErrors) {
    const std::string text = project.name + ": " + built.reason;
    if (!built.limit.empty() && settings_.skip.contains(built.limit)) {
      console_.Warning(project.file, 0, kCode,
                       text + " (skipped, as the setting for \"" + built.limit + "\" asks)");
      built.status = Status::Skipped;
    } else if (hasErrors) {
      console_.Line(text);
    } else {
      console_.Error(project.file, 0, kCode, text);
    }
  }

  void Count(const BuiltProject& built) {
    if (built.status == Status::Failed) {
      ++totals_.failed;
    } else if (built.status == Status::Skipped) {
      ++totals_.skipped;
    } else {
      ++totals_.succeeded;
    }
  }

  // Devices and servers are out of reach here: what is to be deployed is named and counts as failed.
  bool Deploy() {
    BuildTotals totals;
    for (const PlannedProject& project : plan_.projects) {
      if (!project.isDeployed) continue;
      console_.Error(project.file, 0, kCode, project.name + ": projects are not deployed here, only built");
      ++totals.failed;
    }
    if (totals.failed > 0) report_.Deployed(totals);
    return totals.failed == 0;
  }

  SolutionPlan plan_;
  const std::string solutionFile_;
  const BuildRequest& request_;
  const FrontSettings& settings_;
  const Builders& builders_;
  Console& console_;
  BuildReport report_;
  std::vector<BuiltProject> built_;             // by number in the plan
  std::map<std::string, std::string> outputs_;  // the project that built each
  BuildTotals totals_;
};

std::string Listed(const std::vector<std::string>& names) {
  return names.empty() ? "none" : Join(names, ", ");
}

SolutionPlan PlanFor(const BuildRequest& request, const SolutionMap& map, const std::string& file,
                     const Builders& builders) {
  const std::string configuration = FindConfiguration(map, request.configuration);
  if (configuration.empty() && !TrimView(request.configuration).empty()) {
    throw Exception(file + " has no configuration \"" + request.configuration +
                    "\". It has: " + Listed(map.configurations));
  }
  SolutionPlan plan = PlanSolution(map, file, configuration, builders.references);
  if (request.project.empty()) return plan;
  return SelectProject(std::move(plan), request.project, request.projectConfiguration);
}

// One project by itself, in a configuration of its own.
SolutionPlan PlanForProject(const BuildRequest& request, const std::string& file) {
  const ConfigurationName parts = SplitConfiguration(request.configuration);
  PlannedProject project;
  project.path = FilePart(file);
  project.name = project.path.substr(0, project.path.size() - ExtensionOf(file).size());
  project.file = file;
  project.kind = KindOfProject(file, "");
  project.configuration = parts.configuration;
  project.platform = parts.platform;
  if (project.kind != ProjectKind::VisualCpp && project.kind != ProjectKind::CSharp &&
      project.kind != ProjectKind::VisualBasic) {
    project.fate = Fate::Refuse;
    project.limit = KeyOfKind(project.kind);
    project.reason = "projects of this kind are not built here";
  }
  return {{project}, {}};
}

}  // namespace

bool CarryOut(const BuildRequest& request, const FrontSettings& settings, const Builders& builders,
              Console& console) {
  const std::string found = FindExisting(request.file);
  if (found.empty() || !FileExists(found)) throw Exception("There is no file " + request.file);
  const std::string file = ExpandPath("", found);
  if (!HasExtension(file, ".sln")) {
    BuildReport report(console, SolutionFormat::Vs2005, request.goal);
    return SolutionRun(PlanForProject(request, file), "", request, settings, builders, console, report).Run();
  }
  const std::string bytes = ReadFile(file);
  std::string scratch;
  const SolutionMap map = ReadSolutionMap(DecodeText(bytes, scratch));
  if (map.format == SolutionFormat::Unknown) {
    throw Exception(file + " is no solution of Visual Studio 2002, 2003 or 2005 (format 7.00, 8.00 or 9.00)");
  }
  BuildReport report(console, map.format, request.goal);
  return SolutionRun(PlanFor(request, map, file, builders), file, request, settings, builders, console,
                     report)
      .Run();
}

}  // namespace qx
