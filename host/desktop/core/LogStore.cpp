#include "host/desktop/core/LogStore.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <utility>

#include "host/log/LogFormat.h"
#include "host/log/LogStream.h"
#include "host/system/TemporaryFolder.h"
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

struct Counts {
  std::size_t lines = 0;
  std::size_t errors = 0;
  std::size_t warnings = 0;
};

// Cut between two characters when it is too long.
std::string RowText(std::string_view whole) {
  const std::string line = VisibleText(whole);
  if (line.size() <= LogStore::kLongestRow) return AsValidUtf8(line);
  std::size_t size = LogStore::kLongestRow;
  while (size > LogStore::kLongestRow - 4 && !BeginsCharacter(line[size])) --size;
  return AsValidUtf8(std::string_view(line).substr(0, size)) + "...";
}

// What a record is made into: calls take(LogRow) for each of its rows.
template <class Receiver>
void ForEachRow(const LogRecord& record, Receiver&& take) {
  const auto give = [&](std::string_view line, Severity severity, bool isDetail) {
    LogRow row;
    row.text = RowText(line);
    row.severity = severity;
    row.action = record.action;
    row.isDetail = isDetail;
    take(std::move(row));
  };
  // An empty text is one empty line, as it is in the file.
  const auto giveLines = [&](std::string_view text, bool isDetail) {
    if (text.empty()) return give("", Severity::Plain, isDetail);
    ForEachLine(text, [&](std::string_view line) { give(line, SeverityOf(line), isDetail); });
  };
  if (record.kind == LogKind::Message) return giveLines(record.text, false);
  if (record.kind == LogKind::Status) {
    const bool isHeaded = !record.text.empty();
    if (isHeaded) {
      std::string heading(record.text);
      std::replace_if(
          heading.begin(), heading.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
      LogRow row;
      row.text = RowText(heading);
      row.severity = Severity::Heading;
      row.action = record.action;
      row.hasDetails = record.details.size() > 0;
      take(std::move(row));
    }
    for (std::size_t i = 0; i < record.details.size(); ++i) giveLines(record.details[i], isHeaded);
    return;
  }
  const Severity severity =
      record.kind == LogKind::Result && record.success ? Severity::Good : Severity::Error;
  std::string text;
  AppendAsText(text, record, LogColour::Off);
  ForEachLine(text, [&](std::string_view line) { give(line, severity, false); });
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
  Counts come;

  // Of the user-interface thread alone.
  std::deque<Entry> rows;
  std::size_t first = 0;  // the number of the first row in memory
  std::deque<std::size_t> visible;
  // The rows at the beginning that have lost their heading are not shown: it was closed.
  bool hidesOrphans = false;
  Counts counts;
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
  std::vector<LogRow> made;
  ForEachRow(record, [&](LogRow row) { made.push_back(std::move(row)); });
  const std::lock_guard guard(state_->mutex);
  for (LogRow& row : made) {
    ++state_->come.lines;
    state_->come.errors += row.severity == Severity::Error;
    state_->come.warnings += row.severity == Severity::Warning;
    state_->waiting.push_back({std::move(row)});
    if (state_->waiting.size() > state_->kept) state_->waiting.pop_front();
  }
}

void LogStore::Flush() { state_->spool.Flush(); }

void LogStore::Clear() {
  state_->spool.Remove();
  const std::lock_guard guard(state_->mutex);
  state_->waiting.clear();
  state_->come = {};
  state_->rows.clear();
  state_->visible.clear();
  state_->first = 0;
  state_->hidesOrphans = false;
  state_->counts = {};
}

bool LogStore::Update() {
  State& state = *state_;
  std::deque<Entry> come;
  {
    const std::lock_guard guard(state.mutex);
    come.swap(state.waiting);
    state.counts = state.come;
  }
  if (come.empty()) return false;
  bool changed = false;
  const std::size_t firstOfCome = state.counts.lines - come.size();
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

std::size_t LogStore::LineCount() const { return state_->counts.lines; }
std::size_t LogStore::ErrorCount() const { return state_->counts.errors; }
std::size_t LogStore::WarningCount() const { return state_->counts.warnings; }
std::size_t LogStore::DroppedCount() const { return state_->counts.lines - state_->rows.size(); }

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
