// What a dry run found: the programs that would run and the lines of files that would change, coloured.
#pragma once

#include <wx/window.h>

#include "host/project/DryRun.h"

namespace qx::desktop {

// Shows it and returns when it is closed.
void ShowDiffDialog(wxWindow* parent, const DryRunResult& result);

}  // namespace qx::desktop
