// A run as JSON, and as SARIF, which is JSON too.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "host/project/ProjectCheck.h"
#include "host/report/Reports.h"
#include "platform/Texts.h"
#include "platform/VisibleText.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

std::string Written(const Json& json) {
  return VisibleText(json.dump(1, ' ', false, Json::error_handler_t::replace)) + "\n";
}

std::string_view NameOf(ActionState state) {
  if (state == ActionState::Succeeded) return "succeeded";
  return state == ActionState::Failed ? "failed" : "not run";
}

Json AsJson(const Diagnostic& diagnostic, bool hasBaseline) {
  Json json = {{"severity", NameOf(diagnostic.severity)},
               {"code", diagnostic.code},
               {"file", diagnostic.file},
               {"line", diagnostic.line},
               {"column", diagnostic.column},
               {"message", diagnostic.message},
               {"project", diagnostic.project},
               {"action", diagnostic.action}};
  if (hasBaseline) json["known"] = diagnostic.isKnown;
  return json;
}

// Everything but the characters that stand for themselves in an address, as %XX.
void AppendEscaped(std::string& out, std::string_view text) {
  constexpr std::string_view kPlain = "-._~/";
  for (const char c : text) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                         kPlain.find(c) != std::string_view::npos;
    if (isPlain) {
      out += c;
    } else {
      (out += '%') += UpperHex(static_cast<unsigned char>(c), 2);
    }
  }
}

// "file:///C:/a%20b.cpp", "file://server/share/a.cpp"; a relative name stays relative.
std::string AddressOf(std::string_view file) {
  std::string name(file);
  std::replace(name.begin(), name.end(), '\\', '/');
  std::string_view rest = name;
  std::string address;
  if (rest.starts_with("//")) {
    address = "file:";
  } else if (rest.starts_with('/')) {
    address = "file://";
  } else if (rest.size() > 2 && rest[1] == ':' && rest[2] == '/') {
    address = "file:///" + std::string(rest.substr(0, 2));
    rest.remove_prefix(2);
  }
  AppendEscaped(address, rest);
  return address;
}

Json ResultOf(const Diagnostic& diagnostic, bool hasBaseline) {
  Json result = Json::object();
  if (!diagnostic.code.empty()) result["ruleId"] = diagnostic.code;
  result["level"] = NameOf(diagnostic.severity);
  result["message"] = {{"text", diagnostic.message}};
  if (!diagnostic.file.empty()) {
    Json place = {{"artifactLocation", {{"uri", AddressOf(diagnostic.file)}}}};
    if (diagnostic.line > 0) place["region"]["startLine"] = diagnostic.line;
    if (diagnostic.line > 0 && diagnostic.column > 0) place["region"]["startColumn"] = diagnostic.column;
    result["locations"] = Json::array({{{"physicalLocation", place}}});
  }
  if (hasBaseline) result["baselineState"] = diagnostic.isKnown ? "unchanged" : "new";
  result["properties"] = {{"action", diagnostic.action}, {"project", diagnostic.project}};
  return result;
}

// What is wrong with the run and no compiler told.
Json NotificationsOf(const RunRecord& record) {
  Json all = Json::array();
  const auto add = [&all](const std::string& text) {
    all.push_back({{"level", "error"}, {"message", {{"text", text}}}});
  };
  for (const ValidationRecord& fault : record.validation) add(fault.subject + ": " + fault.message);
  for (const ActionRecord& action : record.actions) {
    for (const std::string& exception : action.exceptions) add(exception);
    if (action.state == ActionState::Failed)
      add(std::to_string(action.number) + ". " + action.name + " failed");
  }
  return all;
}

// What was known to be wrong before the run.
Json ConfigurationNotificationsOf(const RunRecord& record) {
  Json all = Json::array();
  for (const auto& [action, finding] : record.findings) {
    Json one = {{"level", NameOf(finding.severity)}, {"message", {{"text", LineOf(finding)}}}};
    if (!finding.file.empty()) {
      const Json place = {{"artifactLocation", {{"uri", AddressOf(finding.file)}}}};
      one["locations"] = Json::array({{{"physicalLocation", place}}});
    }
    all.push_back(std::move(one));
  }
  return all;
}

}  // namespace

std::string JsonReport(const RunRecord& record) {
  Json actions = Json::array(), diagnostics = Json::array(), validation = Json::array(),
       tests = Json::array();
  for (const ActionRecord& action : record.actions) {
    actions.push_back({{"action", action.number},
                       {"name", action.name},
                       {"result", NameOf(action.state)},
                       {"seconds", action.seconds},
                       {"exceptions", action.exceptions}});
    for (const TestCase& test : action.tests) {
      tests.push_back({{"action", action.number},
                       {"class", test.className},
                       {"name", test.name},
                       {"outcome", test.outcome},
                       {"seconds", test.seconds},
                       {"message", test.message},
                       {"trace", test.trace}});
    }
  }
  for (const Diagnostic& one : record.diagnostics) diagnostics.push_back(AsJson(one, record.hasBaseline));
  for (const ValidationRecord& one : record.validation)
    validation.push_back({{"action", one.action}, {"subject", one.subject}, {"message", one.message}});
  return Written({{"outcome", OutcomeWord(record)},
                  {"exitCode", static_cast<int>(record.outcome)},
                  {"buildProject", record.project},
                  {"started", TimeText(record.started)},
                  {"summary", Json::parse(SummaryAsJson(record.summary))},
                  {"diagnostics", diagnostics},
                  {"diagnosticsAreCut", record.diagnosticsAreCut},
                  {"actions", actions},
                  {"validation", validation},
                  {"findings", Json::parse(CheckAsJson({record.findings, {}, {}})).at("findings")},
                  {"tests", tests}});
}

std::string SarifReport(const RunRecord& record) {
  Json results = Json::array(), rules = Json::array();
  std::set<std::string_view> codes;
  for (const Diagnostic& diagnostic : record.diagnostics) {
    results.push_back(ResultOf(diagnostic, record.hasBaseline));
    if (!diagnostic.code.empty()) codes.insert(diagnostic.code);
  }
  for (const std::string_view code : codes) rules.push_back({{"id", code}});
  Json invocation = {{"executionSuccessful", record.outcome == RunOutcome::Succeeded},
                     {"exitCode", static_cast<int>(record.outcome)},
                     {"startTimeUtc", TimeText(record.started)},
                     {"endTimeUtc", TimeText(record.started, record.summary.seconds)},
                     {"toolExecutionNotifications", NotificationsOf(record)},
                     {"toolConfigurationNotifications", ConfigurationNotificationsOf(record)}};
  const Json tool = {{"driver", {{"name", "qxhost"}, {"version", record.hostVersion}, {"rules", rules}}}};
  const Json run = {{"tool", tool}, {"invocations", Json::array({invocation})}, {"results", results}};
  return Written({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                  {"version", "2.1.0"},
                  {"runs", Json::array({run})}});
}

}  // namespace qx
