// Windows finds the label of a control by what stands right before it; other names are told through an
// accessible object of the widget.
#include "host/desktop/views/Accessible.h"

#include <wx/access.h>
#include <wx/stattext.h>
#include <wx/window.h>

namespace qx::desktop {
namespace {

// Everything but the name stays what Windows itself says of the control.
class NamedAccessible final : public wxAccessible {
 public:
  NamedAccessible(wxWindow* window, const wxString& name) : wxAccessible(window), name_(name) {}
  wxAccStatus GetName(int child, wxString* name) override {
    if (child != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
    *name = name_;
    return wxACC_OK;
  }

 private:
  wxString name_;
};

}  // namespace

void SetAccessibleName(wxWindow& widget, const wxString& name) {
  widget.SetAccessible(new NamedAccessible(&widget, name));  // the widget's from now on
}

wxString AccessibleName(const wxWindow& widget) {
  wxString name;
  if (wxAccessible* accessible = const_cast<wxWindow&>(widget).GetAccessible())
    accessible->GetName(wxACC_SELF, &name);
  return name;
}

// Its place does it; which widget was meant is kept for LabelledBy.
void LetLabel(wxStaticText& label, wxWindow& widget) { label.SetClientData(&widget); }

wxWindow* LabelledBy(const wxStaticText& label) {
  const auto* meant = static_cast<const wxWindow*>(label.GetClientData());
  wxWindow* next = label.GetNextSibling();
  while (next != nullptr && !next->IsShown()) next = next->GetNextSibling();
  const bool stands = next != nullptr && meant != nullptr &&
                      (next == meant || next->IsDescendant(const_cast<wxWindow*>(meant)));
  return stands ? next : nullptr;
}

}  // namespace qx::desktop
