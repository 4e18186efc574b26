// A run: every action validated first, then executed in order on a thread of its own until one fails, while
// the calling thread waits for whatever wants to stop it. Disabled actions are passed over.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

#include "host/project/DryRun.h"
#include "host/project/OpenProject.h"
#include "host/system/StopRequests.h"
#include "platform/files/WriteObserver.h"

namespace qx {

// How a run ended; the numbers are the program's exit codes.
enum class RunOutcome { Succeeded = 0, ActionFailed = 1, Invalid = 3, ExceptionLeft = 4, Stopped = 5 };

// What becomes of an action: asked by Validate, run by Execute.
enum class ActionEvent { Validates, Valid, Invalid, Begins, Succeeded, Failed };

class Runner {
 public:
  // Told of each event of an action, by its 1-based number, on the thread that calls Validate or runs the
  // actions; never two at a time. It may not raise.
  using Observer = std::function<void(int number, ActionEvent event)>;

  // All of them outlive the runner. `stopping` is the flag that the actions' surroundings point to.
  Runner(OpenProject& project, ActionLog& log, std::atomic<bool>& stopping)
      : project_(project), log_(log), stopping_(stopping) {}

  // Before Validate and Execute; null: nobody is told.
  void SetObserver(Observer observer) { observer_ = std::move(observer); }

  // Before Execute: its thread joins this dry run, which outlives it. Null: it is a run.
  void SetRehearsal(const DryRun* rehearsal) { rehearsal_ = rehearsal; }

  // Before Execute: told of what the actions write, on their thread. It outlives the runner's Execute. Null: nobody is.
  void SetWriteObserver(WriteObserver* observer) { writeObserver_ = observer; }

  // Asks every action whether it can run; each error goes into the log, and an exception too. An action that
  // no loaded package has is an error. Succeeded, Invalid or ExceptionLeft; Stopped when the flag was set
  // meanwhile, and no further action is asked then.
  RunOutcome Validate();

  // Executes the actions; Validate comes first. A request to stop, or the end of the time, calls
  // TerminateAction on the action that is running, and no further one is begun. The log gets each action's
  // result and exception.
  RunOutcome Execute(StopRequests& requests, std::optional<std::chrono::milliseconds> timeout);
  // What ended the run early, once it was stopped.
  StopRequests::Event StoppedBy() const { return stoppedBy_; }

 private:
  RunOutcome ValidateOne(TQXAction* action, int number);
  RunOutcome ExecuteAll();
  RunOutcome ExecuteOne(TQXAction& action, int number);
  void Stop();
  bool MustStop() const;
  void Tell(int number, ActionEvent event) const {
    if (observer_) observer_(number, event);
  }

  OpenProject& project_;
  ActionLog& log_;
  std::atomic<bool>& stopping_;
  Observer observer_;
  const DryRun* rehearsal_ = nullptr;
  WriteObserver* writeObserver_ = nullptr;
  std::mutex mutex_;
  TQXAction* running_ = nullptr;
  StopRequests::Event stoppedBy_ = StopRequests::Event::Finished;
};

}  // namespace qx
