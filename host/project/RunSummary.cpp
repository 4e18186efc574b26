#include "host/project/RunSummary.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

Json VersionsAsJson(const RunProgramVersions& versions) {
  return {{"assemblyVersion", versions.assembly}, {"fileVersion", versions.file}};
}

Json ProjectAsJson(int action, const RunProject& project) {
  return {{"action", action},
          {"name", project.name},
          {"path", project.path},
          {"output", project.output},
          {"status", project.status},
          {"reason", project.reason},
          {"expected", VersionsAsJson(project.expected)},
          {"found", VersionsAsJson(project.found)}};
}

std::string Counted(std::int64_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

void AddVersions(const RunReport& report, std::vector<SummaryLine>& lines) {
  const auto changed = std::count_if(report.files.begin(), report.files.end(),
                                     [](const RunFile& file) { return file.changed; });
  for (const RunVersion& version : report.versions) {
    const bool isSame = version.from == version.to;
    lines.push_back({version.name + ": " + (isSame ? "" : version.from + " -> ") + version.to});
  }
  if (report.files.empty()) return;
  lines.push_back(
      {Counted(std::ssize(report.files), "file") + " stamped, " + std::to_string(changed) + " changed"});
}

// How many programs were built as they should be.
void AddCountOfProjects(const RunSummary& summary, std::vector<SummaryLine>& lines) {
  std::size_t wanted = 0, good = 0, all = 0;
  for (const auto& [action, report] : summary.reports) {
    all += report.projects.size();
    for (const RunProject& project : report.projects) {
      wanted += project.status != "skipped";
      good += project.status == "ok";
    }
  }
  if (all == 0) return;
  lines.push_back(
      {std::to_string(good) + " of " + std::to_string(wanted) + " projects were built as they should be"});
}

void AddCountOfProblems(const RunSummary& summary, std::vector<SummaryLine>& lines) {
  const bool isTold = summary.errors + summary.warnings + summary.known > 0;
  if (summary.reports.empty() && !isTold) return;
  std::string line = Counted(summary.errors, "error") + ", " + Counted(summary.warnings, "warning");
  if (summary.known > 0) line += "; " + std::to_string(summary.known) + " in the baseline not counted";
  lines.push_back({std::move(line), summary.errors > 0});
}

// A line for each program that was not built as it should be, or of which that is not known.
void AddOtherProjects(const RunSummary& summary, std::vector<SummaryLine>& lines) {
  for (const auto& [action, report] : summary.reports) {
    for (const RunProject& project : report.projects) {
      if (project.status == "ok" || project.status == "skipped") continue;
      const std::string place = project.output.empty() ? "" : project.output + ": ";
      lines.push_back(
          {project.name + ": " + project.status + ": " + place + project.reason, project.isFault});
    }
  }
}

}  // namespace

bool HasFaults(const RunSummary& summary) {
  return std::any_of(summary.reports.begin(), summary.reports.end(), [](const auto& report) {
    const auto& projects = report.second.projects;
    return std::any_of(projects.begin(), projects.end(),
                       [](const RunProject& project) { return project.isFault; });
  });
}

RunOutcome AddReports(RunSummary& summary, const OpenProject& project, const std::vector<int>& begun,
                      const std::string& checkBuilt, RunOutcome outcome,
                      const std::function<void(RunReport& report, int action)>& amend) {
  for (const int number : begun) {
    IQXRunReport* report = RunReportOf(*project.Action(number - 1));
    if (report == nullptr) continue;
    summary.reports.emplace_back(number, report->ReportRun(checkBuilt != "off"));
    if (amend) amend(summary.reports.back().second, number);
  }
  if (outcome == RunOutcome::Succeeded && HasFaults(summary)) {
    const bool fails = checkBuilt == "fail";
    if (fails) outcome = RunOutcome::ActionFailed;
    summary.verdict = fails ? "The run failed: not every program is as it should be"
                            : "warning: not every program is as it should be";
  }
  summary.success = outcome == RunOutcome::Succeeded;
  return outcome;
}

std::string SummaryAsJson(const RunSummary& summary) {
  Json versions = Json::array(), files = Json::array(), projects = Json::array();
  for (const auto& [action, report] : summary.reports) {
    for (const RunVersion& version : report.versions) {
      versions.push_back(
          {{"action", action}, {"name", version.name}, {"from", version.from}, {"to", version.to}});
    }
    for (const RunFile& file : report.files) {
      files.push_back({{"action", action},
                       {"path", file.path},
                       {"kind", file.kind},
                       {"changed", file.changed},
                       {"backup", file.backup}});
    }
    for (const RunProject& project : report.projects) projects.push_back(ProjectAsJson(action, project));
  }
  const Json whole = {{"kind", "summary"},
                      {"success", summary.success},
                      {"seconds", std::round(summary.seconds * 1000) / 1000},
                      {"versions", versions},
                      {"files", files},
                      {"projects", projects},
                      {"errors", summary.errors},
                      {"warnings", summary.warnings}};
  return whole.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::vector<SummaryLine> SummaryLines(const RunSummary& summary) {
  std::vector<SummaryLine> lines;
  for (const auto& [action, report] : summary.reports) AddVersions(report, lines);
  AddCountOfProjects(summary, lines);
  AddCountOfProblems(summary, lines);
  AddOtherProjects(summary, lines);
  return lines;
}

std::string SummaryAsText(const RunSummary& summary) {
  std::string out;
  for (const SummaryLine& line : SummaryLines(summary)) out += line.text + "\n";
  if (!summary.verdict.empty()) out += summary.verdict + "\n";
  return out;
}

}  // namespace qx
