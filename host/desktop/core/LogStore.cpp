#include "host/desktop/core/LogStore.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <span>
#include <utility>

#include "host/diagnostics/SkippedProjects.h"
#include "host/log/LogFormat.h"
#include "host/log/LogStream.h"
#include "host/system/TemporaryFolder.h"
#include "platform/Lines.h"
#include "platform/Texts.h"
#include "platform/VisibleText.h"
#include "platform/files/Files.h"

namespace qx::desktop {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} << 10;

// The file that takes every line: in a folder of its own that nobody else may enter, made with the first
// bytes. Once a write failed nothing more is written, so that what stands there is a beginning of the log.
class Spool {
 public:
  ~Spool() { Remove(); }

  void Append(const LogRecord& record) {
    const std::lock_guard guard(mutex_);
    AppendAsText(buffer_, record, LogColour::Off);
    if (buffer_.size() >= kBufferSize) Write();
  }
  void Flush() {
    const std::lock_guard guard(mutex_);
    Write();
  }
  std::string Error() {
    const std::lock_guard guard(mutex_);
    return error_;
  }
  void Remove() {
    const std::lock_guard guard(mutex_);
    file_.reset();
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(ToUtf16(folder_), ignored);
    folder_.clear();
    buffer_.clear();
    error_.clear();
    size_ = 0;
  }

  // Where it is and how many bytes of it are whole lines by now; an empty name when nothing was written.
  std::pair<std::string, std::uint64_t> Written() {
    const std::lock_guard guard(mutex_);
    Write();
    return {file_ ? file_->Name() : "", size_};
  }

 private:
  void Write() {
    if (!buffer_.empty() && error_.empty()) {
      try {
        if (folder_.empty()) folder_ = MakePrivateFolder();
        if (!file_) file_.emplace(LogFile::Create(folder_ + "/log.txt"));
        const std::string reason = file_->Write(buffer_);
        if (reason.empty()) size_ += buffer_.size();
        if (!reason.empty()) error_ = "Cannot write " + file_->Name() + ": " + reason;
      } catch (const Exception& fault) {
        error_ = fault.Message();
      }
    }
    buffer_.clear();
    if (buffer_.capacity() > 4 * kBufferSize) buffer_ = std::string();
  }

  std::mutex mutex_;
  std::string folder_;
  std::optional<LogFile> file_;
  std::string buffer_;
  std::string error_;
  std::uint64_t size_ = 0;
};

struct Entry {
  LogRow row;
  bool isOpen = true;
};

// Cut between two characters when it is too long.
std::string RowText(std::string_view whole) {
  const std::string line = VisibleText(whole);
  if (line.size() <= LogStore::kLongestRow) return AsValidUtf8(line);
  std::size_t size = LogStore::kLongestRow;
  while (size > LogStore::kLongestRow - 4 && !BeginsCharacter(line[size])) --size;
  return AsValidUtf8(std::string_view(line).substr(0, size)) + "...";
}

Severity SeverityOf(const Diagnostic& diagnostic) {
  return diagnostic.severity == qx::Severity::Error ? Severity::Error : Severity::Warning;
}

// The heading of a status on one row.
LogRow HeadingOf(const LogRecord& record) {
  std::string heading(record.text);
  std::replace_if(
      heading.begin(), heading.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  LogRow row;
  row.text = RowText(heading);
  row.severity = Severity::Heading;
  row.action = record.action;
  row.hasDetails = record.details.size() > 0;
  return row;
}

using FoundDiagnostics = std::span<const DiagnosticLog::Found>;

// What a record is made into: calls take(LogRow, const Diagnostic*) for each of its rows; the diagnostic, among those
// that were found in the record, is the one that the row begins.
template <class Receiver>
void ForEachRow(const LogRecord& record, FoundDiagnostics found, Receiver&& take) {
  const auto give = [&](std::string_view line, Severity severity, bool isDetail, const Diagnostic* begun) {
    LogRow row;
    row.text = RowText(line);
    row.severity = severity;
    row.action = record.action;
    row.isDetail = isDetail;
    take(std::move(row), begun);
  };
  if (record.kind == LogKind::Message || record.kind == LogKind::Status) {
    const bool isHeaded = record.kind == LogKind::Status && !record.text.empty();
    if (isHeaded) take(HeadingOf(record), nullptr);
    std::size_t number = 0;
    ForEachOutputLine(record, [&](std::string_view line) {
      const bool isFound = !found.empty() && found.front().line == number++;
      const Diagnostic* begun = isFound ? &found.front().diagnostic : nullptr;
      const Severity severity = isFound ? SeverityOf(*begun) : Severity::Plain;
      if (isFound) found = found.subspan(1);
      // A line that a program wrote anew, over what stood there, is several rows; an empty one is one, as in the file.
      if (line.empty() || line == "\r") return give("", severity, isHeaded, begun);
      ForEachLine(
          line, [&](std::string_view row) { give(row, severity, isHeaded, std::exchange(begun, nullptr)); });
    });
    return;
  }
  const bool isGood = (record.kind == LogKind::Result || record.kind == LogKind::Summary) && record.success;
  std::string text;
  AppendAsText(text, record, LogColour::Off);
  const Severity severity = isGood                            ? Severity::Good
                            : record.kind == LogKind::Summary ? Severity::Heading
                                                              : Severity::Error;
  ForEachLine(text, [&](std::string_view line) { give(line, severity, false, nullptr); });
}

Problem ProblemOf(const Diagnostic& diagnostic, std::size_t number) {
  Problem problem;
  problem.severity = SeverityOf(diagnostic);
  problem.project = RowText(diagnostic.project);
  problem.file = RowText(diagnostic.file);
  problem.line = diagnostic.line;
  problem.text = RowText(diagnostic.message);
  if (!diagnostic.code.empty()) problem.text = RowText(diagnostic.code) + ": " + problem.text;
  problem.action = diagnostic.action;
  problem.number = number;
  return problem;
}

}  // namespace

// Rows have a number each, counted from the first that ever came; `visible` holds numbers.
struct LogStore::State {
  explicit State(std::size_t rowsKept) : kept(std::max<std::size_t>(rowsKept, 1)) {}

  std::size_t kept;
  Spool spool;

  // Of the thread that writes and of the one that shows, under the lock.
  mutable std::mutex mutex;
  std::deque<Entry> waiting;  // the newest `kept` of those that came since the last Update
  std::size_t come = 0;       // lines in all
  std::optional<DiagnosticLog> diagnostics{std::in_place};
  std::vector<Problem> waitingProblems;
  std::size_t problemsCome = 0;
  std::vector<Refusal> refusals;

  // Of the user-interface thread alone.
  std::deque<Entry> rows;
  std::size_t first = 0;  // the number of the first row in memory
  std::deque<std::size_t> visible;
  // The rows at the beginning that have lost their heading are not shown: it was closed.
  bool hidesOrphans = false;
  std::size_t lines = 0;
  DiagnosticCounts counts;
  std::vector<Problem> problems;
  std::string filter;  // with folded case
  Severity least = Severity::Plain;

  Entry& At(std::size_t number) { return rows.at(number - first); }

  bool Passes(const LogRow& row) const {
    return row.severity >= least && (filter.empty() || FoldCase(row.text).find(filter) != std::string::npos);
  }

  // Makes the rows from the number on visible, which are none by now.
  void Show(std::size_t number) {
    bool isHidden = hidesOrphans && number == first;
    std::size_t heading = 0;
    bool headingWaits = false;  // for a detail that passes
    for (; number < first + rows.size(); ++number) {
      const Entry& entry = At(number);
      const bool passes = Passes(entry.row);
      if (!entry.row.isDetail) {
        isHidden = !entry.isOpen;
        heading = number;
        headingWaits = entry.row.hasDetails && !passes;
        if (passes) visible.push_back(number);
        continue;
      }
      if (!passes) continue;
      if (std::exchange(headingWaits, false)) visible.push_back(heading);
      if (!isHidden) visible.push_back(number);
    }
  }
  void ShowAll() {
    visible.clear();
    Show(first);
  }

  // Rows that are too many leave; true when a visible one did.
  bool DropOldest(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      const Entry& entry = rows.front();
      if (!entry.row.isDetail) hidesOrphans = !entry.isOpen;
      rows.pop_front();
      ++first;
    }
    bool changed = false;
    while (!visible.empty() && visible.front() < first) {
      visible.pop_front();
      changed = true;
    }
    return changed;
  }
};

LogStore::LogStore(std::size_t kept) : state_(std::make_unique<State>(kept)) {}
LogStore::~LogStore() = default;

void LogStore::Take(const LogRecord& record) {
  state_->spool.Append(record);
  const std::lock_guard guard(state_->mutex);
  state_->diagnostics->Take(record);
  if (record.kind == LogKind::Validation)
    state_->refusals.push_back({record.action, std::string(record.subject), std::string(record.text)});
  ForEachRow(record, state_->diagnostics->InLastRecord(), [this](LogRow row, const Diagnostic* begun) {
    const std::size_t number = state_->come++;
    if (begun != nullptr && state_->problemsCome < kMostProblems) {
      ++state_->problemsCome;
      state_->waitingProblems.push_back(ProblemOf(*begun, number));
    }
    state_->waiting.push_back({std::move(row)});
    if (state_->waiting.size() > state_->kept) state_->waiting.pop_front();
  });
}

void LogStore::Flush() { state_->spool.Flush(); }

void LogStore::Clear() {
  state_->spool.Remove();
  const std::lock_guard guard(state_->mutex);
  state_->waiting.clear();
  state_->come = 0;
  state_->diagnostics.emplace();
  state_->waitingProblems.clear();
  state_->problemsCome = 0;
  state_->rows.clear();
  state_->visible.clear();
  state_->first = 0;
  state_->hidesOrphans = false;
  state_->lines = 0;
  state_->counts = {};
  state_->problems.clear();
}

bool LogStore::Update() {
  State& state = *state_;
  std::deque<Entry> come;
  {
    const std::lock_guard guard(state.mutex);
    come.swap(state.waiting);
    state.lines = state.come;
    state.counts = state.diagnostics->Counts();
    std::move(state.waitingProblems.begin(), state.waitingProblems.end(), std::back_inserter(state.problems));
    state.waitingProblems.clear();
  }
  if (come.empty()) return false;
  bool changed = false;
  const std::size_t firstOfCome = state.lines - come.size();
  if (firstOfCome > state.first + state.rows.size()) {
    // Some came and went unseen, and all that is here is older than they.
    changed = state.DropOldest(state.rows.size());
    state.first = firstOfCome;
    state.hidesOrphans = false;
  }
  const std::size_t shownBefore = state.visible.size();
  std::move(come.begin(), come.end(), std::back_inserter(state.rows));
  state.Show(firstOfCome);
  changed = changed || state.visible.size() != shownBefore;
  if (state.rows.size() > state.kept) changed = state.DropOldest(state.rows.size() - state.kept) || changed;
  return changed;
}

std::size_t LogStore::RowCount() const { return state_->visible.size(); }
const LogRow& LogStore::Row(std::size_t row) const { return state_->At(state_->visible.at(row)).row; }
bool LogStore::IsOpen(std::size_t row) const { return state_->At(state_->visible.at(row)).isOpen; }

void LogStore::SetOpen(std::size_t row, bool open) {
  Entry& entry = state_->At(state_->visible.at(row));
  if (!entry.row.hasDetails || entry.isOpen == open) return;
  entry.isOpen = open;
  state_->ShowAll();
}

std::size_t LogStore::NumberOf(std::size_t row) const { return state_->visible.at(row); }

std::size_t LogStore::RowFrom(std::size_t number) const {
  const std::deque<std::size_t>& visible = state_->visible;
  return static_cast<std::size_t>(std::lower_bound(visible.begin(), visible.end(), number) - visible.begin());
}

void LogStore::SetFilter(const std::string& text, Severity least) {
  state_->filter = FoldCase(text);
  state_->least = least;
  state_->ShowAll();
}

long LogStore::Find(const std::string& text, long from, bool forwards) const {
  const long count = static_cast<long>(RowCount());
  const std::string wanted = FoldCase(text);
  if (count == 0 || wanted.empty()) return -1;
  long row = (from % count + count) % count;
  for (long looked = 0; looked < count; ++looked) {
    if (FoldCase(Row(static_cast<std::size_t>(row)).text).find(wanted) != std::string::npos) return row;
    row = (row + (forwards ? 1 : count - 1)) % count;
  }
  return -1;
}

LogStore::Hits LogStore::CountHits(const std::string& text, std::size_t row) const {
  Hits hits;
  const std::string wanted = FoldCase(text);
  if (wanted.empty()) return hits;
  for (std::size_t at = 0; at < RowCount(); ++at) {
    if (FoldCase(Row(at).text).find(wanted) == std::string::npos) continue;
    ++hits.count;
    if (at == row) hits.place = hits.count;
  }
  return hits;
}

const std::vector<Problem>& LogStore::Problems() const { return state_->problems; }

DiagnosticCounts LogStore::ProblemCounts() const {
  const std::lock_guard guard(state_->mutex);
  return state_->diagnostics->Counts();
}

void LogStore::TakeSkipped(RunReport& report, int action) const {
  const std::lock_guard guard(state_->mutex);
  qx::TakeSkipped(report, action, state_->diagnostics->Kept());
}

std::vector<Refusal> LogStore::TakeRefusals() {
  const std::lock_guard guard(state_->mutex);
  return std::exchange(state_->refusals, {});
}

std::size_t LogStore::LineCount() const { return state_->lines; }
std::size_t LogStore::ErrorCount() const { return static_cast<std::size_t>(state_->counts.errors); }
std::size_t LogStore::WarningCount() const { return static_cast<std::size_t>(state_->counts.warnings); }
std::size_t LogStore::DroppedCount() const { return state_->lines - state_->rows.size(); }

std::size_t LogStore::HeldCount() const {
  const std::lock_guard guard(state_->mutex);
  return state_->rows.size() + state_->waiting.size();
}

void LogStore::SaveTo(const std::string& file) {
  const auto [from, size] = state_->spool.Written();
  LogFile to = LogFile::Create(file);
  std::uint64_t left = size;
  std::string reason;
  std::string buffer;
  const bool isRead =
      left == 0 || TryReadParts(from, buffer, [&](std::string_view part) {
        part = part.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(part.size(), left)));
        left -= part.size();
        reason = to.Write(part);
        return left == 0 || !reason.empty();
      });
  if (!reason.empty()) throw Exception("Cannot write " + file + ": " + reason);
  if (!isRead || left > 0) throw Exception("Cannot write " + file + ": " + from + " cannot be read");
  const std::string lost = FileError();
  if (!lost.empty()) throw Exception(file + " holds only the beginning of the log: " + lost);
}

std::string LogStore::FileError() const { return state_->spool.Error(); }

}  // namespace qx::desktop
