#include "host/report/RunRecord.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace qx {
namespace {

std::string TwoDigits(unsigned number) { return std::to_string(number + 100).substr(1); }

// The projects of an action by their names, in the order in which they were asked for.
class ProjectTable {
 public:
  // The reference holds until the next call.
  ProjectRecord& operator[](std::string_view name) {
    const auto [place, isNew] = places_.try_emplace(std::string(name), projects_.size());
    if (isNew) projects_.push_back({place->first, nullptr, {}});
    return projects_[place->second];
  }
  std::vector<ProjectRecord> Take() { return std::move(projects_); }

 private:
  std::vector<ProjectRecord> projects_;
  std::unordered_map<std::string, std::size_t> places_;
};

}  // namespace

std::string VerdictOf(const RunRecord& record) {
  switch (record.outcome) {
    case RunOutcome::Succeeded:
      return "The run succeeded";
    case RunOutcome::ActionFailed:
      return record.summary.verdict.empty() ? "The run failed" : record.summary.verdict;
    case RunOutcome::Invalid:
      return "Nothing was executed: validation failed";
    case RunOutcome::ExceptionLeft:
      return "The run failed: an exception left an action";
    case RunOutcome::Stopped:
      return "The run was stopped";
  }
  return "The run failed";
}

std::string_view OutcomeWord(const RunRecord& record) {
  switch (record.outcome) {
    case RunOutcome::Succeeded:
      return "succeeded";
    case RunOutcome::Invalid:
      return "invalid";
    case RunOutcome::Stopped:
      return "stopped";
    default:
      return "failed";
  }
}

std::string TimeText(std::chrono::sys_seconds time, double seconds) {
  time += std::chrono::seconds(std::llround(std::clamp(seconds, 0.0, 1e9)));
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  return std::to_string(static_cast<int>(date.year())) + "-" +
         TwoDigits(static_cast<unsigned>(date.month())) + "-" + TwoDigits(static_cast<unsigned>(date.day())) +
         "T" + TwoDigits(static_cast<unsigned>(clock.hours().count())) + ":" +
         TwoDigits(static_cast<unsigned>(clock.minutes().count())) + ":" +
         TwoDigits(static_cast<unsigned>(clock.seconds().count())) + "Z";
}

std::vector<ProjectRecord> ProjectsOf(const RunRecord& record, int action) {
  ProjectTable projects;
  for (const auto& [number, report] : record.summary.reports) {
    if (number != action) continue;
    for (const RunProject& project : report.projects) projects[project.name].report = &project;
  }
  for (const DiagnosticLog::Project& project : record.projects) {
    if (project.action == action) projects[project.name];
  }
  for (const Diagnostic& diagnostic : record.diagnostics) {
    if (diagnostic.action != action || diagnostic.project.empty()) continue;
    ProjectRecord& project = projects[diagnostic.project];
    if (diagnostic.severity == Severity::Error && !diagnostic.isKnown) project.errors.push_back(&diagnostic);
  }
  return projects.Take();
}

std::string PlaceOf(const Diagnostic& diagnostic) {
  std::string place(diagnostic.file);
  if (diagnostic.line == 0) return place;
  place += "(" + std::to_string(diagnostic.line);
  if (diagnostic.column > 0) place += "," + std::to_string(diagnostic.column);
  return place + ")";
}

std::string LineOf(const Diagnostic& diagnostic) {
  std::string line = PlaceOf(diagnostic);
  if (!line.empty()) line += ": ";
  line += NameOf(diagnostic.severity);
  if (!diagnostic.code.empty()) (line += ' ') += diagnostic.code;
  return (line += ": ") += diagnostic.message;
}

}  // namespace qx
