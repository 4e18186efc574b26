// Which program this is: its version, its licence and those of what is linked into it, and where to read more.
#pragma once

class wxWindow;

namespace qx::desktop {

// Returns when the user has closed it.
void ShowAboutBox(wxWindow* parent);

}  // namespace qx::desktop
