// How the outside world asks a run to stop: Ctrl-C, the end of the session, a time-out. While one is alive it
// takes these requests from the system and hands them to the thread that waits here, so that nothing but a
// wake-up happens in a signal handler. One source a system: StopRequestsPosix.cpp, StopRequestsWindows.cpp.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

namespace qx {

class StopRequests {
 public:
  enum class Event { Finished, Stop, TimeOut };

  // One at a time in a process. Raises Exception when the system has no descriptors or events left.
  StopRequests();
  // Gives the signals back to whoever had them. Stopping.h says no longer that a stop is asked for.
  ~StopRequests();
  StopRequests(const StopRequests&) = delete;
  StopRequests& operator=(const StopRequests&) = delete;

  // The next event. Each request comes once; requests made before the wait are not lost, several may come as
  // one. Finished, once told, is what every later wait gives. The end of the time is a request to stop, too.
  // One thread at a time.
  Event Wait(std::optional<std::chrono::steady_clock::time_point> end);
  // From any thread: a request like the system's own.
  void Stop();
  // From any thread: the time is over.
  void TimeOut();
  // From any thread: the run is over.
  void Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx
