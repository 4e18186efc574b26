// A rehearsal: while one is alive in this process no child is started. What the process service is asked to
// run is written down instead and taken for a success. For dry runs.
#pragma once

#include <string>
#include <vector>

namespace qx {

class ProcessRehearsal {
 public:
  struct Command {
    std::string executable;
    std::string directory;
    std::string parameters;
  };

  // One at a time.
  ProcessRehearsal();
  ~ProcessRehearsal();
  ProcessRehearsal(const ProcessRehearsal&) = delete;
  ProcessRehearsal& operator=(const ProcessRehearsal&) = delete;

  // In the order they would have been started.
  std::vector<Command> Commands() const;
};

// For the process service, from any thread: true when a rehearsal is alive, which has then taken the command
// down.
bool TakeDownForRehearsal(const ProcessRehearsal::Command& command);

}  // namespace qx
