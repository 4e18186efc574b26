#include "host/project/Runner.h"

#include <thread>

#include "host/system/Stopping.h"
#include "host/system/TemporaryFolder.h"

namespace qx {
namespace {

using Clock = std::chrono::steady_clock;

// Calls and tells what came of it; the message of an exception that left it is stored.
template <class Function>
std::optional<bool> CallGuarded(std::string& message, Function function) {
  try {
    return function();
  } catch (const std::exception& fault) {
    message = fault.what();
  } catch (...) {
    message = "An exception of an unknown type left the action";
  }
  return std::nullopt;
}

}  // namespace

RunOutcome Runner::Validate() {
  RunOutcome outcome = RunOutcome::Succeeded;
  for (int i = 0; i < project_.ActionCount() && !MustStop(); ++i) {
    if (!project_.IsEnabled(i)) continue;
    Tell(i + 1, ActionEvent::Validates);
    const RunOutcome one = ValidateOne(project_.Action(i), i + 1);
    Tell(i + 1, one == RunOutcome::Succeeded ? ActionEvent::Valid : ActionEvent::Invalid);
    if (one == RunOutcome::ExceptionLeft) return one;
    if (one != RunOutcome::Succeeded) outcome = one;
  }
  return MustStop() ? RunOutcome::Stopped : outcome;
}

RunOutcome Runner::ValidateOne(TQXAction* action, int number) {
  ValidationErrors errors(&log_, number);
  if (action == nullptr) {
    errors.AddError(project_.ActionType(number - 1),
                    "No loaded package has this action; name its package with --package");
    return RunOutcome::Invalid;
  }
  std::string message;
  const std::optional<bool> valid = CallGuarded(message, [&] {
    action->Initialise();
    return action->Validate(errors);
  });
  if (!valid) {
    log_.AddException(number, message);
    return RunOutcome::ExceptionLeft;
  }
  if (!*valid && errors.Errors().empty())
    errors.AddError(action->GetActionLogTitle(), "The action cannot run as it is set");
  return errors.Errors().empty() ? RunOutcome::Succeeded : RunOutcome::Invalid;
}

RunOutcome Runner::Execute(StopRequests& requests, std::optional<std::chrono::milliseconds> timeout) {
  std::optional<Clock::time_point> end;
  if (timeout) end = Clock::now() + *timeout;
  RunOutcome outcome = RunOutcome::Succeeded;
  std::thread build([&] {
    std::optional<DryRun::Joined> joined;
    if (rehearsal_ != nullptr) joined.emplace(*rehearsal_);
    std::optional<WritesObserved> observed;
    if (writeObserver_ != nullptr) observed.emplace(*writeObserver_);
    outcome = ExecuteAll();
    requests.Finish();
  });
  for (;;) {
    const StopRequests::Event event = requests.Wait(end);
    if (event == StopRequests::Event::Finished) break;
    if (event == StopRequests::Event::TimeOut) end.reset();
    if (stoppedBy_ == StopRequests::Event::Finished) stoppedBy_ = event;
    Stop();
  }
  build.join();
  RemoveTemporaryFolder();
  return outcome;
}

bool Runner::MustStop() const { return stopping_ || StopIsAsked(); }

// The action that runs now is asked to end, again with each request: it may have begun another child meanwhile.
void Runner::Stop() {
  stopping_ = true;
  const std::lock_guard guard(mutex_);
  if (running_ == nullptr) return;
  std::string message;
  CallGuarded(message, [&] { return running_->TerminateAction(), true; });
}

RunOutcome Runner::ExecuteAll() {
  for (int i = 0; i < project_.ActionCount(); ++i) {
    if (!project_.IsEnabled(i)) continue;
    const RunOutcome outcome = ExecuteOne(*project_.Action(i), i + 1);
    if (MustStop()) return RunOutcome::Stopped;
    if (outcome != RunOutcome::Succeeded) return outcome;
  }
  return RunOutcome::Succeeded;
}

RunOutcome Runner::ExecuteOne(TQXAction& action, int number) {
  {
    const std::lock_guard guard(mutex_);
    if (MustStop()) return RunOutcome::Stopped;
    running_ = &action;
  }
  Tell(number, ActionEvent::Begins);
  const Clock::time_point begin = Clock::now();
  std::string message;
  const std::optional<bool> success = CallGuarded(message, [&] { return action.Execute(); });
  {
    const std::lock_guard guard(mutex_);
    running_ = nullptr;
  }
  if (!success) log_.AddException(number, message);
  const std::chrono::duration<double> seconds = Clock::now() - begin;
  log_.AddResult(number, action.GetActionLogTitle(), success.value_or(false), seconds.count());
  Tell(number, success.value_or(false) ? ActionEvent::Succeeded : ActionEvent::Failed);
  if (!success) return RunOutcome::ExceptionLeft;
  return *success ? RunOutcome::Succeeded : RunOutcome::ActionFailed;
}

}  // namespace qx
