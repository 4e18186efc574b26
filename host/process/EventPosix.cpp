// TEvent as a flag, and an eventfd beside it while somebody watches it: nonzero while the event is signalled.
#include "host/process/EventPosix.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>

#include "plugin/Qxprocess.h"

namespace qx {
namespace {

struct Signal {
  std::mutex mutex;
  std::condition_variable changed;
  bool signalled = false;
  int descriptor = -1;
  int watchers = 0;

  void Set() {
    const std::lock_guard lock(mutex);
    signalled = true;
    const std::uint64_t one = 1;
    if (descriptor >= 0) [[maybe_unused]]
      const ssize_t written = write(descriptor, &one, sizeof one);
    changed.notify_one();
  }
  bool Take(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex);
    // Who only asks makes no call of the system: actions ask at every line they write.
    if (!signalled && patience.count() == 0) return false;
    if (!changed.wait_for(lock, patience, [this] { return signalled; })) return false;
    signalled = false;
    std::uint64_t count = 0;
    if (descriptor >= 0) [[maybe_unused]]
      const ssize_t taken = read(descriptor, &count, sizeof count);
    return true;
  }
  int Watch() {
    const std::lock_guard lock(mutex);
    if (descriptor < 0) descriptor = eventfd(signalled ? 1 : 0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0) throw Exception("Cannot wait for an event: too many open files");
    ++watchers;
    return descriptor;
  }
  // True when the descriptor is closed.
  bool Unwatch() {
    const std::lock_guard lock(mutex);
    if (--watchers > 0) return false;
    close(descriptor);
    descriptor = -1;
    return true;
  }
};

// Whose descriptor is whose; the contract's class has no other way to give one back.
std::mutex watchedMutex;
std::map<int, Signal*>& Watched() {
  static std::map<int, Signal*> watched;
  return watched;
}

}  // namespace

struct TEvent::State {
  Signal signal;
};

TEvent::TEvent() : state_(std::make_unique<State>()) {}

TEvent::~TEvent() {
  const std::lock_guard lock(watchedMutex);
  if (state_->signal.descriptor < 0) return;
  Watched().erase(state_->signal.descriptor);
  close(state_->signal.descriptor);
}

void TEvent::SetEvent() { state_->signal.Set(); }

bool TEvent::WaitFor(unsigned milliseconds) {
  return state_->signal.Take(std::chrono::milliseconds(milliseconds));
}

// Nobody gives this one back: it stays open as long as the event.
std::intptr_t TEvent::NativeHandle() const {
  const std::lock_guard lock(watchedMutex);
  const int descriptor = state_->signal.Watch();
  Watched()[descriptor] = &state_->signal;
  return descriptor;
}

WatchedEvent::WatchedEvent(const TEvent* event) {
  if (event != nullptr) number_ = static_cast<int>(event->NativeHandle());
}

WatchedEvent::~WatchedEvent() {
  if (number_ < 0) return;
  const std::lock_guard lock(watchedMutex);
  const auto found = Watched().find(number_);
  if (found != Watched().end() && found->second->Unwatch()) Watched().erase(found);
}

}  // namespace qx
