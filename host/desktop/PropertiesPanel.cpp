#include "host/desktop/PropertiesPanel.h"

#include <wx/msgdlg.h>
#include <wx/propgrid/advprops.h>
#include <wx/sizer.h>

#include "host/desktop/Accessible.h"
#include "host/desktop/Caption.h"
#include "host/desktop/WxText.h"

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

wxPGProperty* MakeText(const wxString& caption, const wxString& name, const wxString& text) {
  if (text.Contains("\n")) return new wxLongStringProperty(caption, name, text);
  return new wxStringProperty(caption, name, text);
}

wxPGProperty* MakeRow(const ShownProperty& shown, const PropertyValue& value) {
  const PublishedProperty& property = *shown.property;
  const wxString caption = ToWx(shown.caption);
  const wxString name = ToWx(property.name);
  switch (property.kind) {
    case PropertyKind::Integer:
      return new wxIntProperty(caption, name, std::get<std::int32_t>(value));
    case PropertyKind::Boolean: {
      auto* row = new wxBoolProperty(caption, name, std::get<bool>(value));
      row->SetAttribute(wxPG_BOOL_USE_CHECKBOX, true);
      return row;
    }
    case PropertyKind::Enumeration:
      return MakeEnumeration(caption, name, property, std::get<EnumerationValue>(value).ordinal);
    case PropertyKind::TextList:
      return new wxArrayStringProperty(caption, name, ItemsOf(std::get<TStringList>(value)));
    case PropertyKind::Text:
      break;
  }
  return MakeText(caption, name, ToWx(std::get<std::string>(value)));
}

// The button beside the value opens the property pages.
void GiveButton(wxPGProperty& row, PropertyKind kind) {
  if (kind == PropertyKind::Enumeration)
    row.SetEditor(wxPGEditor_ChoiceAndButton);
  else if (kind == PropertyKind::Text || kind == PropertyKind::Integer)
    row.SetEditor(wxPGEditor_TextCtrlAndButton);
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
  grid_ =
      new wxPropertyGrid(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                         wxPG_DEFAULT_STYLE | wxPG_TOOLTIPS | wxPG_SPLITTER_AUTO_CENTER);
  grid_->SetExtraStyle(wxPG_EX_HELP_AS_TOOLTIPS);
  grid_->SetName("properties");
  SetAccessibleName(*grid_, "Properties of the selected action");
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(MakeCaption(this, "Properties"), wxSizerFlags().Expand());
  column->Add(grid_, wxSizerFlags(1).Expand());
  SetSizer(column);
  grid_->Bind(wxEVT_PG_CHANGED, &PropertiesPanel::Edit, this);
  grid_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Press(); });
}

void PropertiesPanel::Show(TQXAction* action, const Catalogue& catalogue) {
  const wxPGProperty* selected = grid_->GetSelection();
  const wxString name = selected == nullptr ? wxString() : selected->GetName();
  grid_->Freeze();
  grid_->Clear();
  shown_.clear();
  if (action != nullptr) {
    for (const PropertyGroup& group : GroupsOf(*action, catalogue)) {
      wxPGProperty* heading =
          grid_->Append(new wxPropertyCategory(ToWx(group.caption), "[" + ToWx(group.caption) + "]"));
      for (const ShownProperty& shown : group.properties) {
        wxPGProperty* row = grid_->AppendIn(heading, MakeRow(shown, shown.property->get(*action)));
        shown_[row] = shown.property;
        if (!shown.help.empty()) row->SetHelpString(ToWx(shown.help));
        if (shown.opensPages) GiveButton(*row, shown.property->kind);
        if (shown.property->storage == PropertyStorage::Secret) row->SetAttribute(wxPG_STRING_PASSWORD, true);
        if (shown.readOnly) row->ChangeFlag(wxPG_PROP_READONLY, true);
      }
    }
  }
  FitCaptions();
  if (!name.empty()) grid_->SelectProperty(name);
  grid_->Thaw();
}

void PropertiesPanel::Edit(wxPropertyGridEvent& event) {
  const auto found = shown_.find(event.GetProperty());
  if (found == shown_.end() || !OnEdit) return;
  try {
    OnEdit(*found->second, ValueOf(*found->second, event.GetProperty()->GetValue()));
  } catch (const std::exception& fault) {
    CallAfter([this, text = ToWx(fault.what())] {
      wxMessageBox(text, "The property was not set", wxOK | wxICON_ERROR, this);
    });
  }
  // Not before the grid is done with the row: it is made anew.
  if (OnEdited) CallAfter([this] { OnEdited(); });
}

void PropertiesPanel::Press() {
  const auto found = shown_.find(grid_->GetSelection());
  if (found == shown_.end() || !OnOpenPages) return;
  CallAfter([this, property = found->second] { OnOpenPages(*property); });
}

}  // namespace qx::desktop
