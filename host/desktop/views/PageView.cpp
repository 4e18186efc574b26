#include "host/desktop/views/PageView.h"

#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include <unordered_map>

#include "host/desktop/core/PageRows.h"
#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/ButtonEdit.h"
#include "host/desktop/views/ControlViews.h"
#include "host/desktop/views/PageLayout.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

using Widgets = std::unordered_map<const TControl*, wxWindow*>;

// What takes the keys: of a text with buttons the text.
wxWindow& FocusOf(wxWindow& widget) {
  auto* edit = dynamic_cast<ButtonEdit*>(&widget);
  return edit == nullptr ? widget : edit->Text();
}

// In the order of the Tab key, which is that of making.
void MakeInside(TControl& container, wxWindow& parent, Binding& binding, Widgets& widgets) {
  MakeHiddenChoice(container, parent, binding);
  for (TControl* control : InTabOrder(container)) {
    wxWindow* widget = MakeControlView(*control, parent, binding);
    widgets[control] = widget;
    if (control->IsWindowed() && control->Children().empty() && control->tabOrder < 0)
      FocusOf(*widget).DisableFocusFromKeyboard();
    MakeInside(*control, *widget, binding, widgets);
  }
}

void Name(const TFrame& frame, const Widgets& widgets) {
  for (const TControl* control : frame.Controls()) {
    if (control->IsWindowed()) {
      const std::string name = SpokenName(*control);
      SetAccessibleName(FocusOf(*widgets.at(control)), ToWx(name.empty() ? control->name : name));
    }
    const auto* label = dynamic_cast<const TLabel*>(control);
    if (label != nullptr && label->labelled != nullptr)
      LetLabel(dynamic_cast<wxStaticText&>(*widgets.at(label)), FocusOf(*widgets.at(label->labelled)));
  }
}

bool FocusFirstIn(const wxWindow& container) {
  for (wxWindow* child : container.GetChildren()) {
    if (!child->IsShown() || !child->IsEnabled()) continue;
    if (dynamic_cast<wxPanel*>(child) != nullptr || dynamic_cast<wxStaticBox*>(child) != nullptr) {
      if (FocusFirstIn(*child)) return true;
    } else if (child->AcceptsFocusFromKeyboard()) {
      child->SetFocus();
      return true;
    }
  }
  return false;
}

}  // namespace

PageView::PageView(wxWindow* parent, TFrame& frame, Binding& binding)
    : wxScrolledWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL) {
  SetName(ToWx(frame.PageName()));
  Widgets widgets;
  MakeInside(frame.Root(), *this, binding, widgets);
  Name(frame, widgets);
  LayOut(frame.Root(), *this, [&widgets](const TControl& control) { return widgets.at(&control); });
  SetScrollRate(GetCharWidth(), GetCharHeight());
}

void PageView::FocusFirst() { FocusFirstIn(*this); }

void PageView::Rearrange() {
  Layout();
  FitInside();
}

}  // namespace qx::desktop
