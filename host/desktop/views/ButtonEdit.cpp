#include "host/desktop/views/ButtonEdit.h"

#include <wx/sizer.h>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Pictures.h"
#include "host/desktop/views/TextField.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

wxString NameOf(const TEditButton& button) {
  if (!button.hint.empty()) return ToWx(button.hint);
  return button.picture == TEditButton::Picture::Folder ? "Browse" : "Refresh";
}

// As high as the window's text.
wxBitmapBundle PictureOn(const TEditButton& button, const wxWindow& window) {
  const bool browses = button.picture == TEditButton::Picture::Folder;
  return PictureOf(browses ? Picture::Browse : Picture::Refresh, window.GetCharHeight());
}

}  // namespace

ButtonEdit::ButtonEdit(wxWindow* parent, const TButtonEdit& model) : wxPanel(parent) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  text_ = MakeTextField(*this, model);
  row->Add(text_, wxSizerFlags(1).CenterVertical());
  for (const TEditButton& button : model.buttons) {
    auto* pressed = new wxBitmapButton(this, wxID_ANY, PictureOn(button, *this), wxDefaultPosition,
                                       wxDefaultSize, wxBU_AUTODRAW);
    if (!button.hint.empty()) pressed->SetToolTip(ToWx(button.hint));
    SetAccessibleName(*pressed, NameOf(button));
    row->Add(pressed, wxSizerFlags().Expand().Border(wxLEFT, GetCharWidth() / 3));
    buttons_.push_back(pressed);
  }
  SetSizer(row);
  Bind(wxEVT_SYS_COLOUR_CHANGED, [this, &model](wxSysColourChangedEvent& event) {
    for (std::size_t i = 0; i < buttons_.size(); ++i)
      buttons_[i]->SetBitmapLabel(PictureOn(model.buttons[i], *this));
    event.Skip();
  });
}

}  // namespace qx::desktop
