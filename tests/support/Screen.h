// Whether tests with windows can be run here: outside Windows they need a screen, which scripts/screen gives.
#pragma once

#include <cstdlib>

namespace qx::test {

inline constexpr const char* kNoScreen = "there is no screen: start the tests with scripts/screen";

inline bool HasScreen() {
#ifdef QX_NEEDS_DISPLAY
  return std::getenv("DISPLAY") != nullptr;
#else
  return true;
#endif
}

}  // namespace qx::test
