#include "engine/front/SolutionBuild.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <thread>

#include "engine/ChildCommand.h"
#include "engine/Turns.h"
#include "engine/front/Neighbourhood.h"
#include "engine/front/OrderedOutput.h"
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
// Of the warning that a project is skipped by the user's wish, with the project's file: by it the host knows.
constexpr const char* kSkipCode = "QXE0002";
// Projects that are built at the same time: enough to keep every processor at work while one of them links.
constexpr int kMostAtOnce = 8;

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
              const FrontSettings& settings, const Builders& builders, Console& console,
              SolutionFormat format)
      : plan_(std::move(plan)),
        solutionFile_(std::move(solutionFile)),
        request_(request),
        settings_(settings),
        builders_(builders),
        console_(console),
        format_(format),
        built_(plan_.projects.size()),
        turns_(settings.jobs),
        output_(console, plan_.projects.size()),
        neighbourhood_(plan_.projects.size(),
                       static_cast<std::size_t>(std::min(turns_.Count(), kMostAtOnce))) {}

  bool Run() {
    for (const std::string& warning : plan_.warnings) {
      console_.Warning(solutionFile_, 0, kCode, warning);
    }
    {
      std::vector<std::jthread> threads;
      for (std::size_t i = 0; i < plan_.projects.size() && !IsStopped(); ++i) Start(i, threads);
    }
    if (IsStopped()) console_.Line("The build was stopped.");
    BuildReport(console_, format_, request_.goal).Closed(totals_);
    return (!request_.isDeployed || Deploy()) && totals_.failed == 0 && !IsStopped();
  }

 private:
  // Only Visual C++ projects keep to the turns, so that some are built at the same time. All others are built alone.
  void Start(std::size_t number, std::vector<std::jthread>& threads) {
    const PlannedProject& project = plan_.projects[number];
    neighbourhood_.AwaitEnds(project.needs);
    const bool runsBesideOthers =
        project.fate != Fate::Build || (project.kind == ProjectKind::VisualCpp && plan_.projects.size() > 1);
    if (!runsBesideOthers) neighbourhood_.AwaitAll();
    if (project.fate != Fate::Build || !runsBesideOthers) return RunProject(number);
    neighbourhood_.AwaitRoom(number);
    if (IsStopped()) return neighbourhood_.End(number);
    threads.emplace_back([this, number] { RunProject(number); });
    neighbourhood_.AwaitIntent(number);
  }

  // On a thread of its own, or on the only one.
  void RunProject(std::size_t number) {
    const PlannedProject& project = plan_.projects[number];
    Console& console = output_.Of(number);
    BuildReport report(console, format_, request_.goal);
    BuiltProject& built = built_[number];
    if (project.fate == Fate::PassOver) {
      report.Skipped(project.name, project.configuration, project.platform, project.reason);
      built = Outcome(Status::Skipped, project.reason);
    } else {
      report.Started(project.name, project.configuration, project.platform);
      built = Build(number);
      Judge(project, built, console);
      if (built.status == Status::Failed) Complain(project, built, console);
      built.errors = console.Counted().errors;
      built.warnings = console.Counted().warnings;
      report.Ended(project.name, built.errors, built.warnings);
    }
    built.name = project.name;
    built.guid = project.guid;
    built.file = project.file;
    built.configuration = project.configuration;
    built.platform = project.platform;
    Count(built);
    output_.End(number);
    neighbourhood_.End(number);
  }

  BuiltProject Build(std::size_t number) {
    const PlannedProject& project = plan_.projects[number];
    if (project.fate == Fate::Refuse) return Outcome(Status::Failed, project.reason, project.limit);
    for (const std::size_t need : project.needs) {
      if (built_[need].status != Status::Failed || request_.goal == Goal::Clean) continue;
      return Outcome(Status::Failed,
                     "not built, for it needs " + plan_.projects[need].name + ", which failed");
    }
    const auto& builder = project.kind == ProjectKind::VisualCpp ? builders_.visualCpp : builders_.dotNet;
    try {
      if (settings_.skip.empty() || project.kind != ProjectKind::VisualCpp)
        return builder(TaskFor(number), output_.Of(number));
      return BuildOrSkip(builder, number);
    } catch (const std::exception& failure) {
      return Outcome(Status::Failed, failure.what());
    }
  }

  // Of a project that is skipped, the errors by which that was seen are nobody's concern.
  template <class Builder>
  BuiltProject BuildOrSkip(const Builder& builder, std::size_t number) {
    ConsoleText kept;
    BuiltProject built = builder(TaskFor(number), kept);
    if (built.status != Status::Failed || !IsSkipped(built)) {
      ForEachLine(kept.Text(), [&](std::string_view line) { output_.Of(number).Line(line); });
    }
    return built;
  }

  bool IsSkipped(const BuiltProject& built) const {
    return !built.limit.empty() && settings_.skip.contains(built.limit);
  }

  ProjectTask TaskFor(std::size_t number) {
    const PlannedProject& project = plan_.projects[number];
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
    task.jobs = turns_.Count();
    task.turns = &turns_;
    task.neighbours = &neighbourhood_.Of(number);
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
  void Judge(const PlannedProject& project, BuiltProject& built, Console& console) {
    if (!HasSucceeded(built) || request_.goal == Goal::Clean || built.output.empty()) return;
    if (!FileExists(built.output)) {
      built = Outcome(Status::Failed, "its build reports success, but there is no " + built.output);
      return;
    }
    const std::lock_guard lock(mutex_);
    const auto [first, isNew] = outputs_.try_emplace(built.output, project.name);
    if (isNew) return;
    console.Warning(project.file, 0, kCode,
                    "wrote over " + built.output + ", which " + first->second + " had built");
  }

  // Says why a project failed: as an error, unless its tools have printed theirs; as a warning where the user
  // asked for such projects to be skipped.
  void Complain(const PlannedProject& project, BuiltProject& built, Console& console) const {
    const std::string text = project.name + ": " + built.reason;
    if (IsSkipped(built)) {
      console.Warning(project.file, 0, kSkipCode,
                      text + " (skipped, as the setting for \"" + built.limit + "\" asks)");
      built.status = Status::Skipped;
    } else if (console.Counted().errors > 0) {
      console.Line(text);
    } else {
      console.Error(project.file, 0, kCode, text);
    }
  }

  void Count(const BuiltProject& built) {
    const std::lock_guard lock(mutex_);
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
    if (totals.failed > 0) BuildReport(console_, format_, request_.goal).Deployed(totals);
    return totals.failed == 0;
  }

  SolutionPlan plan_;
  const std::string solutionFile_;
  const BuildRequest& request_;
  const FrontSettings& settings_;
  const Builders& builders_;
  Console& console_;
  const SolutionFormat format_;
  std::vector<BuiltProject> built_;  // by number in the plan
  const Turns turns_;
  OrderedOutput output_;
  Neighbourhood neighbourhood_;
  std::mutex mutex_;
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
    return SolutionRun(PlanForProject(request, file), "", request, settings, builders, console,
                       SolutionFormat::Vs2005)
        .Run();
  }
  const std::string bytes = ReadFile(file);
  std::string scratch;
  const SolutionMap map = ReadSolutionMap(DecodeText(bytes, scratch));
  if (map.format == SolutionFormat::Unknown) {
    throw Exception(file + " is no solution of Visual Studio 2002, 2003 or 2005 (format 7.00, 8.00 or 9.00)");
  }
  return SolutionRun(PlanFor(request, map, file, builders), file, request, settings, builders, console,
                     map.format)
      .Run();
}

}  // namespace qx
