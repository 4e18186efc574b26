// A rehearsal: while one is alive, the thread that made it starts no child. What the process service is asked
// there to run is written down instead and taken for a success. For dry runs.
#pragma once

#include <memory>
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

  // One at a time on a thread; ends on the same thread.
  ProcessRehearsal();
  ~ProcessRehearsal();
  ProcessRehearsal(const ProcessRehearsal&) = delete;
  ProcessRehearsal& operator=(const ProcessRehearsal&) = delete;

  // While one is alive, its thread rehearses too; the rehearsal outlives it.
  class Joined {
   public:
    explicit Joined(const ProcessRehearsal& rehearsal);
    ~Joined();
    Joined(const Joined&) = delete;
    Joined& operator=(const Joined&) = delete;
  };

  // In the order they would have been started. Any thread.
  std::vector<Command> Commands() const;

  struct Script;

 private:
  std::unique_ptr<Script> script_;
};

// For the process service: true when the calling thread rehearses; the command is then taken down.
bool TakeDownForRehearsal(const ProcessRehearsal::Command& command);

}  // namespace qx
