// Keeps of a run what its reports tell: a sink of the log that also looks at each action when it ends.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/project/OpenProject.h"
#include "host/report/RunRecord.h"

namespace qx {

class RunRecorder : public LogSink {
 public:
  // Of the log so much is kept from its beginning, and as much from its end.
  static constexpr std::size_t kMostLog = std::size_t{1} << 20;
  static constexpr std::size_t kLastLines = 20;

  void Take(const LogRecord& record) override;

  // Before the run: its actions, none of which has run yet.
  void SetActions(const OpenProject& project);
  // When an action has ended, on the thread that ran it: the tests that it tells of, and what it changed, while the
  // copies of before are still there. Raises nothing.
  void LookAt(TQXAction& action, int number);

  // Once nobody writes to the log any more. What the recorder does not know of stays as it is.
  void FillIn(RunRecord& record) const;

 private:
  void KeepLog(const LogRecord& record);
  void KeepLastLine(const LogRecord& record);
  ActionRecord* Of(int action);

  std::vector<ActionRecord> actions_;
  std::vector<ValidationRecord> validation_;
  std::vector<FileChange> changes_;
  LogExcerpt log_;
  std::string line_;
  std::array<std::string, kLastLines> lastLines_;  // of the action that runs, used round and round
  std::size_t lineCount_ = 0;
};

}  // namespace qx
