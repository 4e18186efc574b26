// The heading over a part of the window.
#pragma once

#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace qx::desktop {

inline wxSizer* MakeCaption(wxWindow* parent, const wxString& text) {
  auto* label = new wxStaticText(parent, wxID_ANY, text);
  label->SetFont(label->GetFont().Bold());
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(label, wxSizerFlags().Border(wxALL, wxSizerFlags::GetDefaultBorder()));
  return row;
}

}  // namespace qx::desktop
