#include "host/runtime/ProcessRehearsal.h"

#include <mutex>

namespace qx {
namespace {

struct Stage {
  std::mutex mutex;
  bool rehearsing = false;
  std::vector<ProcessRehearsal::Command> commands;
};

Stage& TheStage() {
  static Stage stage;
  return stage;
}

}  // namespace

ProcessRehearsal::ProcessRehearsal() {
  const std::lock_guard guard(TheStage().mutex);
  TheStage().rehearsing = true;
  TheStage().commands.clear();
}

ProcessRehearsal::~ProcessRehearsal() {
  const std::lock_guard guard(TheStage().mutex);
  TheStage().rehearsing = false;
}

std::vector<ProcessRehearsal::Command> ProcessRehearsal::Commands() const {
  const std::lock_guard guard(TheStage().mutex);
  return TheStage().commands;
}

bool TakeDownForRehearsal(const ProcessRehearsal::Command& command) {
  const std::lock_guard guard(TheStage().mutex);
  if (TheStage().rehearsing) TheStage().commands.push_back(command);
  return TheStage().rehearsing;
}

}  // namespace qx
