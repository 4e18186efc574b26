// The log of a build as the window shows it: the newest rows in memory, everything in a file, so that a
// build may write as much as it likes. Headings open and close over their details; rows can be filtered and
// searched; errors and warnings are read out of it. No pixel.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/desktop/core/Severity.h"
#include "host/diagnostics/DiagnosticLog.h"
#include "host/log/ActionLog.h"
#include "plugin/Qxrunreport.h"

namespace qx::desktop {

struct LogRow {
  // One line, valid UTF-8 (a byte that is not became U+FFFD), without line ends. A line of more than
  // LogStore::kLongestRow bytes is cut and ends in "..."; the file has all of it.
  std::string text;
  Severity severity = Severity::Plain;
  int action = 0;           // 1-based; 0: none
  bool isDetail = false;    // stands under the heading before it
  bool hasDetails = false;  // a heading that can be closed
};

// An error or a warning that a program told. Texts are valid UTF-8.
struct Problem {
  Severity severity = Severity::Error;
  std::string project;     // its name; empty: not known
  std::string file;        // as the compiler wrote it; empty: none
  int line = 0;            // 1-based; 0: none
  std::string text;        // with its code in front: "CS0103: ..."
  int action = 0;          // 1-based
  std::size_t number = 0;  // of its row (LogStore::NumberOf)
};

// Why an action cannot run, as its validation said it. Bytes as they came.
struct Refusal {
  int action = 0;  // 1-based
  std::string subject, message;
};

// Records come from any thread, through the log; all else is the user-interface thread's. The rows of the
// last `kept` lines stay in memory; the file takes every line and goes with the store.
class LogStore final : public LogSink {
 public:
  static constexpr std::size_t kDefaultKept = 20'000;
  static constexpr std::size_t kLongestRow = 4'096;
  static constexpr std::size_t kMostProblems = 10'000;
  explicit LogStore(std::size_t kept = kDefaultKept);
  ~LogStore() override;

  void Take(const LogRecord& record) override;
  void Flush() override;
  bool IsBuffered() const override { return true; }

  // Empties it, the file too. No build is running.
  void Clear();
  // Takes in what has come since; true when the visible rows changed. Its time is bounded by `kept`, not by
  // what has come.
  bool Update();

  // The visible rows: those that pass the filter, without the details of closed headings.
  std::size_t RowCount() const;
  const LogRow& Row(std::size_t row) const;
  bool IsOpen(std::size_t row) const;
  void SetOpen(std::size_t row, bool open);
  // What tells a visible row from all others, however rows come, go and are filtered: rows count from 0 since
  // the last Clear. The way back gives the first visible row that is not older; RowCount() when there is none.
  std::size_t NumberOf(std::size_t row) const;
  std::size_t RowFrom(std::size_t number) const;
  // Rows that hold the text, letter case aside, and are at least as severe as `least`; a heading stays with a
  // detail that passes.
  void SetFilter(const std::string& text, Severity least);
  // The nearest visible row from `from` on (itself included), forwards or backwards and around the end, that
  // holds the text, letter case aside; -1 when there is none. RowCount() is row 0 again, and -1 the last row.
  long Find(const std::string& text, long from, bool forwards) const;

  // How often the text stands in visible rows as Find finds it, and the how manieth of them a row is; both 0
  // when there is none, the place 0 for a row without it.
  struct Hits {
    std::size_t place = 0, count = 0;
  };
  Hits CountHits(const std::string& text, std::size_t row) const;

  // The first errors and warnings that came until the last Update, in their order.
  const std::vector<Problem>& Problems() const;
  // How many there are of both by now, as a run's summary counts them. From any thread.
  DiagnosticCounts ProblemCounts() const;
  // Takes over into an action's report which projects were skipped on purpose. From any thread.
  void TakeSkipped(RunReport& report, int action) const;

  // Those that came since the last call. From any thread.
  std::vector<Refusal> TakeRefusals();

  // What came until the last Update: the lines in all, those that left the memory among them; errors and
  // warnings among those, as a run's summary counts them.
  std::size_t LineCount() const;
  std::size_t ErrorCount() const;
  std::size_t WarningCount() const;
  // Lines that are in the file only.
  std::size_t DroppedCount() const;
  // Lines in memory at this moment, those that wait for Update among them; never more than twice `kept`.
  std::size_t HeldCount() const;
  // The whole log as the command line would have written it, also while a build runs. Raises Exception naming
  // the file; when a part was lost on the way (FileError), what there is is saved and then told to be a part.
  void SaveTo(const std::string& file);
  // Why the file could not take a line; empty while it could.
  std::string FileError() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx::desktop
