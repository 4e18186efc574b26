// The buttons inside edits that let the user pick a file or a folder in the place of typing it.
#pragma once

#include "plugin/Qxcontrols.h"

namespace qx {

// Adds a button that starts the host's picker at the edit's text and, unless the user cancels, puts what was
// picked into the edit. The edit outlives its button.
void AddFileButton(TButtonEdit& edit, const char* filter);
void AddFolderButton(TButtonEdit& edit, const char* title);

}  // namespace qx
