#include "host/desktop/views/ControlViews.h"

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
#include <wx/wupdlock.h>

#include <algorithm>
#include <memory>

#include "host/desktop/views/ButtonEdit.h"
#include "host/desktop/views/GridView.h"
#include "host/desktop/views/TextField.h"
#include "host/desktop/views/Wheel.h"
#include "host/desktop/views/WxText.h"
#include "platform/Texts.h"

namespace qx::desktop {
namespace {

using Effect = Binding::Effect;
using Show = std::function<bool()>;
struct Made {
  wxWindow* window;
  Show show;
};

wxArrayString ToArray(const std::vector<std::string>& texts) {
  wxArrayString converted;
  converted.Alloc(texts.size());
  for (const std::string& text : texts) converted.Add(ToWx(text));
  return converted;
}

wxSize CharactersWide(const wxControl& widget, int count) {
  return widget.GetSizeFromTextSize(widget.GetTextExtent(wxString('0', static_cast<std::size_t>(count))));
}

Made Make(TLabel& label, wxWindow& parent, Binding&) {
  auto* text = new wxStaticText(&parent, wxID_ANY, ToWx(label.caption));
  if (label.heading) text->SetFont(text->GetFont().Bold());
  return {text, {}};
}

Made Make(TPanel&, wxWindow& parent, Binding&) { return {new wxPanel(&parent), {}}; }

Made Make(TGroupBox& group, wxWindow& parent, Binding&) {
  return {new wxStaticBox(&parent, wxID_ANY, ToWx(group.caption)), {}};
}

Made Make(TButton& button, wxWindow& parent, Binding& binding) {
  auto* widget = new wxButton(&parent, wxID_ANY, ToWx(button.caption));
  widget->Bind(wxEVT_BUTTON,
               [&](wxCommandEvent&) { binding.Perform(Effect::MayEdit, [&] { button.UserClick(); }); });
  return {widget, {}};
}

constexpr int kShortText = 6;
constexpr int kPathText = 12;

// The text the user types goes to the model with every key; back comes only what a rule made different, so
// that the caret stays where it is.
Show BindText(TEdit& edit, wxTextCtrl& text, Binding& binding) {
  text.SetMinSize(CharactersWide(text, kShortText));
  text.Bind(wxEVT_TEXT, [&](wxCommandEvent&) {
    binding.Perform(Effect::Edits, [&] { edit.UserType(FromWx(text.GetValue())); });
  });
  return [&] {
    const wxString wanted = ToWx(edit.Text());
    if (text.GetValue() == wanted) return false;
    text.ChangeValue(wanted);
    return true;
  };
}

Made Make(TEdit& edit, wxWindow& parent, Binding& binding) {
  wxTextCtrl* text = MakeTextField(parent, edit);
  return {text, BindText(edit, *text, binding)};
}

Made Make(TButtonEdit& edit, wxWindow& parent, Binding& binding) {
  auto* widget = new ButtonEdit(&parent, edit);
  for (std::size_t i = 0; i < widget->Buttons().size(); ++i)
    widget->Buttons()[i]->Bind(wxEVT_BUTTON, [&edit, &binding, i](wxCommandEvent&) {
      binding.Perform(Effect::MayEdit, [&edit, i] { edit.UserPressButton(static_cast<int>(i)); });
    });
  wxTextCtrl& text = widget->Text();
  const Show showText = BindText(edit, text, binding);
  text.SetMinSize(CharactersWide(text, kPathText));
  return {widget, [&edit, &text, showText] {
            if (text.GetToolTipText() != ToWx(edit.hint)) text.SetToolTip(ToWx(edit.hint));
            return showText();
          }};
}

// Whether the widget's items were others.
template <class Widget>
bool ShowItems(Widget& widget, const std::vector<std::string>& items) {
  const wxArrayString wanted = ToArray(items);
  if (widget.GetStrings() == wanted) return false;
  wxWindowUpdateLocker still(&widget);
  widget.Set(wanted);
  return true;
}

bool ShowEditable(const TComboBox& box, wxComboBox& widget) {
  const bool differed = ShowItems(widget, box.Items());
  const wxString wanted = ToWx(box.Text());
  if (!differed && widget.GetValue() == wanted) return false;
  if (box.ItemIndex() >= 0) widget.SetSelection(box.ItemIndex());
  if (widget.GetValue() != wanted) widget.ChangeValue(wanted);
  return true;
}

Made MakeEditable(TComboBox& box, wxWindow& parent, Binding& binding) {
  auto* widget =
      new wxComboBox(&parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0, nullptr, wxCB_DROPDOWN);
  widget->SetMinSize(CharactersWide(*widget, 2 * kShortText));
  LeaveWheelToPage(*widget);
  widget->Bind(wxEVT_TEXT, [&box, &binding, widget](wxCommandEvent&) {
    binding.Perform(Effect::Edits, [&] { box.UserType(FromWx(widget->GetValue())); });
  });
  widget->Bind(wxEVT_COMBOBOX, [&box, &binding](wxCommandEvent& event) {
    binding.Perform(Effect::Edits, [&] { box.UserSelect(event.GetSelection()); });
  });
  return {widget, [&box, widget] { return ShowEditable(box, *widget); }};
}

bool ShowPicked(const TComboBox& box, wxChoice& widget) {
  const bool differed = ShowItems(widget, box.Items());
  const int wanted = box.ItemIndex() < 0 ? wxNOT_FOUND : box.ItemIndex();
  if (widget.GetSelection() == wanted) return differed;
  widget.SetSelection(wanted);
  return true;
}

Made Make(TComboBox& box, wxWindow& parent, Binding& binding) {
  if (box.style == TComboStyle::Editable) return MakeEditable(box, parent, binding);
  auto* widget = new wxChoice(&parent, wxID_ANY);
  LeaveWheelToPage(*widget);
  widget->Bind(wxEVT_CHOICE, [&box, &binding](wxCommandEvent& event) {
    binding.Perform(Effect::Edits, [&] { box.UserSelect(event.GetSelection()); });
  });
  return {widget, [&box, widget] { return ShowPicked(box, *widget); }};
}

template <class Widget, class Control>
Show ShowDot(const Control& control, Widget& widget) {
  return [&control, &widget] {
    if (widget.GetValue() == control.Checked()) return false;
    widget.SetValue(control.Checked());
    return true;
  };
}

Made Make(TCheckBox& box, wxWindow& parent, Binding& binding) {
  auto* widget = new wxCheckBox(&parent, wxID_ANY, ToWx(box.caption), wxDefaultPosition, wxDefaultSize,
                                box.captionOnLeft ? wxALIGN_RIGHT : 0);
  widget->Bind(wxEVT_CHECKBOX, [&box, &binding, widget](wxCommandEvent&) {
    binding.Perform(Effect::Edits, [&] {
      if (widget->GetValue() != box.Checked()) box.UserClick();
    });
  });
  return {widget, ShowDot(box, *widget)};
}

Made Make(TRadioButton& button, wxWindow& parent, Binding& binding) {
  auto* widget = new wxRadioButton(&parent, wxID_ANY, ToWx(button.caption));
  widget->Bind(wxEVT_RADIOBUTTON, [&button, &binding](wxCommandEvent&) {
    binding.Perform(Effect::Edits, [&] { button.UserClick(); });
  });
  // The dot leaves a button as another one gets it.
  return {widget, [&button, widget] {
            if (!button.Checked() || widget->GetValue()) return false;
            widget->SetValue(true);
            return true;
          }};
}

// The ticks and items; which rows are selected is the widget's own unless its items changed.
bool ShowList(const TCheckListBox& list, wxCheckListBox& widget) {
  wxArrayString items;
  items.Alloc(static_cast<std::size_t>(list.Count()));
  for (int i = 0; i < list.Count(); ++i) items.Add(ToWx(list.Item(i)));
  bool differed = widget.GetStrings() != items;
  wxWindowUpdateLocker still;
  if (differed) {
    still.Lock(&widget);
    widget.Set(items);
    for (int i = 0; i < list.Count(); ++i)
      if (list.IsSelected(i)) widget.SetSelection(i);
  }
  for (int i = 0; i < list.Count(); ++i) {
    const auto index = static_cast<unsigned int>(i);
    if (widget.IsChecked(index) == list.IsChecked(i)) continue;
    widget.Check(index, list.IsChecked(i));
    differed = true;
  }
  return differed;
}

Made Make(TCheckListBox& list, wxWindow& parent, Binding& binding) {
  constexpr int kRows = 4;
  auto* widget = new wxCheckListBox(&parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr,
                                    list.multiSelect ? wxLB_EXTENDED : wxLB_SINGLE);
  widget->SetMinSize({30 * widget->GetCharWidth(), kRows * widget->GetCharHeight() * 3 / 2});
  widget->Bind(wxEVT_CHECKLISTBOX, [&list, &binding, widget](wxCommandEvent& event) {
    const int index = event.GetInt();
    binding.Perform(Effect::Edits,
                    [&] { list.UserTick(index, widget->IsChecked(static_cast<unsigned int>(index))); });
  });
  widget->Bind(wxEVT_LISTBOX, [&list, &binding, widget](wxCommandEvent&) {
    wxArrayInt rows;
    if (widget->GetSelections(rows) > 0)
      binding.Perform(Effect::MayEdit, [&] { list.UserSelect(rows.front()); });
  });
  return {widget, [&list, widget] { return ShowList(list, *widget); }};
}

// What the user is typing into a spin edit stays as it is typed, although the value is held to its range
// already; it gives way to the value when the user leaves, or when a rule sets another one.
struct Typing {
  bool isOn = false;
  std::int32_t value = 0;  // of the model, as the text made it
};

bool ShowNumber(const TSpinEdit& spin, wxSpinCtrl& widget, Typing& typing) {
  bool differed = false;
  if (widget.GetMin() != spin.Min() || widget.GetMax() != spin.Max()) {
    widget.SetRange(spin.Min(), spin.Max());
    differed = true;
  }
  if (typing.isOn && typing.value == spin.Value()) return differed;
  typing.isOn = false;
  if (widget.GetTextValue() == std::to_string(spin.Value()) && widget.GetValue() == spin.Value())
    return differed;
  widget.SetValue(spin.Value());
  if (widget.GetTextValue() != std::to_string(spin.Value()))
    widget.SetValue(wxString::Format("%d", spin.Value()));
  return true;
}

int CharactersOf(const TSpinEdit& spin) {
  const auto length = [](std::int32_t value) { return static_cast<int>(std::to_string(value).size()); };
  return std::max({length(spin.Min()), length(spin.Max()), 3});
}

Made Make(TSpinEdit& spin, wxWindow& parent, Binding& binding) {
  auto* widget = new wxSpinCtrl(&parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS,
                                spin.Min(), spin.Max(), spin.Value());
  widget->SetMinSize(CharactersWide(*widget, CharactersOf(spin) + 1));
  LeaveWheelToPage(*widget);
  const auto typing = std::make_shared<Typing>();
  widget->Bind(wxEVT_TEXT, [&spin, &binding, widget, typing](wxCommandEvent&) {
    const std::string text = FromWx(widget->GetTextValue());
    if (!IsWholeNumber(text)) {
      *typing = {true, spin.Value()};
      return;
    }
    binding.Perform(Effect::Edits, [&] {
      *typing = {true, spin.Value()};
      spin.UserType(text);
      typing->value = spin.Value();
    });
  });
  widget->Bind(wxEVT_SPINCTRL, [&spin, &binding, typing](wxSpinEvent& event) {
    binding.Perform(Effect::Edits, [&] {
      typing->isOn = false;
      spin.UserType(std::to_string(event.GetPosition()));
    });
  });
  widget->Bind(wxEVT_KILL_FOCUS, [&binding, typing](wxFocusEvent& event) {
    event.Skip();
    typing->isOn = false;
    binding.Show();
  });
  return {widget, [&spin, widget, typing] { return ShowNumber(spin, *widget, *typing); }};
}

Made Make(TStringGrid& grid, wxWindow& parent, Binding& binding) {
  wxGrid* widget = MakeGrid(parent);
  widget->Bind(wxEVT_GRID_CELL_CHANGED, [&grid, &binding, widget](wxGridEvent& event) {
    const wxString text = widget->GetCellValue(event.GetRow(), event.GetCol());
    binding.Perform(Effect::Edits,
                    [&] { grid.UserEditCell(event.GetCol(), event.GetRow() + 1, FromWx(text)); });
  });
  return {widget, [&grid, widget] { return ShowGrid(grid, *widget); }};
}

template <class Control>
bool MakeAs(TControl& control, wxWindow& parent, Binding& binding, Made& made) {
  auto* found = dynamic_cast<Control*>(&control);
  if (found == nullptr) return false;
  made = Make(*found, parent, binding);
  return true;
}

}  // namespace

bool IsWholeNumber(const std::string& text) {
  std::string_view digits = TrimView(text);
  if (digits.starts_with('-') || digits.starts_with('+')) digits.remove_prefix(1);
  return !digits.empty() && std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
}

wxWindow* MakeControlView(TControl& control, wxWindow& parent, Binding& binding) {
  Made made{};
  // The more special kind first.
  const bool known =
      MakeAs<TLabel>(control, parent, binding, made) || MakeAs<TPanel>(control, parent, binding, made) ||
      MakeAs<TGroupBox>(control, parent, binding, made) || MakeAs<TButton>(control, parent, binding, made) ||
      MakeAs<TButtonEdit>(control, parent, binding, made) || MakeAs<TEdit>(control, parent, binding, made) ||
      MakeAs<TComboBox>(control, parent, binding, made) ||
      MakeAs<TCheckBox>(control, parent, binding, made) ||
      MakeAs<TRadioButton>(control, parent, binding, made) ||
      MakeAs<TCheckListBox>(control, parent, binding, made) ||
      MakeAs<TSpinEdit>(control, parent, binding, made) ||
      MakeAs<TStringGrid>(control, parent, binding, made);
  if (!known) throw Exception("There is no widget for a control of the kind " + std::string(control.Kind()));
  made.window->SetName(ToWx(control.name));
  binding.Add({&control, made.window, std::move(made.show)});
  return made.window;
}

void MakeHiddenChoice(const TControl& container, wxWindow& parent, Binding& binding) {
  std::vector<const TRadioButton*> buttons;
  for (const TControl* child : container.Children())
    if (const auto* button = dynamic_cast<const TRadioButton*>(child)) buttons.push_back(button);
  if (buttons.empty()) return;
  auto* none = new wxRadioButton(&parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
  none->Hide();
  none->SetName("");
  binding.Add({nullptr, none, [buttons, none] {
                 const bool isChosen = std::ranges::any_of(buttons, &TRadioButton::Checked);
                 if (isChosen || none->GetValue()) return false;
                 none->SetValue(true);
                 return true;
               }});
}

void FinishEditing(wxWindow& page) {
  for (wxWindow* child : page.GetChildren()) {
    if (auto* grid = dynamic_cast<wxGrid*>(child)) grid->DisableCellEditControl();
    FinishEditing(*child);
  }
}

}  // namespace qx::desktop
