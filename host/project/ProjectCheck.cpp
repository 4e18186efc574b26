#include "host/project/ProjectCheck.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<const char*, 3> kSeverities{"error", "warning", "info"};

void AddError(ProjectCheck& check, int number, const std::string& subject, const std::string& message) {
  check.findings.emplace_back(number, CheckFinding{CheckSeverity::Error, subject, message, "", ""});
}

void Validate(TQXAction& action, int number, ProjectCheck& check) {
  ValidationErrors errors;
  bool isValid = false;
  try {
    action.Initialise();
    isValid = action.Validate(errors);
  } catch (const std::exception& error) {
    return AddError(check, number, action.GetActionLogTitle(), error.what());
  } catch (...) {
    return AddError(check, number, action.GetActionLogTitle(),
                    "An exception of an unknown type left the action");
  }
  for (const auto& [subject, message] : errors.Errors()) AddError(check, number, subject, message);
  if (!isValid && errors.Errors().empty())
    AddError(check, number, action.GetActionLogTitle(), "The action cannot run as it is set");
}

void Ask(TQXAction& action, int number, ProjectCheck& check) {
  IQXCheck* const own = CheckOf(action);
  if (own == nullptr) return;
  CheckReport report = own->CheckRun();
  for (CheckFinding& finding : report.findings) check.findings.emplace_back(number, std::move(finding));
  for (CheckedProject& project : report.projects) check.projects.emplace_back(number, std::move(project));
  for (CheckedStamp& stamp : report.stamps) check.stamps.emplace_back(number, std::move(stamp));
}

ProjectCheck Check(const OpenProject& project, bool validates) {
  ProjectCheck check;
  for (int i = 0; i < project.ActionCount(); ++i) {
    if (!project.IsEnabled(i)) continue;
    TQXAction* const action = project.Action(i);
    if (action != nullptr) {
      if (validates) Validate(*action, i + 1, check);
      Ask(*action, i + 1, check);
    } else if (validates) {
      AddError(check, i + 1, project.ActionType(i),
               "No loaded package has this action; name its package with --package");
    }
  }
  return check;
}

std::string Count(std::size_t number, const std::string& what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::string VersionsOf(const CheckedStamp& stamp) {
  std::string text = stamp.assemblyFrom;
  if (!stamp.fileFrom.empty()) text += (text.empty() ? "" : ", ") + std::string("file ") + stamp.fileFrom;
  return text.empty() ? "no version" : text;
}

}  // namespace

bool ProjectCheck::HasErrors() const {
  return std::any_of(findings.begin(), findings.end(),
                     [](const auto& entry) { return entry.second.severity == CheckSeverity::Error; });
}

ProjectCheck AskChecks(const OpenProject& project) { return Check(project, false); }
ProjectCheck CheckProject(const OpenProject& project) { return Check(project, true); }

std::string_view NameOf(CheckSeverity severity) { return kSeverities.at(static_cast<std::size_t>(severity)); }

std::string LineOf(const CheckFinding& finding) {
  return finding.subject + ": " + finding.message + (finding.hint.empty() ? "" : " (" + finding.hint + ")");
}

std::string CheckAsJson(const ProjectCheck& check) {
  Json findings = Json::array(), projects = Json::array(), stamps = Json::array();
  for (const auto& [action, finding] : check.findings) {
    findings.push_back({{"action", action},
                        {"severity", NameOf(finding.severity)},
                        {"subject", finding.subject},
                        {"message", finding.message},
                        {"file", finding.file},
                        {"hint", finding.hint}});
  }
  for (const auto& [action, project] : check.projects) {
    projects.push_back({{"action", action},
                        {"name", project.name},
                        {"path", project.path},
                        {"language", project.language},
                        {"builds", project.builds},
                        {"reason", project.reason}});
  }
  for (const auto& [action, stamp] : check.stamps) {
    const Json from = {{"assemblyVersion", stamp.assemblyFrom}, {"fileVersion", stamp.fileFrom}};
    stamps.push_back({{"action", action},
                      {"file", stamp.file},
                      {"project", stamp.project},
                      {"kind", stamp.kind},
                      {"from", from}});
  }
  const Json whole = {{"findings", findings}, {"projects", projects}, {"stamps", stamps}};
  return whole.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string CheckAsText(const ProjectCheck& check) {
  std::string text;
  std::array<std::size_t, kSeverities.size()> counts{};
  for (const CheckSeverity severity : {CheckSeverity::Error, CheckSeverity::Warning, CheckSeverity::Info}) {
    for (const auto& [action, finding] : check.findings) {
      if (finding.severity != severity) continue;
      ++counts[static_cast<std::size_t>(severity)];
      text += std::string(NameOf(severity)) + ": " + LineOf(finding) + "\n";
    }
  }
  if (!check.projects.empty()) {
    const auto built = std::count_if(check.projects.begin(), check.projects.end(),
                                     [](const auto& entry) { return entry.second.builds; });
    text += std::to_string(built) + " of " + std::to_string(check.projects.size()) + " projects are built\n";
    for (const auto& [action, project] : check.projects) {
      if (!project.builds) text += "    " + project.name + " is not: " + project.reason + "\n";
    }
  }
  if (!check.stamps.empty()) {
    text += Count(check.stamps.size(), "file") + " to stamp\n";
    for (const auto& [action, stamp] : check.stamps)
      text += "    " + stamp.file + ": " + VersionsOf(stamp) + "\n";
  }
  return text + Count(counts[0], "error") + ", " + Count(counts[1], "warning") + "\n";
}

}  // namespace qx
