// The widget of a table: its heading row as the columns' labels, its cells typed into in their place.
#pragma once

#include "plugin/Qxcontrols.h"

class wxGrid;
class wxWindow;

namespace qx::desktop {

wxGrid* MakeGrid(wxWindow& parent);

// Sets what differs from the model; whether anything did.
bool ShowGrid(const TStringGrid& grid, wxGrid& widget);

}  // namespace qx::desktop
