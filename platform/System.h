// Which system this was built for, as tests and benches need it for what they expect or skip. Product code
// asks for the property that it means, or has one source a system.
#pragma once

namespace qx {

#ifdef _WIN32
inline constexpr bool kIsWindows = true;
#else
inline constexpr bool kIsWindows = false;
#endif

}  // namespace qx
