#include "host/desktop/ButtonEdit.h"

#include <wx/sizer.h>

#include "host/desktop/Accessible.h"
#include "host/desktop/Pictures.h"
#include "host/desktop/TextField.h"
#include "host/desktop/WxText.h"

namespace qx::desktop {
namespace {

wxString NameOf(const TEditButton& button) {
  if (!button.hint.empty()) return ToWx(button.hint);
  return button.picture == TEditButton::Picture::Folder ? "Browse" : "Refresh";
}

}  // namespace

ButtonEdit::ButtonEdit(wxWindow* parent, const TButtonEdit& model) : wxPanel(parent) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  text_ = MakeTextField(*this, model);
  row->Add(text_, wxSizerFlags(1).CenterVertical());
  for (const TEditButton& button : model.buttons) {
    auto* pressed = new wxBitmapButton(this, wxID_ANY, PictureOf(button.picture, *this), wxDefaultPosition,
                                       wxDefaultSize, wxBU_AUTODRAW);
    if (!button.hint.empty()) pressed->SetToolTip(ToWx(button.hint));
    SetAccessibleName(*pressed, NameOf(button));
    row->Add(pressed, wxSizerFlags().Expand().Border(wxLEFT, GetCharWidth() / 3));
    buttons_.push_back(pressed);
  }
  SetSizer(row);
  Bind(wxEVT_SYS_COLOUR_CHANGED, [this, &model](wxSysColourChangedEvent& event) {
    for (std::size_t i = 0; i < buttons_.size(); ++i)
      buttons_[i]->SetBitmapLabel(PictureOf(model.buttons[i].picture, *this));
    event.Skip();
  });
}

}  // namespace qx::desktop
