// The text of a spin edit as the user's keys leave it: the toolkit's own setter corrects it at once, which
// keys do not. One source a system.
#pragma once

class wxSpinCtrl;
class wxString;

namespace qx::desktop {

// Puts the text in the place of all that stands there and sends what typing it sends.
void TypeSpinText(wxSpinCtrl& spin, const wxString& text);

}  // namespace qx::desktop
