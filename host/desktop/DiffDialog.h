// What a dry run found: the programs that would run and the lines of files that would change, coloured.
#pragma once

#include <wx/window.h>

#include <string>

namespace qx::desktop {

// Shows it and returns when it is closed. `report` is what DryRun gives.
void ShowDiffDialog(wxWindow* parent, const std::string& report);

}  // namespace qx::desktop
