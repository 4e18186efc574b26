// The small pictures on buttons, drawn in the colour of the theme's texts so that they show on dark ones too.
#pragma once

#include <wx/bmpbndl.h>

#include "plugin/Qxcontrols.h"

class wxWindow;

namespace qx::desktop {

// As high as the window's text, sharp at every scale of the screen.
wxBitmapBundle PictureOf(TEditButton::Picture picture, const wxWindow& window);

}  // namespace qx::desktop
