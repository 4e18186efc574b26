// The descriptor by which a wait watches an event, outside Windows, for as long as the wait goes on: a build has a
// thousand actions with an event each, and a process often no more than a thousand descriptors.
#pragma once

#include "plugin/Qxprocess.h"

namespace qx {

class WatchedEvent {
 public:
  // Null: no event. Raises Exception when there are no descriptors left.
  explicit WatchedEvent(const TEvent* event);
  ~WatchedEvent();
  WatchedEvent(const WatchedEvent&) = delete;
  WatchedEvent& operator=(const WatchedEvent&) = delete;
  // Polls as readable while the event is signalled; -1 for none.
  int Number() const { return number_; }

 private:
  int number_ = -1;
};

}  // namespace qx
