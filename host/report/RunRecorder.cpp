#include "host/report/RunRecorder.h"

#include <algorithm>

#include "host/actions/ActionHost.h"
#include "host/log/LogFormat.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxrunreport.h"

namespace qx {
namespace {

constexpr std::size_t kLongestLastLine = 4096;
constexpr std::size_t kMostDiffLines = 2000;

// The file's text as UTF-8, its line ends LF.
std::string TextForDiff(const std::string& path) {
  const std::string bytes = ReadFile(path);
  std::string scratch;
  std::string text = AsValidUtf8(DecodeText(bytes, scratch));
  std::erase(text, '\r');
  return text;
}

FileChange ChangeOf(const RunFile& file, int action) {
  FileChange change{action, file.path, {}, ""};
  try {
    const std::string before = TextForDiff(file.backup);
    const std::string after = TextForDiff(file.path);
    change.diff = DiffLines(file.path, before, after);
    if (change.diff.empty()) change.remark = "Its text is the same: line ends or the encoding changed";
    if (change.diff.size() > kMostDiffLines) {
      change.remark = "The first " + std::to_string(kMostDiffLines) + " of " +
                      std::to_string(change.diff.size()) + " lines";
      change.diff.resize(kMostDiffLines);
    }
  } catch (const Exception& fault) {
    change.remark = fault.Message();
  }
  return change;
}

}  // namespace

void RunRecorder::Take(const LogRecord& record) {
  KeepLog(record);
  ActionRecord* const action = Of(record.action);
  switch (record.kind) {
    case LogKind::Begin:
      lineCount_ = 0;
      break;
    case LogKind::Message:
    case LogKind::Status:
      KeepLastLine(record);
      break;
    case LogKind::Exception:
      if (action != nullptr) action->exceptions.emplace_back(record.text);
      break;
    case LogKind::Validation:
      validation_.push_back({record.action, std::string(record.subject), std::string(record.text)});
      break;
    case LogKind::Result: {
      if (action == nullptr) break;
      action->name = record.subject;
      action->state = record.success ? ActionState::Succeeded : ActionState::Failed;
      action->seconds = record.seconds;
      const std::size_t first = lineCount_ > kLastLines ? lineCount_ - kLastLines : 0;
      for (std::size_t i = first; i < lineCount_; ++i)
        action->lastLines.push_back(lastLines_[i % kLastLines]);
      break;
    }
    case LogKind::Summary:
      break;
  }
}

void RunRecorder::KeepLog(const LogRecord& record) {
  line_.clear();
  AppendAsText(line_, record, LogColour::Off);
  if (log_.tail.empty() && log_.head.size() + line_.size() <= kMostLog) {
    log_.head += line_;
    return;
  }
  log_.tail += line_;
  if (log_.tail.size() <= 2 * kMostLog) return;
  // Half of it at a time, so that each byte is moved once.
  std::size_t cut = log_.tail.find('\n', log_.tail.size() - kMostLog);
  cut = cut == std::string::npos ? log_.tail.size() : cut + 1;
  log_.linesBetween +=
      std::count(log_.tail.begin(), log_.tail.begin() + static_cast<std::ptrdiff_t>(cut), '\n');
  log_.tail.erase(0, cut);
}

void RunRecorder::KeepLastLine(const LogRecord& record) {
  std::string_view text = std::string_view(line_).substr(0, kLongestLastLine);
  while (text.ends_with('\n')) text.remove_suffix(1);
  if (text.empty() || record.action == 0) return;
  lastLines_[lineCount_++ % kLastLines] = text;
}

void RunRecorder::SetActions(const OpenProject& project) {
  for (int i = 0; i < project.ActionCount(); ++i) {
    ActionRecord record;
    record.number = i + 1;
    record.name = project.ActionType(i);
    actions_.push_back(std::move(record));
  }
}

void RunRecorder::LookAt(TQXAction& action, int number) {
  if (ActionRecord* const record = Of(number)) record->tests = action.Host().tests;
  IQXRunReport* const report = RunReportOf(action);
  if (report == nullptr) return;
  for (const RunFile& file : report->ReportRun(false).files) {
    if (file.changed) changes_.push_back(ChangeOf(file, number));
  }
}

void RunRecorder::FillIn(RunRecord& record) const {
  record.actions = actions_;
  record.validation = validation_;
  record.changes = changes_;
  record.log = log_;
}

ActionRecord* RunRecorder::Of(int action) {
  const auto found = std::find_if(actions_.begin(), actions_.end(),
                                  [action](const ActionRecord& one) { return one.number == action; });
  return found == actions_.end() ? nullptr : &*found;
}

}  // namespace qx
