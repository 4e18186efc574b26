// The widget of a line of text: masked, on the right, and passed by with the Tab key where its model says so.
#pragma once

#include "plugin/Qxcontrols.h"

class wxTextCtrl;
class wxWindow;

namespace qx::desktop {

wxTextCtrl* MakeTextField(wxWindow& parent, const TEdit& model);

}  // namespace qx::desktop
