// A text with buttons inside its frame: one widget of a page.
#pragma once

#include <wx/bmpbuttn.h>
#include <wx/panel.h>
#include <wx/textctrl.h>

#include <vector>

#include "plugin/Qxcontrols.h"

namespace qx::desktop {

class ButtonEdit final : public wxPanel {
 public:
  ButtonEdit(wxWindow* parent, const TButtonEdit& model);
  wxTextCtrl& Text() const { return *text_; }
  const std::vector<wxBitmapButton*>& Buttons() const { return buttons_; }

 private:
  wxTextCtrl* text_;
  std::vector<wxBitmapButton*> buttons_;
};

}  // namespace qx::desktop
