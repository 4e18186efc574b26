#include "host/desktop/driving/ViewDriver.h"

#include <wx/checkbox.h>
#include <wx/checklst.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/evtloop.h>
#include <wx/grid.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <utility>

#include "host/desktop/driving/WidgetState.h"
#include "host/desktop/views/ButtonEdit.h"
#include "host/desktop/views/ControlViews.h"
#include "host/desktop/views/NativeText.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

using Json = nlohmann::ordered_json;

// The event that the toolkit sends when the user has done something to the widget.
void Send(wxWindow& widget, wxEventType type, int number = 0, const wxString& text = {}) {
  wxCommandEvent event(type, widget.GetId());
  event.SetEventObject(&widget);
  event.SetInt(number);
  event.SetString(text);
  widget.ProcessWindowEvent(event);
}

void SendFocus(wxWindow& widget, wxEventType type) {
  wxFocusEvent event(type, widget.GetId());
  event.SetEventObject(&widget);
  widget.ProcessWindowEvent(event);
}

// What has arrived is worked off, as it is before the user's next action.
void SettleDown() {
  wxEventLoopBase* loop = wxEventLoopBase::GetActive();
  while (loop != nullptr && loop->Pending()) loop->Dispatch();
}

TUserAnswer TypeNumber(wxSpinCtrl& spin, const std::string& text) {
  const int before = spin.GetValue();
  TypeSpinText(spin, ToWx(text));
  SettleDown();
  SendFocus(spin, wxEVT_KILL_FOCUS);
  const bool isPutBack = spin.GetValue() == before && spin.GetTextValue() == std::to_string(before);
  return isPutBack && !IsWholeNumber(text) ? TUserAnswer::NotTaken : TUserAnswer::Done;
}

TUserAnswer Pick(wxChoice& list, int index) {
  if (index < 0 || index >= static_cast<int>(list.GetCount())) return TUserAnswer::NoSuchItem;
  list.SetSelection(index);
  Send(list, wxEVT_CHOICE, index, list.GetStringSelection());
  return TUserAnswer::Done;
}

TUserAnswer Pick(wxComboBox& box, int index) {
  if (index < 0 || index >= static_cast<int>(box.GetCount())) return TUserAnswer::NoSuchItem;
  box.SetSelection(index);
  Send(box, wxEVT_COMBOBOX, index, box.GetValue());
  return TUserAnswer::Done;
}

TUserAnswer Pick(wxCheckListBox& list, int index) {
  if (index < 0 || index >= static_cast<int>(list.GetCount())) return TUserAnswer::NoSuchItem;
  wxArrayInt selected;
  list.GetSelections(selected);
  for (const int row : selected) list.Deselect(row);
  list.SetSelection(index);
  Send(list, wxEVT_LISTBOX, index);
  return TUserAnswer::Done;
}

// The tab numbers of a page stand for its order: the widget that comes n-th has the n-th smallest of them.
int TabNumber(const TControl& control, int place) {
  if (place < 0 || control.Parent() == nullptr) return -1;
  std::vector<int> numbers;
  for (const TControl* sibling : control.Parent()->Children())
    if (sibling->IsWindowed() && sibling->tabOrder >= 0) numbers.push_back(sibling->tabOrder);
  std::ranges::sort(numbers);
  return place < static_cast<int>(numbers.size()) ? numbers[static_cast<std::size_t>(place)] : -1;
}

}  // namespace

WidgetHands::WidgetHands(PagesWindow& window) : window_(window) {
  window_.Bound().fault = [this](const std::string& text) { fault_ = text; };
}

wxWindow& WidgetHands::WidgetOf(int page, const TControl& control) const {
  wxWindow* widget = wxWindow::FindWindowByName(ToWx(control.name), &window_.Page(page));
  if (widget == nullptr) throw Exception("Nothing on the screen is called " + control.name);
  return *widget;
}

void WidgetHands::GoTo(int page) {
  wxListBox* list = window_.PageList();
  if (page == window_.PageInFront() || list == nullptr) return;
  list->SetSelection(page);
  Send(*list, wxEVT_LISTBOX, page);
  SettleDown();
  RaiseFault();
}

bool WidgetHands::IsEnabled(int page, TControl& control) const { return WidgetOf(page, control).IsEnabled(); }

Json WidgetHands::StateOf(int page, const TControl& control) const {
  Json state = StateOfWidget(WidgetOf(page, control), window_.Page(page));
  state["tab"] = TabNumber(control, state["tab"].get<int>());
  return state;
}

void WidgetHands::RaiseFault() {
  if (!fault_.empty()) throw Exception(std::exchange(fault_, {}));
}

TUserAnswer WidgetHands::Do(wxWindow& widget, const std::function<TUserAnswer()>& deed) {
  if (!widget.IsEnabled() || !widget.IsShownOnScreen()) return TUserAnswer::Disabled;
  widget.SetFocus();
  const TUserAnswer answer = deed();
  SettleDown();
  RaiseFault();
  return answer;
}

TUserAnswer WidgetHands::Click(int page, TControl& control) {
  wxWindow& widget = WidgetOf(page, control);
  return Do(widget, [&] {
    if (auto* box = dynamic_cast<wxCheckBox*>(&widget)) {
      box->SetValue(!box->GetValue());
      Send(widget, wxEVT_CHECKBOX, box->GetValue() ? 1 : 0);
    } else if (auto* button = dynamic_cast<wxRadioButton*>(&widget)) {
      if (button->GetValue()) return TUserAnswer::Done;  // nothing comes of a click on it
      button->SetValue(true);
      Send(widget, wxEVT_RADIOBUTTON, 1);
    } else if (dynamic_cast<wxButton*>(&widget) != nullptr) {
      Send(widget, wxEVT_BUTTON);
    } else {
      return TUserAnswer::NotOffered;
    }
    return TUserAnswer::Done;
  });
}

TUserAnswer WidgetHands::Type(int page, TControl& control, const std::string& text) {
  wxWindow& widget = WidgetOf(page, control);
  return Do(widget, [&] {
    if (auto* spin = dynamic_cast<wxSpinCtrl*>(&widget)) return TypeNumber(*spin, text);
    auto* buttonEdit = dynamic_cast<ButtonEdit*>(&widget);
    wxTextEntry* entry = buttonEdit != nullptr ? &buttonEdit->Text() : dynamic_cast<wxTextEntry*>(&widget);
    if (entry != nullptr) {
      entry->SetValue(ToWx(text));  // sends the event of a text that was typed
      return TUserAnswer::Done;
    }
    auto* list = dynamic_cast<wxChoice*>(&widget);  // which editable boxes are too, under GTK
    if (list == nullptr) return TUserAnswer::NotOffered;
    const int index = list->FindString(ToWx(text));
    return index == wxNOT_FOUND ? TUserAnswer::NotTaken : Pick(*list, index);
  });
}

TUserAnswer WidgetHands::Select(int page, TControl& control, int index) {
  wxWindow& widget = WidgetOf(page, control);
  return Do(widget, [&] {
    if (auto* list = dynamic_cast<wxCheckListBox*>(&widget)) return Pick(*list, index);
    if (auto* box = dynamic_cast<wxComboBox*>(&widget)) return Pick(*box, index);
    if (auto* list = dynamic_cast<wxChoice*>(&widget)) return Pick(*list, index);
    return TUserAnswer::NotOffered;
  });
}

TUserAnswer WidgetHands::Tick(int page, TControl& control, int index, bool checked) {
  wxWindow& widget = WidgetOf(page, control);
  return Do(widget, [&] {
    auto* list = dynamic_cast<wxCheckListBox*>(&widget);
    if (list == nullptr) return TUserAnswer::NotOffered;
    if (index < 0 || index >= static_cast<int>(list->GetCount())) return TUserAnswer::NoSuchItem;
    const auto row = static_cast<unsigned int>(index);
    if (list->IsChecked(row) == checked) return TUserAnswer::Done;
    list->Check(row, checked);
    Send(widget, wxEVT_CHECKLISTBOX, index);
    return TUserAnswer::Done;
  });
}

// Through the editor that opens in the cell.
TUserAnswer WidgetHands::EditCell(int page, TControl& control, int column, int row, const std::string& text) {
  wxWindow& widget = WidgetOf(page, control);
  return Do(widget, [&] {
    auto* grid = dynamic_cast<wxGrid*>(&widget);
    if (grid == nullptr) return TUserAnswer::NotOffered;
    const bool isCell =
        column >= 0 && column < grid->GetNumberCols() && row >= 1 && row <= grid->GetNumberRows();
    if (!isCell) return TUserAnswer::NoSuchItem;
    grid->SetGridCursor(row - 1, column);
    grid->EnableCellEditControl();
    const wxGridCellEditorPtr editor(grid->GetCellEditor(row - 1, column));
    if (auto* entry = dynamic_cast<wxTextEntry*>(editor->GetWindow())) entry->SetValue(ToWx(text));
    grid->DisableCellEditControl();
    return TUserAnswer::Done;
  });
}

TUserAnswer WidgetHands::PressButton(int page, TControl& control, int index) {
  wxWindow& widget = WidgetOf(page, control);
  return Do(widget, [&] {
    auto* edit = dynamic_cast<ButtonEdit*>(&widget);
    if (edit == nullptr) return TUserAnswer::NotOffered;
    if (index < 0 || index >= static_cast<int>(edit->Buttons().size())) return TUserAnswer::NoSuchItem;
    Send(*edit->Buttons()[static_cast<std::size_t>(index)], wxEVT_BUTTON);
    return TUserAnswer::Done;
  });
}

// Apply where there is something to apply; else OK, which confirms what stands there, and the window is
// opened again.
void WidgetHands::Write() {
  wxWindow* apply = window_.FindWindow(wxID_APPLY);
  wxWindow* confirm = window_.FindWindow(wxID_OK);
  Send(apply->IsEnabled() ? *apply : *confirm, wxEVT_BUTTON);
  if (!window_.IsShown()) window_.Show();
  SettleDown();
  RaiseFault();
}

}  // namespace qx::desktop
