// Whether what goes on now is to stop, for whatever waits: a transfer, a write that nobody takes, a script.
// It holds from the first request that a StopRequests takes until that one is gone.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace qx {

// Since when a stop is asked for; nothing while it is not. Any thread.
std::optional<std::chrono::steady_clock::time_point> StopMoment();
inline bool StopIsAsked() { return StopMoment().has_value(); }

// What the system's own waits take: signalled as long as a stop is asked for. A HANDLE on Windows, a pollable
// descriptor elsewhere; none (null, -1) before the first StopRequests. Stays the process's.
std::intptr_t StopHandle();

// Waits as long, or less when a stop is asked for. True: it is.
bool WaitForStop(std::chrono::milliseconds patience);

}  // namespace qx
