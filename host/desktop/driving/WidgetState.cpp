#include "host/desktop/driving/WidgetState.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/checklst.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/grid.h>
#include <wx/panel.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/ButtonEdit.h"
#include "host/desktop/views/NativeText.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

using Json = nlohmann::ordered_json;

// One of these for each kind: the word of the kind, and what else there is to see.
Json See(const wxStaticText& label) {
  Json state{{"kind", label.GetFont().GetWeight() >= wxFONTWEIGHT_BOLD ? "heading" : "label"},
             {"caption", FromWx(label.GetLabel())}};
  if (const wxWindow* labelled = LabelledBy(label)) state["labels"] = FromWx(labelled->GetName());
  return state;
}

Json See(const wxStaticBox& box) { return {{"kind", "group"}, {"caption", FromWx(box.GetLabel())}}; }

Json See(const wxButton& button) { return {{"kind", "button"}, {"caption", FromWx(button.GetLabel())}}; }

// Of a masked text its mask is seen.
Json See(const wxTextCtrl& text) {
  const bool isMasked = text.HasFlag(wxTE_PASSWORD);
  Json state{
      {"kind", "edit"},
      {"text", isMasked ? std::string(text.GetValue().length(), MaskOf(text)) : FromWx(text.GetValue())},
      {"masked", isMasked}};
  if (text.HasFlag(wxTE_RIGHT)) state["rightAligned"] = true;
  return state;
}

Json See(const ButtonEdit& edit) {
  Json state = See(edit.Text());
  state["kind"] = "buttonEdit";
  state["buttons"] = Json::array();
  for (const wxBitmapButton* button : edit.Buttons())
    state["buttons"].push_back(FromWx(button->GetToolTipText()));
  return state;
}

template <class Widget>
Json ItemsOf(const Widget& widget) {
  Json items = Json::array();
  for (unsigned int i = 0; i < widget.GetCount(); ++i) items.push_back(FromWx(widget.GetString(i)));
  return items;
}

// The toolkit forgets which item was picked as soon as the text is typed; what is marked as the list drops
// down is the item that the text equals.
int IndexOf(const wxComboBox& box) {
  const int picked = box.GetSelection();
  const bool stands = picked >= 0 && box.GetString(static_cast<unsigned int>(picked)) == box.GetValue();
  return stands ? picked : box.FindString(box.GetValue());
}

Json See(const wxComboBox& box) {
  return {{"kind", "comboBox"},
          {"text", FromWx(box.GetValue())},
          {"items", ItemsOf(box)},
          {"index", IndexOf(box)}};
}

Json See(const wxChoice& list) {
  return {{"kind", "dropDownList"},
          {"text", FromWx(list.GetStringSelection())},
          {"items", ItemsOf(list)},
          {"index", list.GetSelection()}};
}

Json See(const wxCheckBox& box) {
  Json state{{"kind", "checkBox"}, {"caption", FromWx(box.GetLabel())}, {"checked", box.GetValue()}};
  if (box.HasFlag(wxALIGN_RIGHT)) state["captionLeft"] = true;
  return state;
}

Json See(const wxRadioButton& button) {
  return {{"kind", "radioButton"}, {"caption", FromWx(button.GetLabel())}, {"checked", button.GetValue()}};
}

Json See(const wxCheckListBox& list) {
  Json state{{"kind", "checkList"}, {"items", ItemsOf(list)}};
  state["checkedItems"] = state["checkedIndexes"] = state["selectedIndexes"] = Json::array();
  for (unsigned int i = 0; i < list.GetCount(); ++i) {
    if (list.IsChecked(i)) {
      state["checkedItems"].push_back(FromWx(list.GetString(i)));
      state["checkedIndexes"].push_back(i);
    }
    if (list.IsSelected(static_cast<int>(i))) state["selectedIndexes"].push_back(i);
  }
  state["multiSelect"] = list.HasFlag(wxLB_EXTENDED);
  return state;
}

Json See(const wxSpinCtrl& spin) {
  return {{"kind", "spinEdit"},
          {"text", FromWx(spin.GetTextValue())},
          {"value", spin.GetValue()},
          {"min", spin.GetMin()},
          {"max", spin.GetMax()}};
}

Json See(const wxGrid& grid) {
  Json rows = Json::array();
  for (int row = -1; row < grid.GetNumberRows(); ++row) {
    Json cells = Json::array();
    for (int column = 0; column < grid.GetNumberCols(); ++column)
      cells.push_back(FromWx(row < 0 ? grid.GetColLabelValue(column) : grid.GetCellValue(row, column)));
    rows.push_back(std::move(cells));
  }
  return {{"kind", "grid"}, {"cells", std::move(rows)}};
}

Json See(const wxPanel&) { return {{"kind", "panel"}}; }

template <class Widget>
bool SeeAs(const wxWindow& widget, Json& seen) {
  const auto* found = dynamic_cast<const Widget*>(&widget);
  if (found != nullptr) seen = See(*found);
  return found != nullptr;
}

// Whether the Tab key stops there, or inside.
bool IsTabStop(const wxWindow& widget) {
  if (const auto* edit = dynamic_cast<const ButtonEdit*>(&widget))
    return edit->Text().AcceptsFocusFromKeyboard();
  const bool isContainer = dynamic_cast<const wxStaticBox*>(&widget) != nullptr ||
                           dynamic_cast<const wxPanel*>(&widget) != nullptr;
  if (!isContainer || dynamic_cast<const wxGrid*>(&widget) != nullptr)
    return widget.AcceptsFocusFromKeyboard();
  for (const wxWindow* child : widget.GetChildren())
    if (!child->GetName().empty() && IsTabStop(*child)) return true;
  return false;
}

int TabPlace(const wxWindow& widget) {
  if (!IsTabStop(widget)) return -1;
  int place = 0;
  for (const wxWindow* sibling : widget.GetParent()->GetChildren()) {
    if (sibling == &widget) return place;
    if (!sibling->GetName().empty() && IsTabStop(*sibling)) ++place;
  }
  return -1;
}

}  // namespace

Json StateOfWidget(const wxWindow& widget, const wxWindow& page) {
  Json seen;
  // The more special class first.
  const bool known = SeeAs<wxStaticText>(widget, seen) || SeeAs<wxStaticBox>(widget, seen) ||
                     SeeAs<ButtonEdit>(widget, seen) || SeeAs<wxSpinCtrl>(widget, seen) ||
                     SeeAs<wxComboBox>(widget, seen) || SeeAs<wxTextCtrl>(widget, seen) ||
                     SeeAs<wxCheckListBox>(widget, seen) || SeeAs<wxChoice>(widget, seen) ||
                     SeeAs<wxCheckBox>(widget, seen) || SeeAs<wxRadioButton>(widget, seen) ||
                     SeeAs<wxButton>(widget, seen) || SeeAs<wxGrid>(widget, seen) ||
                     SeeAs<wxPanel>(widget, seen);
  Json state{{"name", FromWx(widget.GetName())},
             {"kind", known ? seen["kind"] : Json("unknown")},
             {"caption", seen.value("caption", "")},
             {"hint", FromWx(widget.GetToolTipText())},
             {"tab", TabPlace(widget)},
             {"enabled", widget.IsEnabled()},
             {"ownEnabled", widget.IsThisEnabled()}};
  if (widget.GetParent() != &page) state["parent"] = FromWx(widget.GetParent()->GetName());
  for (auto& [key, value] : seen.items()) state[key] = value;
  return state;
}

}  // namespace qx::desktop
