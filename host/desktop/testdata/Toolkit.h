// The toolkit for tests with windows.
#pragma once

#include <wx/app.h>
#include <wx/init.h>

namespace qx::desktop {

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
