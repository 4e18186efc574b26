#include <windows.h>

#include <algorithm>
#include <atomic>

#include "host/system/StopRequests.h"
#include "host/system/Stopping.h"
#include "platform/WindowsText.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// How long the system lets a console's programs live after its window was closed.
constexpr DWORD kFarewell = 4500;

// For the handler, to which the system hands nothing else.
std::atomic<HANDLE> stopEvent{nullptr};
std::atomic<HANDLE> goneEvent{nullptr};
// What Stopping.h tells: an event made once, and the moment in the steady clock's ticks, 0 while no stop is
// asked for.
std::atomic<HANDLE> askedEvent{nullptr};
std::atomic<long long> stopMoment{0};

void MarkStop() {
  long long none = 0;
  if (stopMoment.compare_exchange_strong(none, std::chrono::steady_clock::now().time_since_epoch().count()))
    SetEvent(askedEvent.load());
}

// Runs on a thread of the system's.
BOOL WINAPI OnControl(DWORD kind) {
  const HANDLE stop = stopEvent.load();
  if (stop == nullptr) return FALSE;
  MarkStop();
  SetEvent(stop);
  // The process ends when this returns after the window was closed: the run gets what time there is.
  const bool closing = kind == CTRL_CLOSE_EVENT || kind == CTRL_LOGOFF_EVENT || kind == CTRL_SHUTDOWN_EVENT;
  if (closing) WaitForSingleObject(goneEvent.load(), kFarewell);
  return TRUE;
}

}  // namespace

struct StopRequests::State {
  system::Handle stop{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
  system::Handle timeOut{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
  system::Handle finished{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

StopRequests::StopRequests() : state_(std::make_unique<State>()) {
  if (askedEvent.load() == nullptr) askedEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (!state_->stop.IsOpen() || !state_->timeOut.IsOpen() || !state_->finished.IsOpen())
    throw Exception("Cannot watch for Ctrl-C");
  // This one is signalled by nobody: its waiters wait until the process is gone.
  if (goneEvent.load() == nullptr) goneEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  stopEvent = state_->stop.Get();
  SetConsoleCtrlHandler(OnControl, TRUE);
}

StopRequests::~StopRequests() {
  SetConsoleCtrlHandler(OnControl, FALSE);
  stopEvent = nullptr;
  ResetEvent(askedEvent.load());
  stopMoment = 0;
}

StopRequests::Event StopRequests::Wait(std::optional<std::chrono::steady_clock::time_point> end) {
  DWORD milliseconds = INFINITE;
  if (end) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*end - std::chrono::steady_clock::now()).count();
    milliseconds = static_cast<DWORD>(std::clamp<long long>(left, 0, INFINITE - 1));
  }
  const HANDLE handles[] = {state_->timeOut.Get(), state_->stop.Get(), state_->finished.Get()};
  switch (WaitForMultipleObjects(3, handles, FALSE, milliseconds)) {
    case WAIT_OBJECT_0:
      return Event::TimeOut;
    case WAIT_OBJECT_0 + 1:
      return Event::Stop;
    case WAIT_TIMEOUT:
      MarkStop();
      return Event::TimeOut;
    default:
      return Event::Finished;
  }
}

void StopRequests::Stop() {
  MarkStop();
  SetEvent(state_->stop.Get());
}

void StopRequests::TimeOut() {
  MarkStop();
  SetEvent(state_->timeOut.Get());
}

void StopRequests::Finish() { SetEvent(state_->finished.Get()); }

std::optional<std::chrono::steady_clock::time_point> StopMoment() {
  using Clock = std::chrono::steady_clock;
  const long long moment = stopMoment;
  if (moment == 0) return std::nullopt;
  return Clock::time_point(Clock::duration(moment));
}

std::intptr_t StopHandle() { return reinterpret_cast<std::intptr_t>(askedEvent.load()); }

bool WaitForStop(std::chrono::milliseconds patience) {
  const HANDLE asked = askedEvent.load();
  if (asked == nullptr) return Sleep(static_cast<DWORD>(patience.count())), false;
  return WaitForSingleObject(asked, static_cast<DWORD>(patience.count())) == WAIT_OBJECT_0;
}

}  // namespace qx
