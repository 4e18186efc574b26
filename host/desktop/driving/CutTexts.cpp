#include "host/desktop/driving/CutTexts.h"

#include <wx/anybutton.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/display.h>
#include <wx/radiobut.h>
#include <wx/scrolwin.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>

#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

template <class... Kinds>
bool IsOneOf(const wxWindow& window) {
  return (... || (dynamic_cast<const Kinds*>(&window) != nullptr));
}

wxString Told(const wxWindow& window) {
  return wxString::Format("%s '%s'", window.GetName(), window.GetLabel());
}

wxString Told(const wxSize& size) { return wxString::Format("%dx%d", size.x, size.y); }

// A text that is shortened on purpose says so by its style and needs its height alone.
wxSize Needed(const wxWindow& window) {
  wxSize size = window.GetBestSize();
  const auto* text = dynamic_cast<const wxStaticText*>(&window);
  if (text != nullptr && text->IsEllipsized()) size.x = 0;
  if (text != nullptr && text->GetLabel().empty()) size = {0, 0};
  // What is typed scrolls in its field.
  if (IsOneOf<wxTextCtrl, wxSpinCtrl, wxChoice>(window)) size.x = window.GetMinSize().x;
  if (IsOneOf<wxTextCtrl, wxSpinCtrl>(window)) size.y = window.GetTextExtent("Xg").y;
  return size;
}

void Look(wxWindow& window, bool scrolls, std::vector<std::string>& cut) {
  for (wxWindow* child : window.GetChildren()) {
    if (!child->IsShown() || child->IsTopLevel()) continue;
    const bool isText =
        IsOneOf<wxAnyButton, wxCheckBox, wxRadioButton, wxStaticText, wxTextCtrl, wxSpinCtrl, wxChoice>(
            *child);
    if (isText) {
      const wxSize needed = Needed(*child), has = child->GetSize();
      if (has.x < needed.x || has.y < needed.y)
        cut.push_back(FromWx(Told(*child) + ": " + Told(has) + " of " + Told(needed)));
      const wxRect inside(window.GetClientSize());
      if (!scrolls && needed.x > 0 && !inside.Contains(child->GetRect()))
        cut.push_back(
            FromWx(Told(*child) + " reaches out of " + Told(window) + " of " + Told(window.GetClientSize())));
    }
    Look(*child, dynamic_cast<const wxScrolledWindow*>(child) != nullptr, cut);
  }
}

}  // namespace

std::vector<std::string> FindCut(wxWindow& topLevel) {
  std::vector<std::string> cut;
  const wxRect screen = wxDisplay(&topLevel).GetGeometry();
  if (!screen.Contains(topLevel.GetScreenRect())) {
    const wxRect place = topLevel.GetScreenRect();
    cut.push_back(FromWx(Told(topLevel) + wxString::Format(" at %d,%d of ", place.x, place.y) +
                         Told(place.GetSize()) + " reaches out of the screen of " + Told(screen.GetSize())));
  }
  Look(topLevel, false, cut);
  return cut;
}

}  // namespace qx::desktop
