// A build beside the window: validates, runs or rehearses an open project on a thread of its own and tells
// how far it is. No pixel.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/desktop/core/Document.h"
#include "host/diagnostics/DiagnosticLog.h"
#include "host/project/DryRun.h"
#include "host/project/ProjectCheck.h"
#include "host/project/RunSummary.h"
#include "host/project/Runner.h"
#include "plugin/Qxrunreport.h"

namespace qx::desktop {

enum class BuildKind { Validate, Run, DryRun };

// Unknown: it may have run before it was opened here. Invalid: the last run refused it, and executed nothing.
enum class ActionState { Unknown, NotRun, Running, Succeeded, Failed, Stopped, Invalid };

// The last run of an action.
struct ActionRun {
  ActionState state = ActionState::NotRun;
  std::int64_t started = 0;  // seconds since 1970
  double seconds = 0;        // that it took; of an action that runs: that it took the last time
};

struct BuildResult {
  RunOutcome outcome = RunOutcome::Succeeded;  // of what began; look at `error` first
  // Of a run: what made it fail, as far as that could be known before it; by the actions' 1-based numbers.
  std::vector<std::pair<int, CheckFinding>> foreseen;
  RunSummary summary;                 // of a run that executed: what it did
  DryRunResult dryRun;                // what a run would do; of a dry run
  std::vector<std::string> warnings;  // of saving, once a run has ended
  std::int64_t started = 0;           // seconds since 1970
  double seconds = 0;                 // from Start to its end
  std::string error;                  // why it could not begin, or could not save; empty
};

struct BuildProgress {
  int action = 0;  // 1-based; 0: none has begun
  int actionCount = 0;
  double seconds = 0;
  // How much of it is done, 0 to 1, by the time that the actions took the last time; none: nobody knows.
  std::optional<double> done;
};

// User-interface thread, but for what the callback is. Between Start and Finish nobody else may touch the
// document: a run works with its actions, which stay the same objects, but are made anew by a run that
// follows a stopped build. Validation and dry runs work with a copy.
//
// A dry run captures what its own threads write through platform/files/Files.h, and starts none of their
// programs; what the window saves meanwhile (options, a second document) is saved.
class BuildThread {
 public:
  // What programs told in the log since the run began; either may be empty. Both are called on the build's thread.
  struct ProgramsTold {
    std::function<DiagnosticCounts()> counts;
    std::function<void(RunReport& report, int action)> amend;  // an action's report, before it is judged
  };
  // `ended` is called on the build's thread when Finish would not wait; the window comes back to its own
  // thread from it. `told` is asked for the run's summary. Host and log outlive it, and so does a document until Finish.
  BuildThread(Host& host, ActionLog& log, std::function<void()> ended, ProgramsTold told = {});
  // Stops a running build, waits for its end and finishes it; what cannot be saved then is lost. `ended` is
  // not called any more.
  ~BuildThread();
  BuildThread(const BuildThread&) = delete;
  BuildThread& operator=(const BuildThread&) = delete;

  // Raises Exception when one was started and not finished. A run holds the project's file and the folders that its
  // actions work in until Finish, keeps what it changes for `qxhost restore`, saves raised numbers before the first
  // file is stamped, and looks at the programs it made, all as the command line's does. A run that somebody else holds is
  // the result's error, and so is all
  // else that keeps it from beginning. The document is saved before and after a run (the caller has asked
  // what there is to ask), before it when it is modified; a dry run changes nothing on disk nor in the
  // document, and its diff of the project's file holds the edits that are not saved yet.
  void Start(BuildKind kind, Document& document);
  // From Start until Finish would not wait.
  bool IsRunning() const;
  // Of the last Start.
  BuildKind Kind() const;
  // Asks the action that runs to end, again with each call; no further one begins.
  void Stop();
  // Waits for the end and gives what came of it; once per Start, raises Exception otherwise. What a run did
  // to the actions' properties (raised numbers) becomes the step "Run" of the document and is saved, whatever
  // the outcome. Not to be called from `ended`.
  BuildResult Finish();

  BuildProgress Progress() const;
  // How the action that stands there now ran last, whichever run that was. Neither a validation nor a dry run changes
  // anything about it.
  ActionRun RunOf(int index) const;
  ActionState StateOf(int index) const { return RunOf(index).state; }
  // The states go with their actions: to be called, while nothing runs, when the document's actions were
  // moved, taken out or put in; with Document's indexes.
  void Moved(int from, int to);
  void Removed(int index);
  void Inserted(int index);
  // To be called when the actions are others (another project) or their order is not known to be the same
  // (undone, redone): no state belongs to any of them, and this is what all of them have from now on.
  void ForgetStates(ActionState all);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx::desktop
