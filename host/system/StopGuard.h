// Makes a stop come about. It watches over the whole life of a program of the command line: a request to stop, or
// the end of its time, is given a moment to be heard by the work that goes on, and then ends the process, wherever
// that hangs. No file is lost by it (files are replaced whole), and child processes end with their host.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "host/system/StopRequests.h"

namespace qx {

class StopGuard {
 public:
  // From asking for a stop until the process is gone, whoever hangs.
  static constexpr std::chrono::milliseconds kPatience{1800};
  // The same while nobody has said that he listens.
  static constexpr std::chrono::milliseconds kUnheard{200};
  // What the process then ends with: the exit code of a stop.
  static constexpr int kExitCode = 5;

  // One in a process. Raises Exception as StopRequests does.
  StopGuard();
  ~StopGuard();
  StopGuard(const StopGuard&) = delete;
  StopGuard& operator=(const StopGuard&) = delete;

  StopRequests& Requests();
  // From now on the work listens to stops (Requests, Stopping.h) and gets kPatience to end by itself.
  void Listen();
  // The time is over so long from now. Once.
  void SetTimeout(std::chrono::milliseconds timeout);
  // True when the time's end, and no other request, came first.
  bool TimedOut() const;
  // Called on a thread of its own before the process is ended by force, with a fifth of a second for it; null:
  // nothing. It may hang, too.
  void SetLastWords(std::function<void()> lastWords);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx
