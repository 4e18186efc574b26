// The log of a build as the window shows it: the newest rows in memory, everything in a file, so that a
// build may write as much as it likes. Headings open and close over their details; rows can be filtered and
// searched. No pixel.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/desktop/core/Severity.h"
#include "host/log/ActionLog.h"

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

// Records come from any thread, through the log; all else is the user-interface thread's. The rows of the
// last `kept` lines stay in memory; the file takes every line and goes with the store.
class LogStore final : public LogSink {
 public:
  static constexpr std::size_t kDefaultKept = 20'000;
  static constexpr std::size_t kLongestRow = 4'096;
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

  // What came until the last Update: the lines in all, those that left the memory among them; errors and
  // warnings among those.
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
