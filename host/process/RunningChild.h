// The seam between one run and the system: a started child, its two pipes and its tree. Each system defines
// it in its own source file; ChildProcess.cpp holds everything that is the same on both.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <span>

#include "host/process/ChildProcess.h"

namespace qx {

enum class OutputStream { Output, Error };

// Why a wait has ended.
enum class Woken { Stop, Exit, Notice, Time };

class RunningChild {
 public:
  // Starts it. Raises Exception.
  explicit RunningChild(const ChildProcess& what);
  // Ends the tree by force unless ExitCode was called. No reader may be in Read any more.
  ~RunningChild();
  RunningChild(const RunningChild&) = delete;
  RunningChild& operator=(const RunningChild&) = delete;

  // Blocks until the stream has something; 0 at its end. One thread a stream.
  std::size_t Read(OutputStream stream, std::span<char> space);

  // The remaining operations are for the thread that runs the child.
  // Waits for the first of: the stop event (null: none), the notice, the child's exit (once `forExit`), the
  // time. Consumes the event that it names. `stop` goes first.
  Woken Wait(TEvent* stop, TEvent& notice, bool forExit, std::chrono::milliseconds patience);
  // Asks every process of the tree to end. False: there is no way to ask, or nobody to.
  bool AskTreeToEnd();
  // Makes every process of the tree end; to be repeated while TreeIsAlive.
  void KillTree();
  bool TreeIsAlive();
  // Makes Read take what is in the pipes and then report their end, whoever still holds them. To be repeated
  // until the readers are through.
  void AbandonPipes();
  // The child's exit code. Once, after the exit.
  int ExitCode();

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace qx
