#include "platform/files/WriteObserver.h"

#include <utility>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// Packages write through plain functions that take no host, so the thread has to say who wants to know.
constinit thread_local WriteObserver* observing = nullptr;

// Puts the observer back when it has been told.
class Unobserved {
 public:
  Unobserved() : observer_(std::exchange(observing, nullptr)) {}
  ~Unobserved() { observing = observer_; }
  Unobserved(const Unobserved&) = delete;
  Unobserved& operator=(const Unobserved&) = delete;
  WriteObserver* Observer() const { return observer_; }

 private:
  WriteObserver* observer_;
};

}  // namespace

WritesObserved::WritesObserved(WriteObserver& observer) {
  if (observing != nullptr) throw Exception("Writes are being observed already");
  observing = &observer;
}

WritesObserved::~WritesObserved() { observing = nullptr; }

void TellObserver(std::span<const PlannedWrite> writes) {
  if (writes.empty() || observing == nullptr) return;
  const Unobserved meanwhile;
  meanwhile.Observer()->BeforeWrites(writes);
}

}  // namespace qx
