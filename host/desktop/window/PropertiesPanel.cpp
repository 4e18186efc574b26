#include "host/desktop/window/PropertiesPanel.h"

#include <wx/propgrid/advprops.h>
#include <wx/sizer.h>
#include <wx/textdlg.h>
#include <wx/wupdlock.h>

#include <limits>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Caption.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

wxArrayString ItemsOf(const TStringList& list) {
  wxArrayString items;
  for (const std::string& item : list.Items()) items.push_back(ToWx(item));
  return items;
}

wxPGProperty* MakeEnumeration(const wxString& caption, const wxString& name,
                              const PublishedProperty& property, std::int32_t ordinal) {
  wxPGChoices choices;
  for (std::size_t i = 0; i < property.valueNames.size(); ++i)
    choices.Add(ToWx(property.valueNames[i]), static_cast<int>(i));
  return new wxEnumProperty(caption, name, choices, ordinal);
}

// A text of several lines. The toolkit's own dialog would change backslashes and line ends; this one gives
// every character back, and line ends as the text had them.
class LinesProperty final : public wxLongStringProperty {
 public:
  using wxLongStringProperty::wxLongStringProperty;
  bool DisplayEditorDialog(wxPropertyGrid* grid, wxVariant& value) override {
    const wxString before = value.GetString();
    wxString shown = before;
    shown.Replace("\r\n", "\n");
    wxTextEntryDialog dialog(grid, GetLabel(), "Edit the text", shown, wxOK | wxCANCEL | wxTE_MULTILINE);
    dialog.SetInitialSize(grid->FromDIP(wxSize(520, 360)));
    if (dialog.ShowModal() != wxID_OK || dialog.GetValue() == shown) return false;
    wxString text = dialog.GetValue();
    if (before.Contains("\r\n")) text.Replace("\n", "\r\n");
    value = text;
    return true;
  }
};

wxPGProperty* MakeText(const wxString& caption, const wxString& name, const wxString& text) {
  if (text.Contains("\n")) return new LinesProperty(caption, name, text);
  return new wxStringProperty(caption, name, text);
}

wxPGProperty* MakeInteger(const wxString& caption, const wxString& name, std::int32_t value) {
  auto* row = new wxIntProperty(caption, name, value);
  row->SetAttribute(wxPG_ATTR_MIN, static_cast<long>(std::numeric_limits<std::int32_t>::min()));
  row->SetAttribute(wxPG_ATTR_MAX, static_cast<long>(std::numeric_limits<std::int32_t>::max()));
  return row;
}

// The list is edited on its pages: what it holds is shown, and the button leads there.
wxPGProperty* MakeListWithPages(const wxString& caption, const wxString& name, const TStringList& list) {
  auto* row = new wxStringProperty(caption, name, wxJoin(ItemsOf(list), ';', '\0'));
  row->ChangeFlag(wxPG_PROP_READONLY, true);
  return row;
}

wxPGProperty* MakeRow(const ShownProperty& shown, const PropertyValue& value) {
  const PublishedProperty& property = *shown.property;
  const wxString caption = ToWx(shown.caption);
  const wxString name = ToWx(property.name);
  switch (property.kind) {
    case PropertyKind::Integer:
      return MakeInteger(caption, name, std::get<std::int32_t>(value));
    case PropertyKind::Boolean: {
      auto* row = new wxBoolProperty(caption, name, std::get<bool>(value));
      row->SetAttribute(wxPG_BOOL_USE_CHECKBOX, !shown.opensPages);
      return row;
    }
    case PropertyKind::Enumeration:
      return MakeEnumeration(caption, name, property, std::get<EnumerationValue>(value).ordinal);
    case PropertyKind::TextList: {
      const auto& list = std::get<TStringList>(value);
      if (shown.opensPages) return MakeListWithPages(caption, name, list);
      auto* row = new wxArrayStringProperty(caption, name, ItemsOf(list));
      row->ChangeFlag(wxPG_PROP_NOEDITOR, true);  // in one line, items with commas would become two
      return row;
    }
    case PropertyKind::Text:
      break;
  }
  return MakeText(caption, name, ToWx(std::get<std::string>(value)));
}

// The button beside the value opens the property pages.
void GiveButton(wxPGProperty& row, PropertyKind kind) {
  const bool isChoice = kind == PropertyKind::Enumeration || kind == PropertyKind::Boolean;
  row.SetEditor(isChoice ? wxPGEditor_ChoiceAndButton : wxPGEditor_TextCtrlAndButton);
}

PropertyValue ValueOf(const PublishedProperty& property, const wxVariant& value) {
  switch (property.kind) {
    case PropertyKind::Integer:
      return static_cast<std::int32_t>(value.GetLong());
    case PropertyKind::Boolean:
      return value.GetBool();
    case PropertyKind::Enumeration:
      return EnumerationValue{static_cast<std::int32_t>(value.GetLong())};
    case PropertyKind::TextList: {
      TStringList list;
      for (const wxString& item : value.GetArrayString()) list.Add(FromWx(item));
      return list;
    }
    case PropertyKind::Text:
      break;
  }
  return FromWx(value.GetString());
}

}  // namespace

PropertiesPanel::PropertiesPanel(wxWindow* parent) : wxPanel(parent) {
  grid_ = new wxPropertyGrid(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                             wxPG_DEFAULT_STYLE | wxPG_TOOLTIPS | wxPG_SPLITTER_AUTO_CENTER);
  grid_->SetExtraStyle(wxPG_EX_HELP_AS_TOOLTIPS);
  grid_->SetName("properties");
  SetAccessibleName(*grid_, "Properties of the selected action");
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(MakeCaption(this, "Properties"), wxSizerFlags().Expand());
  column->Add(grid_, wxSizerFlags(1).Expand());
  SetSizer(column);
  grid_->Bind(wxEVT_PG_CHANGING, &PropertiesPanel::Edit, this);
  // Not before the grid is done with the row: it is made anew.
  grid_->Bind(wxEVT_PG_CHANGED, [this](wxPropertyGridEvent&) {
    if (OnEdited) CallAfter([this] { OnEdited(); });
  });
  Bind(wxEVT_CHAR_HOOK, &PropertiesPanel::OnKey, this);
  grid_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Press(); });
}

void PropertiesPanel::ShowAction(int index, TQXAction* action, const Catalogue& catalogue) {
  const wxPGProperty* selected = grid_->GetSelection();
  const wxString name = selected == nullptr ? wxString() : selected->GetName();
  const wxWindowUpdateLocker still(grid_);
  index_ = index;
  grid_->Clear();
  shown_.clear();
  if (action != nullptr) {
    for (const PropertyGroup& group : GroupsOf(*action, catalogue)) {
      wxPGProperty* heading =
          grid_->Append(new wxPropertyCategory(ToWx(group.caption), "[" + ToWx(group.caption) + "]"));
      for (const ShownProperty& shown : group.properties) {
        wxPGProperty* row = grid_->AppendIn(heading, MakeRow(shown, shown.property->get(*action)));
        shown_[row] = shown;
        if (!shown.help.empty()) row->SetHelpString(ToWx(shown.help));
        if (shown.opensPages) {
          GiveButton(*row, shown.property->kind);
          row->ChangeFlag(wxPG_PROP_ACTIVE_BTN, true);  // of a value that can only be looked at, too
        }
        if (shown.property->storage == PropertyStorage::Secret) row->SetAttribute(wxPG_STRING_PASSWORD, true);
        if (shown.readOnly) row->ChangeFlag(wxPG_PROP_READONLY, true);
      }
    }
  }
  FitCaptions();
  if (wxPGProperty* row = name.empty() ? nullptr : grid_->GetPropertyByName(name)) grid_->SelectProperty(row);
}

// A value that is refused stays in its editor, and the reason is shown.
void PropertiesPanel::Edit(wxPropertyGridEvent& event) {
  const auto found = shown_.find(event.GetProperty());
  if (found == shown_.end() || !OnEdit) return;
  try {
    const PublishedProperty& property = *found->second.property;
    OnEdit(index_, property, ValueOf(property, event.GetValue()));
  } catch (const std::exception& fault) {
    event.Veto();
    event.SetValidationFailureBehavior(wxPG_VFB_STAY_IN_PROPERTY | wxPG_VFB_SHOW_MESSAGEBOX);
    event.SetValidationFailureMessage(ToWx(fault.what()));
  }
}

// The key Tab leads on, to the next part of the window: within the grid the arrows lead.
void PropertiesPanel::OnKey(wxKeyEvent& event) {
  if (event.GetKeyCode() != WXK_TAB || event.ControlDown() || event.AltDown()) return event.Skip();
  if (Commit() && OnLeave) OnLeave(!event.ShiftDown());
}

// Other buttons are the toolkit's own, for lists and long texts.
void PropertiesPanel::Press() {
  const auto found = shown_.find(grid_->GetSelection());
  if (found == shown_.end() || !found->second.opensPages || !OnOpenPages) return;
  CallAfter([this, property = found->second.property] { OnOpenPages(*property); });
}

}  // namespace qx::desktop
