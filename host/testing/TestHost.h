// What tests make their actions with: surroundings kept in memory, no environment, no options store. Never shipped.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "host/actions/ActionHost.h"
#include "host/actions/Catalogue.h"

namespace qx {

// A host in miniature: a catalogue, a log kept in memory and variables that see no environment. Tests make
// their actions with it.
class TestHost {
 public:
  TestHost();
  // An action of the class, attached to this host and created; it must go before the host does.
  std::unique_ptr<TQXAction> Make(const TQXActionClass& actionClass);
  // The same with its own type, for a class whose objects are of that type; raises std::bad_cast otherwise.
  template <class Action>
  std::unique_ptr<Action> Make(const TQXActionClass& actionClass) {
    std::unique_ptr<TQXAction> made = Make(actionClass);
    Action& action = dynamic_cast<Action&>(*made);
    static_cast<void>(made.release());
    return std::unique_ptr<Action>(&action);
  }

  Catalogue catalogue;  // in use
  Variables variables;
  ActionLog log;
  std::atomic<bool> stopping{false};
  const std::vector<LogEntry>& Entries() const { return memory_->Entries(); }
  // The log as text, one element an entry.
  std::vector<std::string> Lines() const { return memory_->Lines(); }

 private:
  CatalogueInUse catalogueInUse_{catalogue};
  MemorySink* memory_;
};

}  // namespace qx
