// The wheel scrolls what the pointer is over; a value changes by it only in the control that has the focus.
#pragma once

class wxWindow;

namespace qx::desktop {

// A combo box, list of choices or number: without the focus it leaves the wheel to the page around it.
void LeaveWheelToPage(wxWindow& control);

}  // namespace qx::desktop
