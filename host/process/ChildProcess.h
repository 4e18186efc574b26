// A child process as a value: say what to run and who gets its output, call Run. No shell takes part, no
// console window appears, and when the stop event is signalled, or the host ends in whatever way meanwhile, nothing
// that the child started stays behind.
//
// Both systems are served by their own interfaces (a keeper that adopts, pipes and /proc; CreateProcess and a job
// object) rather than by a library: none at hand ends a whole process tree on both, and what is needed is small.
#pragma once

#include <string>

#include "host/process/LineSplitter.h"
#include "plugin/Qxprocess.h"

namespace qx {

enum class Delivery {
  ReaderThreads,  // each stream's lines come on a thread of its own, both at the same time
  CallingThread,  // all lines come on the thread that called Run, never two at once
};

struct ChildProcess {
  // A path, or a bare name that is looked up along PATH. Outside Windows a path written for Windows (its
  // delimiters, any letter case) finds its file too.
  std::string executable;
  // On Windows it reaches the child as it stands, behind the quoted executable; elsewhere SplitCommandLine's
  // result are the arguments. UTF-8 on Windows, bytes elsewhere.
  std::string parameters;
  // The child's current folder; empty: the host's own. Written like `executable`.
  std::string directory;

  // False: the child writes to the host's own streams, and the sinks stay silent.
  bool redirectOutput = true;
  // Windows: true gives the child no console window; false lets it share the host's console. Nothing elsewhere.
  bool hideWindow = true;

  // One line, without its line end, bytes as the child wrote them (LineSplitter.h). Lines of one stream come
  // in order; between the two streams there is none. An empty sink drops the stream, which is drained all the
  // same. When a sink throws, the tree is ended and Run throws the same.
  LineSink onOutput;
  LineSink onError;
  // Called on the same thread as the sinks when all that had come was handed out: the moment to flush a log.
  // A hint, which costs the readers nothing. May be empty. What it throws is treated like what a sink throws.
  std::function<void()> onIdle;
  Delivery delivery = Delivery::ReaderThreads;

  // When it is signalled the whole tree of the child is ended; may be null. Consumed by the run that it ends.
  // A run that is over by itself leaves it as it is. If it is signalled beforehand, nothing is started.
  TEvent* stop = nullptr;

  // Starts the child and returns when it has ended AND both streams have: what a grandchild writes after the
  // child's exit arrives too, and one that holds a stream for ever is waited for until the stop event.
  // Returns the exit code, 128 + N for a child that signal N ended, kTerminatedExitCode when stopped. The
  // tree is asked to end (SIGTERM; window close or Ctrl-Break), and after a grace made to. Raises
  // Exception that names the program and the reason when it cannot be started. Several runs may go on at the
  // same time on different threads.
  int Run() const;
};

}  // namespace qx
