// The toolkit for tests with windows, which need a screen: scripts/screen gives one.
#pragma once

#include <wx/app.h>
#include <wx/init.h>

#include <cstdlib>

namespace qx::desktop {

inline constexpr const char* kNoScreen = "there is no screen: start the tests with scripts/screen";

inline bool HasScreen() {
#ifdef QX_NEEDS_DISPLAY
  return std::getenv("DISPLAY") != nullptr;
#else
  return true;
#endif
}

// Initialises it with the first call and ends it with the process: it begins once only.
inline void NeedToolkit() {
  struct Initialised {
    Initialised() {
      wxApp::SetInstance(new wxApp);  // the toolkit's from now on
      int none = 0;
      wxEntryStart(none, static_cast<char**>(nullptr));
    }
    ~Initialised() { wxEntryCleanup(); }
  };
  static const Initialised toolkit;
}

}  // namespace qx::desktop
