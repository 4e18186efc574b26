// A build beside the window: validates, runs or rehearses an open project on a thread of its own and tells
// how far it is. No pixel.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/desktop/Document.h"
#include "host/runtime/Runner.h"

namespace qx::desktop {

enum class BuildKind { Validate, Run, DryRun };

enum class ActionState { NotRun, Running, Succeeded, Failed, Invalid };

struct BuildResult {
  RunOutcome outcome = RunOutcome::Succeeded;
  std::string report;                 // of a dry run: the command lines and the unified diffs
  std::vector<std::string> warnings;  // of saving, once a run has ended
  std::string error;                  // why it could not begin, or could not save; empty
};

struct BuildProgress {
  int action = 0;  // 1-based; 0: none has begun
  int actionCount = 0;
  double seconds = 0;
};

// User-interface thread, but for what the callback is. While it runs, nobody else may touch the document's
// actions.
class BuildThread {
 public:
  // `ended` is called on the build's thread when Finish would not wait; the window comes back to its own
  // thread from it.
  BuildThread(Host& host, ActionLog& log, std::function<void()> ended);
  // Stops a running build and waits for its end.
  ~BuildThread();
  BuildThread(const BuildThread&) = delete;
  BuildThread& operator=(const BuildThread&) = delete;

  // Raises Exception when one is running already. A run holds the lock on the project's file, as the command
  // line's does; a run that somebody else holds is the result's error. The document is saved before and after
  // a run (the caller has asked what there is to ask); a dry run changes nothing on disk nor in the document.
  void Start(BuildKind kind, Document& document);
  bool IsRunning() const;
  BuildKind Kind() const;
  // Asks the action that runs to end, again with each call; no further one begins.
  void Stop();
  // Waits for the end and gives what came of it; once per Start.
  BuildResult Finish();

  BuildProgress Progress() const;
  // Of the last build; NotRun for an index that it did not have.
  ActionState StateOf(int index) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx::desktop
