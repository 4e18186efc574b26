#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>

#include "host/system/StopRequests.h"
#include "platform/Posix.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr char kStop = 's';
constexpr char kFinished = 'f';

// The writing end, for the handler; a full pipe means that enough requests are waiting already.
volatile std::sig_atomic_t wakeUp = -1;

void OnSignal(int) {
  const int error = errno;
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
  if (pipe2(state_->ends, O_CLOEXEC | O_NONBLOCK) != 0) {
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
    if (ready == 0 && std::chrono::steady_clock::now() >= *end) return Event::TimeOut;
    char requests[64];
    const ssize_t size = ready > 0 ? read(state_->ends[0], requests, sizeof requests) : 0;
    if (size <= 0) continue;
    state_->finished = std::find(requests, requests + size, kFinished) != requests + size;
    if (std::find(requests, requests + size, kStop) != requests + size) return Event::Stop;
  }
  return Event::Finished;
}

void StopRequests::Stop() { Send(state_->ends[1], kStop); }

void StopRequests::Finish() { Send(state_->ends[1], kFinished); }

}  // namespace qx
