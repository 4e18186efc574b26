// Runs one tool to its end and hands on what it prints, line by line. When the engine itself is told to stop
// (SIGTERM, SIGINT, SIGHUP), the tool and what it started are ended first.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class Turns;

struct ChildCommand {
  std::vector<std::string> arguments;              // the first is the program: a path, or a name on the PATH
  std::string folder;                              // where it runs; empty: the current folder
  std::map<std::string, std::string> environment;  // added to the engine's own
  const Turns* turns = nullptr;                    // that its commands may take
};

struct ChildResult {
  int code = -1;       // the exit code; 128 + N when signal N ended it; -1: it did not start
  std::string reason;  // why it did not start; empty: it did
};

// Its input is empty; both its outputs come as one, in their order, each line without its end. No shell takes
// part. Any thread; `line` is called on it.
ChildResult RunChild(const ChildCommand& command, const std::function<void(std::string_view)>& line);

// The path of a program on the PATH; of a name with a delimiter that name itself. Empty: there is none.
std::string FindProgram(const std::string& name);

// The signal by which the engine was told to stop; 0: it was not. RunChild then starts nothing.
int StopSignal();
inline bool IsStopped() { return StopSignal() != 0; }
// To be called once, before the first child. Without it signals end the engine alone.
void ForwardSignals();

}  // namespace qx
