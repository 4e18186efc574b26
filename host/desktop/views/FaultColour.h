// The colour of a text that is wrong, on the grounds that edits and windows have: at least 4.5 to 1 in both themes.
#pragma once

#include <wx/colour.h>

#include "host/desktop/views/Pictures.h"

namespace qx::desktop {

inline wxColour FaultColour() { return wxColour(IsDark() ? "#ff8a80" : "#b71c1c"); }

}  // namespace qx::desktop
