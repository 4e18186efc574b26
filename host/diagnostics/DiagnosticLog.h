// The errors and warnings of a run, read out of the log while it streams: which there are, of which project and
// action, how many count. A sink of the log that comes before those that want to know what a line was.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/diagnostics/DiagnosticLine.h"
#include "host/diagnostics/ProjectMark.h"
#include "host/log/ActionLog.h"

namespace qx {

class Baseline;

// Calls receive(std::string_view) for each line of a message's text or of a status's details, in order; lines end
// in LF, as a child's output is divided. An empty text is one empty line. Other records have none.
template <class Receiver>
void ForEachOutputLine(const LogRecord& record, Receiver&& receive);

// Keeps texts in large pieces, at places that do not move: a diagnostic costs no allocation of its own.
class TextStore {
 public:
  std::string_view Keep(std::string_view text);
  std::size_t Size() const { return size_; }

 private:
  std::vector<std::unique_ptr<char[]>> pieces_;
  std::size_t left_ = 0;  // in the last piece
  char* next_ = nullptr;
  std::size_t size_ = 0;
};

// Names of projects, each once. A build of tens of thousands asks with every heading: one look into one vector answers
// for a name that is new.
class NameTable {
 public:
  struct Entry {
    std::string_view name;
    int begun = 0;  // the last beginning of an action behind which its output began; 0: behind none
  };
  // The name's entry, which the next call may move; a new one's text is kept in the store.
  Entry& Find(std::string_view name, TextStore& texts);

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t entry = 0;  // 1-based; 0: the slot is free
  };
  Slot& SlotFor(std::string_view name, std::uint32_t hash);
  void Grow();

  std::vector<Slot> slots_;  // a power of two, at most half of them taken
  std::vector<Entry> entries_;
};

struct DiagnosticCounts {
  std::int64_t errors = 0;    // those that count
  std::int64_t warnings = 0;  // those that count
  std::int64_t known = 0;     // of either severity, that the baseline holds
};

// The log calls Take; everything else may be called when no thread writes to the log, or from another sink
// within its Take.
class DiagnosticLog : public LogSink {
 public:
  // As many are kept, and as many bytes of texts; what comes beyond is counted only.
  static constexpr std::size_t kMostKept = 100'000;
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

  // The baseline (may be null) outlives it.
  explicit DiagnosticLog(const Baseline* baseline = nullptr) : baseline_(baseline) {}

  void Take(const LogRecord& record) override;

  // In the order they came.
  std::span<const Diagnostic> Kept() const { return kept_; }
  // Whether some were counted that are not kept.
  bool IsCut() const { return counts_.errors + counts_.warnings + counts_.known > std::ssize(kept_); }
  const DiagnosticCounts& Counts() const { return counts_; }

  struct Project {
    int action = 0;
    std::string_view name;  // the log's
  };
  // Those whose output began, each once an action, in the order they came.
  const std::vector<Project>& Projects() const { return projects_; }

  // What a line of the last record was, by the line's place among all lines of the record's message or details.
  struct Found {
    std::size_t line = 0;
    Diagnostic diagnostic;  // its texts are the record's
  };
  std::span<const Found> InLastRecord() const { return found_; }
  // The project whose output follows; empty when none's does.
  std::string_view CurrentProject() const { return entered_.empty() ? current_ : entered_.back(); }

 private:
  void BeginAction(int action);
  void TakeLine(std::string_view line, std::size_t number);
  void TakeMark(const ProjectMark& mark);
  bool WasToldBefore(const Diagnostic& diagnostic);
  std::string_view ProjectOf(std::string_view line) const;
  std::string_view Named(std::string_view project);
  NameTable::Entry& KeptName(std::string_view project);
  void Keep(const Diagnostic& diagnostic, std::string_view line);

  const Baseline* baseline_;
  TextStore texts_;
  std::vector<Diagnostic> kept_;
  std::vector<Found> found_;
  DiagnosticCounts counts_;
  std::vector<Project> projects_;

  int action_ = 0;
  NameTable names_;                           // of projects, kept among the texts
  int beginnings_ = 0;                        // of actions
  std::string_view current_;                  // this and those below are of names_ or empty
  std::vector<std::string_view> entered_;     // MSBuild's, the innermost last
  std::map<int, std::string_view> byNumber_;  // whose lines bear which number; the first 4,096
  bool repeats_ = false;                      // MSBuild lists once more what it has told
  std::unordered_set<std::string> told_;      // filled when it begins to
  std::size_t firstOfAction_ = 0;             // in kept_
};

template <class Receiver>
void ForEachOutputLine(const LogRecord& record, Receiver&& receive) {
  const auto take = [&receive](std::string_view text) {
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
      receive(text.substr(0, end));
      text.remove_prefix(end + 1);
      if (text.empty()) return;
    }
    receive(text);
  };
  if (record.kind == LogKind::Message) take(record.text);
  if (record.kind != LogKind::Status) return;
  for (std::size_t i = 0; i < record.details.size(); ++i) take(record.details[i]);
}

}  // namespace qx
