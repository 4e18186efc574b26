#include "host/system/StopGuard.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "host/system/HostProgram.h"
#include "host/system/Stopping.h"
#include "host/system/TemporaryFolder.h"

namespace qx {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kForLastWords{200};

}  // namespace

struct StopGuard::State {
  StopRequests requests;
  std::atomic<bool> listened{false};
  std::atomic<bool> timedOut{false};
  std::mutex mutex;
  std::condition_variable changed;
  bool over = false;
  std::mutex speaking;  // held while the last words are said or changed
  std::function<void()> lastWords;
  std::thread watcher;
  std::thread timer;

  bool WaitUntil(Clock::time_point end);
  void Watch();
  [[noreturn]] void EndProcess();
};

// True when the guard's life was over before.
bool StopGuard::State::WaitUntil(Clock::time_point end) {
  std::unique_lock lock(mutex);
  return changed.wait_until(lock, end, [this] { return over; });
}

void StopGuard::State::Watch() {
  while (!WaitForStop(std::chrono::hours(1))) continue;
  const Clock::time_point asked = StopMoment().value_or(Clock::now());
  if (WaitUntil(asked + kUnheard)) return;
  if (listened && WaitUntil(asked + kPatience)) return;
  EndProcess();
}

// Whatever holds up the farewell does not hold up the end.
void StopGuard::State::EndProcess() {
  std::thread([this] {
    RemoveTemporaryFolder();
    const std::lock_guard lock(speaking);
    if (lastWords) lastWords();
    LeaveAtOnce(kExitCode);
  }).detach();
  std::this_thread::sleep_for(kForLastWords);
  LeaveAtOnce(kExitCode);
}

StopGuard::StopGuard() : state_(std::make_unique<State>()) {
  state_->watcher = std::thread([this] { state_->Watch(); });
}

StopGuard::~StopGuard() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->over = true;
  }
  state_->changed.notify_all();
  state_->requests.Stop();  // wakes the watcher
  state_->watcher.join();
  if (state_->timer.joinable()) state_->timer.join();
}

StopRequests& StopGuard::Requests() { return state_->requests; }

void StopGuard::Listen() { state_->listened = true; }

void StopGuard::SetTimeout(std::chrono::milliseconds timeout) {
  state_->timer = std::thread([this, end = Clock::now() + timeout] {
    if (state_->WaitUntil(end) || StopIsAsked()) return;
    state_->timedOut = true;
    state_->requests.TimeOut();
  });
}

bool StopGuard::TimedOut() const { return state_->timedOut; }

void StopGuard::SetLastWords(std::function<void()> lastWords) {
  const std::lock_guard lock(state_->speaking);
  state_->lastWords = std::move(lastWords);
}

}  // namespace qx
