#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>

#include "host/system/StopRequests.h"
#include "host/system/Stopping.h"
#include "platform/Posix.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr char kStop = 's';
constexpr char kTimeOut = 't';
constexpr char kFinished = 'f';

// The writing end, for the handler; a full pipe means that enough requests are waiting already.
volatile std::sig_atomic_t wakeUp = -1;

// What Stopping.h tells, for handlers and every thread: an eventfd, made once, and the moment in nanoseconds of
// the steady clock, 0 while no stop is asked for.
std::atomic<int> stopEvent{-1};
std::atomic<std::int64_t> stopMoment{0};
static_assert(std::atomic<std::int64_t>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

// Only what a signal handler may do.
void MarkStop() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  std::int64_t none = 0;
  const std::int64_t moment = std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
  if (!stopMoment.compare_exchange_strong(none, moment)) return;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(stopEvent, &one, sizeof one);
}

void ForgetStop() {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t taken = read(stopEvent, &count, sizeof count);
  stopMoment = 0;
}

void OnSignal(int) {
  const int error = errno;
  MarkStop();
  if (write(wakeUp, &kStop, 1) < 0) errno = error;
  errno = error;
}

// A full pipe is read by the thread that waits.
void Send(int end, char request) {
  while (write(end, &request, 1) < 0 && (errno == EINTR || errno == EAGAIN)) poll(nullptr, 0, 1);
}

}  // namespace

struct StopRequests::State {
  int ends[2] = {-1, -1};
  struct sigaction previous[std::size(kSignals)] = {};
  bool finished = false;
};

StopRequests::StopRequests() : state_(std::make_unique<State>()) {
  if (stopEvent < 0) stopEvent = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (stopEvent < 0 || pipe2(state_->ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw Exception("Cannot watch for Ctrl-C: " + system::LastError());
  }
  wakeUp = state_->ends[1];
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &state_->previous[i]);
    // Who started us with a signal ignored (nohup) wants it ignored.
    if (state_->previous[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
  }
}

StopRequests::~StopRequests() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i) sigaction(kSignals[i], &state_->previous[i], nullptr);
  wakeUp = -1;
  for (const int end : state_->ends) close(end);
  ForgetStop();
}

StopRequests::Event StopRequests::Wait(std::optional<std::chrono::steady_clock::time_point> end) {
  while (!state_->finished) {
    int milliseconds = -1;
    if (end) {
      const auto left =
          std::chrono::ceil<std::chrono::milliseconds>(*end - std::chrono::steady_clock::now()).count();
      milliseconds = static_cast<int>(std::clamp<long long>(left, 0, INT_MAX));
    }
    pollfd reading{state_->ends[0], POLLIN, 0};
    const int ready = poll(&reading, 1, milliseconds);
    if (ready == 0 && std::chrono::steady_clock::now() >= *end) {
      MarkStop();
      return Event::TimeOut;
    }
    char requests[64];
    const ssize_t size = ready > 0 ? read(state_->ends[0], requests, sizeof requests) : 0;
    if (size <= 0) continue;
    const auto has = [&](char request) {
      return std::find(requests, requests + size, request) != requests + size;
    };
    state_->finished = has(kFinished);
    if (has(kTimeOut)) return Event::TimeOut;
    if (has(kStop)) return Event::Stop;
  }
  return Event::Finished;
}

void StopRequests::Stop() {
  MarkStop();
  Send(state_->ends[1], kStop);
}

void StopRequests::TimeOut() {
  MarkStop();
  Send(state_->ends[1], kTimeOut);
}

void StopRequests::Finish() { Send(state_->ends[1], kFinished); }

std::optional<std::chrono::steady_clock::time_point> StopMoment() {
  const std::int64_t moment = stopMoment;
  if (moment == 0) return std::nullopt;
  return std::chrono::steady_clock::time_point(std::chrono::nanoseconds(moment));
}

std::intptr_t StopHandle() { return stopEvent; }

bool WaitForStop(std::chrono::milliseconds patience) {
  pollfd waited{stopEvent, POLLIN, 0};
  const auto most = static_cast<int>(std::clamp<long long>(patience.count(), 0, INT_MAX));
  if (!StopIsAsked()) poll(&waited, 1, most);
  return StopIsAsked();
}

}  // namespace qx
