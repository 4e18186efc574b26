#include "host/report/ServiceLog.h"

#include <nlohmann/json.hpp>

#include "host/log/LogFormat.h"
#include "platform/Environment.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

std::string BlockName(const LogRecord& record) {
  return std::to_string(record.action) + ". " + std::string(record.subject);
}

// The record's lines as the text log has them.
std::string TextOf(const LogRecord& record) {
  std::string text;
  AppendAsText(text, record, LogColour::Off);
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

}  // namespace

ServiceLog::ServiceLog(const ServiceSystem& system, const DiagnosticLog& diagnostics)
    : system_(&system), diagnostics_(&diagnostics) {
  if (!system.rootVariable.empty())
    root_ = WithTrailingDelimiter(ReadEnvironment(std::string(system.rootVariable)).value_or(""));
}

void ServiceLog::Append(std::string& out, const LogRecord& record) {
  switch (record.kind) {
    case LogKind::Begin:
      if (system_->progress != nullptr) {
        const int percent = record.actions > 0 ? (record.action - 1) * 100 / record.actions : 0;
        system_->progress(out, percent,
                          std::to_string(record.action) + " of " + std::to_string(record.actions) + ": " +
                              std::string(record.subject));
      }
      return system_->open(out, BlockName(record));
    case LogKind::Message:
    case LogKind::Status:
      return AppendOutput(out, record);
    case LogKind::Exception:
    case LogKind::Validation:
      system_->line(out, TextOf(record));
      return system_->problem(out, TextOf(record));
    case LogKind::Result:
      CloseProject(out);
      system_->line(out, TextOf(record));
      if (!record.success) system_->problem(out, BlockName(record) + " failed");
      return system_->close(out, BlockName(record));
    case LogKind::Summary:
      return AppendSummary(out, record);
  }
}

void ServiceLog::AppendOutput(std::string& out, const LogRecord& record) {
  const std::string_view project = diagnostics_->CurrentProject();
  const bool changes = system_->openProject != nullptr && project != openProject_;
  if (changes && !project.empty()) {
    CloseProject(out);
    openProject_ = project;
    system_->openProject(out, project);
  }
  const bool isHeaded = record.kind == LogKind::Status && !record.text.empty();
  if (isHeaded) system_->line(out, record.text);
  auto found = diagnostics_->InLastRecord();
  std::size_t number = 0;
  ForEachOutputLine(record, [&](std::string_view line) {
    const std::string shown = isHeaded ? "    " + std::string(line) : std::string();
    const std::string_view text = isHeaded ? std::string_view(shown) : line;
    const bool isFound = !found.empty() && found.front().line == number;
    ++number;
    if (isFound && !found.front().diagnostic.isKnown) {
      system_->diagnostic(out, text, found.front().diagnostic, root_);
    } else {
      system_->line(out, text);
    }
    if (isFound) found = found.subspan(1);
  });
  if (changes && project.empty()) CloseProject(out);
}

void ServiceLog::CloseProject(std::string& out) {
  if (!openProject_.empty()) system_->closeProject(out, openProject_);
  openProject_.clear();
}

void ServiceLog::AppendSummary(std::string& out, const LogRecord& record) const {
  const std::string text = TextOf(record);
  if (!text.empty()) system_->line(out, text);
  if (system_->progress != nullptr) system_->progress(out, 100, "The run has ended");
  const Json summary = Json::parse(record.subject, nullptr, false);
  if (!summary.is_object()) return;
  bool isFirst = true;
  for (const Json& version : summary.value("versions", Json::array())) {
    system_->version(out, version.value("name", ""), version.value("to", ""), isFirst);
    isFirst = false;
  }
}

}  // namespace qx
