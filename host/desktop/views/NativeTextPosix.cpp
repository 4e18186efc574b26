// The toolkit is GTK here.
#include "host/desktop/views/NativeText.h"

#include <gtk/gtk.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

namespace qx::desktop {

void SetMask(wxTextCtrl& masked, char character) {
  gtk_entry_set_invisible_char(GTK_ENTRY(masked.GetHandle()), static_cast<gunichar>(character));
}

char MaskOf(const wxTextCtrl& masked) {
  return static_cast<char>(gtk_entry_get_invisible_char(GTK_ENTRY(masked.GetHandle())));
}

void TypeSpinText(wxSpinCtrl& spin, const wxString& text) {
  gtk_entry_set_text(GTK_ENTRY(spin.GetHandle()), text.utf8_str());
}

}  // namespace qx::desktop
