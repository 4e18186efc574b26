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

void AppendVersions(const RunReport& report, std::string& out) {
  const auto changed = std::count_if(report.files.begin(), report.files.end(),
                                     [](const RunFile& file) { return file.changed; });
  for (const RunVersion& version : report.versions) {
    out += version.name + ": ";
    out += version.from == version.to ? version.to : version.from + " -> " + version.to;
    out += "\n";
  }
  if (report.files.empty()) return;
  out += std::to_string(report.files.size()) + (report.files.size() == 1 ? " file" : " files") +
         " stamped, " + std::to_string(changed) + " changed\n";
}

std::string Counted(std::int64_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

// How many programs were built as they should be, and a line for each that was not.
std::pair<std::string, std::string> ProjectLines(const RunSummary& summary) {
  std::size_t wanted = 0, good = 0, all = 0;
  std::string others;
  for (const auto& [action, report] : summary.reports) {
    all += report.projects.size();
    for (const RunProject& project : report.projects) {
      if (project.status == "skipped") continue;
      ++wanted;
      if (project.status == "ok") {
        ++good;
        continue;
      }
      others += project.name + ": " + project.status + ": ";
      if (!project.output.empty()) others += project.output + ": ";
      others += project.reason + "\n";
    }
  }
  if (all == 0) return {};
  return {std::to_string(good) + " of " + std::to_string(wanted) + " projects were built as they should be\n",
          others};
}

std::string CountsLine(const RunSummary& summary) {
  const bool isTold = summary.errors + summary.warnings + summary.known > 0;
  if (summary.reports.empty() && !isTold) return {};
  std::string line = Counted(summary.errors, "error") + ", " + Counted(summary.warnings, "warning");
  if (summary.known > 0) line += "; " + std::to_string(summary.known) + " in the baseline not counted";
  return line + "\n";
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

std::string SummaryAsText(const RunSummary& summary) {
  std::string out;
  for (const auto& [action, report] : summary.reports) AppendVersions(report, out);
  const auto [built, others] = ProjectLines(summary);
  out += built + CountsLine(summary) + others;
  if (!summary.verdict.empty()) out += summary.verdict + "\n";
  return out;
}

}  // namespace qx
