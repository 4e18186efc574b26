// Puts the widgets of a page where its rows say (PageRows.h). All distances are those of the text, so that a
// page looks the same at every size of the font.
#pragma once

#include <functional>

#include "host/desktop/core/PageRows.h"

class wxSizer;
class wxWindow;

namespace qx::desktop {

using WidgetOf = std::function<wxWindow*(const TControl&)>;

// Gives the widget of the page's root its sizer, and the containers inside it theirs.
void LayOut(const TControl& page, wxWindow& widget, const WidgetOf& widgetOf);

}  // namespace qx::desktop
