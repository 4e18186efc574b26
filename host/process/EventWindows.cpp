// TEvent as the system's own auto-reset event.
#include <windows.h>

#include <algorithm>

#include "plugin/Qxprocess.h"

namespace qx {

struct TEvent::State {
  HANDLE handle = CreateEventW(nullptr, FALSE, FALSE, nullptr);
};

TEvent::TEvent() : state_(std::make_unique<State>()) {
  if (state_->handle == nullptr) throw Exception("Cannot make an event: too many open handles");
}

TEvent::~TEvent() { CloseHandle(state_->handle); }

void TEvent::SetEvent() { ::SetEvent(state_->handle); }

bool TEvent::WaitFor(unsigned milliseconds) {
  const DWORD limit = std::min<DWORD>(milliseconds, INFINITE - 1);
  return WaitForSingleObject(state_->handle, limit) == WAIT_OBJECT_0;
}

std::intptr_t TEvent::NativeHandle() const { return reinterpret_cast<std::intptr_t>(state_->handle); }

}  // namespace qx
