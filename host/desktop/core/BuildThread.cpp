#include "host/desktop/core/BuildThread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "host/keeping/Keeping.h"
#include "host/project/RunKeeper.h"
#include "host/settings/HostSettings.h"
#include "host/system/HostProgram.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

using Clock = std::chrono::steady_clock;

// How often somebody who waits for the end asks again for it: the action may have begun another program meanwhile.
constexpr std::chrono::milliseconds kAskAgain{200};

std::int64_t SecondsSince1970() {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  return now.time_since_epoch().count();
}

double SecondsFrom(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

}  // namespace

struct BuildThread::State {
  State(Host& itsHost, ActionLog& itsLog, std::function<void()> callback, ProgramsTold itsTold)
      : host(itsHost), log(itsLog), ended(std::move(callback)), told(std::move(itsTold)) {}

  Host& host;
  ActionLog& log;
  std::function<void()> ended;
  ProgramsTold told;
  std::atomic<bool> tellsEnd{true};

  // Of one build, from Start to Finish.
  BuildKind kind = BuildKind::Validate;
  Document* document = nullptr;
  std::unique_ptr<FileLock> lock;  // of a run, and so are these
  std::vector<std::string> folders;
  std::vector<std::unique_ptr<FileLock>> folderLocks;
  std::optional<RunKeeper> keeper;
  std::vector<int> begun;
  std::unique_ptr<OpenProject> copy;  // of any other
  std::optional<DryRun> rehearsal;
  std::optional<StopRequests> requests;
  std::optional<Runner> runner;
  bool executed = false;
  bool wasStopped = false;  // the last build; until the next run
  BuildResult result;
  std::thread thread;

  // What both threads see.
  mutable std::mutex mutex;
  std::condition_variable hasEnded;
  bool running = false;
  BuildProgress progress;
  std::vector<ActionRun> runs;
  ActionRun other;  // of the actions behind those
  Clock::time_point begin;
  Clock::time_point actionBegin;

  void Prepare();
  void PrepareRun();
  void Work();
  void Execute();
  void Foretell();
  void Summarise();
  void KeepRun();
  void Rehearsed();
  void End();
  void Save();
  void TakeWarnings(const std::vector<std::string>& warnings);
  void Clear();
  void Observe(int number, ActionEvent event);
  void NoteRun(ActionRun& run, ActionEvent event);
  std::optional<double> Done() const;
};

// What a run begins with. The document is saved under the lock that the run then keeps.
void BuildThread::State::PrepareRun() {
  if (document->File().empty()) throw Exception("The project has no file yet: save it before it is run");
  lock = std::make_unique<FileLock>(document->File());
  document->TakeEdit("Change");
  if (document->IsModified() || !FileExists(document->File())) {
    result.warnings = document->SaveLocked(*lock);
  } else if (document->IsChangedOnDisk()) {
    throw Exception(document->File() + " was changed by somebody else since it was opened: open it anew");
  }
  // An action that had ended when it was asked to stop would stop as soon as it begins.
  if (std::exchange(wasStopped, false)) document->Renew();
}

void BuildThread::State::Prepare() {
  OpenProject* project = nullptr;
  if (kind == BuildKind::Run) {
    PrepareRun();
    project = &document->Project();
  } else {
    copy = document->Copy(log);
    project = copy.get();
  }
  if (!document->File().empty()) SetCurrentFolder(FolderPart(document->File()));
  if (kind == BuildKind::Run) {
    folders = WorkFolders(*project);
    folderLocks = LockFolders(folders, document->File(), {});
  }
  requests.emplace();
  runner.emplace(*project, log, host.Stopping());
  runner->SetObserver([this](int number, ActionEvent event) { Observe(number, event); });
}

// On the build's thread.
void BuildThread::State::Work() {
  try {
    if (kind == BuildKind::DryRun) runner->SetRehearsal(&rehearsal.emplace());
    result.outcome = runner->Validate();
    if (result.outcome == RunOutcome::Succeeded && kind != BuildKind::Validate) {
      executed = true;
      Execute();
    }
    if (rehearsal) Rehearsed();
  } catch (const std::exception& fault) {
    result.error = fault.what();
  }
}

void BuildThread::State::Execute() {
  if (kind == BuildKind::Run) {
    Foretell();
    KeepRun();
  }
  const Clock::time_point from = Clock::now();
  result.outcome = runner->Execute(*requests, std::nullopt);
  result.summary.seconds = SecondsFrom(from);
  if (kind == BuildKind::Run) Summarise();
}

// What the actions' own checks find stands before the run, which goes on all the same.
void BuildThread::State::Foretell() {
  for (auto& [action, finding] : AskChecks(document->Project()).findings) {
    if (finding.severity == CheckSeverity::Info) continue;
    log.AddMessage(action, LineOf(finding));
    if (finding.severity == CheckSeverity::Error) result.foreseen.emplace_back(action, std::move(finding));
  }
}

// The document was edited since it was opened: what the run raises is counted from here.
void BuildThread::State::KeepRun() {
  OpenProject& project = document->Project();
  project.CountChangesFromHere();
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  keeper.emplace(project,
                 RunKeeper::Settings{[this] { return document->SaveDuringRun(*lock); },
                                     CurrentHostSettings().history, now.time_since_epoch().count(), folders});
  runner->SetWriteObserver(&*keeper);
}

void BuildThread::State::Summarise() {
  if (told.counts) {
    const DiagnosticCounts counts = told.counts();
    result.summary.errors = counts.errors;
    result.summary.warnings = counts.warnings;
  }
  result.outcome = AddReports(result.summary, document->Project(), begun, CurrentHostSettings().checkBuilt,
                              result.outcome, told.amend);
  log.AddSummary(SummaryAsText(result.summary), SummaryAsJson(result.summary));
}

// The project's own file is among what a run would have written.
void BuildThread::State::Rehearsed() {
  try {
    if (executed && !document->File().empty()) ReplaceFile(document->File(), copy->TextToSave());
  } catch (const Exception& fault) {
    result.error = fault.Message();
  }
  result.dryRun = rehearsal->Result(*copy);
}

void BuildThread::State::Observe(int number, ActionEvent event) {
  const std::lock_guard guard(mutex);
  if (event == ActionEvent::Begins) begun.push_back(number);
  if (kind == BuildKind::Validate || event == ActionEvent::Begins) progress.action = number;
  if (kind == BuildKind::Run) NoteRun(runs[static_cast<std::size_t>(number - 1)], event);
}

void BuildThread::State::NoteRun(ActionRun& run, ActionEvent event) {
  switch (event) {
    case ActionEvent::Validates:
    case ActionEvent::Valid:
      return;
    case ActionEvent::Invalid:
      run = {ActionState::Invalid, result.started, 0};
      return;
    case ActionEvent::Begins:
      actionBegin = Clock::now();
      run = {ActionState::Running, SecondsSince1970(), run.seconds};
      return;
    case ActionEvent::Succeeded:
      run.state = ActionState::Succeeded;
      break;
    case ActionEvent::Failed:
      run.state = host.Stopping() ? ActionState::Stopped : ActionState::Failed;
      break;
  }
  run.seconds = SecondsFrom(actionBegin);
}

void BuildThread::State::End() {
  rehearsal.reset();  // on the thread that it captures
  log.Flush();
  {
    const std::lock_guard guard(mutex);
    progress.seconds = SecondsFrom(begin);
    result.seconds = progress.seconds;
    running = false;
  }
  hasEnded.notify_all();
  if (ended && tellsEnd) ended();
}

// What an action did while it was only asked is a step too, but not saved: nothing was run.
void BuildThread::State::Save() {
  if (kind != BuildKind::Run || lock == nullptr) return;
  try {
    document->TakeEdit("Run");
    if (!executed) return;
    TakeWarnings(document->SaveLocked(*lock));
    host.Catalogue().SaveOptions();
  } catch (const std::exception& fault) {
    result.error = fault.what();
  }
  if (!keeper) return;
  EndKeeping(*keeper, result.outcome, result.summary);
  TakeWarnings(keeper->Warnings());
}

// Each once.
void BuildThread::State::TakeWarnings(const std::vector<std::string>& warnings) {
  for (const std::string& warning : warnings) {
    if (std::find(result.warnings.begin(), result.warnings.end(), warning) == result.warnings.end())
      result.warnings.push_back(warning);
  }
}

// The thread is over, or never was.
void BuildThread::State::Clear() {
  running = false;
  runner.reset();
  requests.reset();
  copy.reset();
  keeper.reset();
  begun.clear();
  folders.clear();
  folderLocks.clear();
  lock.reset();
  document = nullptr;
  host.Stopping() = false;
}

BuildThread::BuildThread(Host& host, ActionLog& log, std::function<void()> ended, ProgramsTold told)
    : state_(std::make_unique<State>(host, log, std::move(ended), std::move(told))) {}

BuildThread::~BuildThread() {
  if (!state_->thread.joinable()) return;
  state_->tellsEnd = false;
  std::unique_lock guard(state_->mutex);
  while (state_->running) {
    guard.unlock();
    Stop();
    guard.lock();
    state_->hasEnded.wait_for(guard, kAskAgain, [&] { return !state_->running; });
  }
  guard.unlock();
  try {
    Finish();
  } catch (const std::exception&) {
    // Nobody is left to tell.
  }
}

void BuildThread::Start(BuildKind kind, Document& document) {
  State& state = *state_;
  if (state.thread.joinable()) throw Exception("A build is running already");
  state.kind = kind;
  state.document = &document;
  state.result = {};
  state.result.started = SecondsSince1970();
  state.executed = false;
  state.host.Stopping() = false;
  try {
    state.Prepare();
  } catch (const std::exception& fault) {
    state.result.error = fault.what();
    state.runner.reset();
  }
  {
    const std::lock_guard guard(state.mutex);
    state.progress = {0, document.ActionCount(), 0, {}};
    state.runs.resize(static_cast<std::size_t>(document.ActionCount()), state.other);
    state.begin = Clock::now();
    state.running = true;
  }
  try {
    state.thread = std::thread([&state] {
      if (state.runner) state.Work();
      state.End();
    });
  } catch (const std::exception& fault) {
    state.Clear();
    throw Exception(std::string("A build cannot begin: ") + fault.what());
  }
}

bool BuildThread::IsRunning() const {
  const std::lock_guard guard(state_->mutex);
  return state_->running;
}

BuildKind BuildThread::Kind() const { return state_->kind; }

void BuildThread::Stop() {
  if (!state_->thread.joinable() || !state_->requests) return;
  state_->host.Stopping() = true;
  state_->wasStopped = true;
  state_->requests->Stop();
}

BuildResult BuildThread::Finish() {
  State& state = *state_;
  if (!state.thread.joinable()) throw Exception("No build was started");
  state.thread.join();
  if (state.runner) state.Save();
  state.Clear();
  return std::exchange(state.result, {});
}

// Each action is an equal part of the whole; a little of it is left until it has ended.
std::optional<double> BuildThread::State::Done() const {
  constexpr double kAlmost = 0.95;
  if (kind != BuildKind::Run || progress.action == 0) return std::nullopt;
  const double usual = runs[static_cast<std::size_t>(progress.action - 1)].seconds;
  if (usual <= 0 && progress.actionCount == 1) return std::nullopt;
  const double part = usual > 0 ? std::min(kAlmost, SecondsFrom(actionBegin) / usual) : 0;
  return (progress.action - 1 + part) / progress.actionCount;
}

BuildProgress BuildThread::Progress() const {
  const std::lock_guard guard(state_->mutex);
  BuildProgress progress = state_->progress;
  if (!state_->running) return progress;
  progress.seconds = SecondsFrom(state_->begin);
  progress.done = state_->Done();
  return progress;
}

ActionRun BuildThread::RunOf(int index) const {
  const std::lock_guard guard(state_->mutex);
  const bool known = index >= 0 && index < static_cast<int>(state_->runs.size());
  return known ? state_->runs[static_cast<std::size_t>(index)] : state_->other;
}

void BuildThread::Moved(int from, int to) {
  const std::lock_guard guard(state_->mutex);
  std::vector<ActionRun>& runs = state_->runs;
  const auto count = static_cast<std::size_t>(std::max(from, to)) + 1;
  if (runs.size() < count) runs.resize(count, state_->other);  // actions it did not have
  const ActionRun moved = runs[static_cast<std::size_t>(from)];
  runs.erase(runs.begin() + from);
  runs.insert(runs.begin() + to, moved);
}

void BuildThread::Removed(int index) {
  const std::lock_guard guard(state_->mutex);
  if (index < static_cast<int>(state_->runs.size())) state_->runs.erase(state_->runs.begin() + index);
}

void BuildThread::Inserted(int index) {
  const std::lock_guard guard(state_->mutex);
  const auto at = static_cast<std::size_t>(index);
  if (state_->runs.size() < at) state_->runs.resize(at, state_->other);
  state_->runs.insert(state_->runs.begin() + index, ActionRun());
}

void BuildThread::ForgetStates(ActionState all) {
  const std::lock_guard guard(state_->mutex);
  state_->runs.clear();
  state_->other = {all, 0, 0};
}

}  // namespace qx::desktop
