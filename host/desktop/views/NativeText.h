// What the toolkit does not offer of its texts, asked of the system itself. One source a system.
#pragma once

class wxSpinCtrl;
class wxString;
class wxTextCtrl;

namespace qx::desktop {

// What stands for each character of a masked text on the screen.
void SetMask(wxTextCtrl& masked, char character);
char MaskOf(const wxTextCtrl& masked);

// Puts a text in the place of all that stands in a spin edit, as the user's keys leave it, and sends what
// typing it sends: the toolkit's own setter corrects the text at once, which keys do not.
void TypeSpinText(wxSpinCtrl& spin, const wxString& text);

}  // namespace qx::desktop
