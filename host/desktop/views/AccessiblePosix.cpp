// The toolkit is GTK here; its labels keep the widget that they name, which makes the relation that screen
// readers follow.
#include "host/desktop/views/Accessible.h"

#include <gtk/gtk.h>
#include <wx/stattext.h>
#include <wx/window.h>

namespace qx::desktop {

namespace {

// What has the keyboard: wxWidgets' own area where it draws inside a frame with scroll bars, else the widget.
GtkWidget* InnerOf(const wxWindow& widget) {
  return widget.m_wxwindow != nullptr ? widget.m_wxwindow : widget.GetHandle();
}

}  // namespace

void SetAccessibleName(wxWindow& widget, const wxString& name) {
  for (GtkWidget* part : {widget.GetHandle(), InnerOf(widget)})
    atk_object_set_name(gtk_widget_get_accessible(part), name.utf8_str());
}

wxString AccessibleName(const wxWindow& widget) {
  const char* name = atk_object_get_name(gtk_widget_get_accessible(InnerOf(widget)));
  return name == nullptr ? wxString() : wxString::FromUTF8(name);
}

void LetLabel(wxStaticText& label, wxWindow& widget) {
  gtk_label_set_mnemonic_widget(GTK_LABEL(label.GetHandle()), widget.GetHandle());
}

wxWindow* LabelledBy(const wxStaticText& label) {
  GtkWidget* named = gtk_label_get_mnemonic_widget(GTK_LABEL(label.GetHandle()));
  if (named == nullptr || label.GetParent() == nullptr) return nullptr;
  // The named one may lie inside what stands beside the label.
  for (wxWindow* sibling : label.GetParent()->GetChildren())
    if (sibling->GetHandle() == named || gtk_widget_is_ancestor(named, sibling->GetHandle())) return sibling;
  return nullptr;
}

}  // namespace qx::desktop
