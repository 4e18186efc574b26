#include "host/testing/TestHost.h"

#include <utility>

namespace qx {

TestHost::TestHost() : variables(Variables::Lookup()) {
  auto memory = std::make_unique<MemorySink>();
  memory_ = memory.get();
  log.AddSink(std::move(memory));
}

std::unique_ptr<TQXAction> TestHost::Make(const TQXActionClass& actionClass) {
  return MakeAction(actionClass, {&log, &variables, 1, &stopping});
}

}  // namespace qx
