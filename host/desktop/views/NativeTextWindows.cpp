#include "host/desktop/views/NativeText.h"

#include <windows.h>

#include <commctrl.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

namespace qx::desktop {
namespace {

HWND WindowOf(const wxWindow& widget) { return static_cast<HWND>(widget.GetHandle()); }

}  // namespace

void SetMask(wxTextCtrl& masked, char character) {
  SendMessageW(WindowOf(masked), EM_SETPASSWORDCHAR, static_cast<WPARAM>(character), 0);
}

char MaskOf(const wxTextCtrl& masked) {
  return static_cast<char>(SendMessageW(WindowOf(masked), EM_GETPASSWORDCHAR, 0, 0));
}

// The text stands in a window of its own beside the arrows.
void TypeSpinText(wxSpinCtrl& spin, const wxString& text) {
  const auto edit = reinterpret_cast<HWND>(SendMessageW(WindowOf(spin), UDM_GETBUDDY, 0, 0));
  SetWindowTextW(edit, text.wc_str());
}

}  // namespace qx::desktop
