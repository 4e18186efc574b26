// TEvent as an eventfd: its counter is nonzero while signalled, and one read takes it back to zero.
// SetEvent is a single write, so a signal handler may call it.
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>

#include "plugin/Qxprocess.h"

namespace qx {
namespace {

bool Consume(int descriptor) {
  std::uint64_t count = 0;
  return read(descriptor, &count, sizeof count) == static_cast<ssize_t>(sizeof count);
}

}  // namespace

struct TEvent::State {
  int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
};

TEvent::TEvent() : state_(std::make_unique<State>()) {
  if (state_->descriptor < 0) throw Exception("Cannot make an event: too many open files");
}

TEvent::~TEvent() { close(state_->descriptor); }

void TEvent::SetEvent() {
  const int kept = errno;  // a signal handler must leave it as it was
  const std::uint64_t one = 1;
  // Fails only when the counter is full, and then the event is signalled already.
  [[maybe_unused]] const ssize_t written = write(state_->descriptor, &one, sizeof one);
  errno = kept;
}

bool TEvent::WaitFor(unsigned milliseconds) {
  using Clock = std::chrono::steady_clock;
  if (Consume(state_->descriptor)) return true;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0) return false;
    pollfd waited{state_->descriptor, POLLIN, 0};
    const auto longest = std::min<std::int64_t>(left, std::numeric_limits<int>::max());
    // Another waiter may have been faster: then wait on.
    if (poll(&waited, 1, static_cast<int>(longest)) > 0 && Consume(state_->descriptor)) return true;
  }
}

std::intptr_t TEvent::NativeHandle() const { return state_->descriptor; }

}  // namespace qx
