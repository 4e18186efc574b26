#include "host/desktop/SpinText.h"

#include <gtk/gtk.h>
#include <wx/spinctrl.h>

namespace qx::desktop {

void TypeSpinText(wxSpinCtrl& spin, const wxString& text) {
  gtk_entry_set_text(GTK_ENTRY(spin.GetHandle()), text.utf8_str());
}

}  // namespace qx::desktop
