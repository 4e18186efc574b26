#include "host/desktop/SpinText.h"

#include <windows.h>

#include <commctrl.h>
#include <wx/spinctrl.h>

namespace qx::desktop {

// The text stands in a window of its own beside the arrows.
void TypeSpinText(wxSpinCtrl& spin, const wxString& text) {
  const auto arrows = static_cast<HWND>(spin.GetHandle());
  const auto edit = reinterpret_cast<HWND>(SendMessageW(arrows, UDM_GETBUDDY, 0, 0));
  SetWindowTextW(edit, text.wc_str());
}

}  // namespace qx::desktop
