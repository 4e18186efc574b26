#include "host/process/ProcessRehearsal.h"

#include <mutex>

namespace qx {

struct ProcessRehearsal::Script {
  std::mutex mutex;
  std::vector<Command> commands;
};

namespace {

// What this thread takes its commands down in; null: they are run. A package asks for processes without
// saying for which run, so the thread has to say for whom it works.
constinit thread_local ProcessRehearsal::Script* rehearsing = nullptr;

}  // namespace

ProcessRehearsal::ProcessRehearsal() : script_(std::make_unique<Script>()) { rehearsing = script_.get(); }
ProcessRehearsal::~ProcessRehearsal() { rehearsing = nullptr; }

ProcessRehearsal::Joined::Joined(const ProcessRehearsal& rehearsal) { rehearsing = rehearsal.script_.get(); }
ProcessRehearsal::Joined::~Joined() { rehearsing = nullptr; }

std::vector<ProcessRehearsal::Command> ProcessRehearsal::Commands() const {
  const std::lock_guard guard(script_->mutex);
  return script_->commands;
}

bool TakeDownForRehearsal(const ProcessRehearsal::Command& command) {
  if (rehearsing == nullptr) return false;
  const std::lock_guard guard(rehearsing->mutex);
  rehearsing->commands.push_back(command);
  return true;
}

}  // namespace qx
