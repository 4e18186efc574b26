#include "host/desktop/views/TextField.h"

#include <wx/textctrl.h>

#include "host/desktop/views/NativeText.h"

namespace qx::desktop {
namespace {

// The toolkit's own switch for this does not reach texts on every system.
class TextField final : public wxTextCtrl {
 public:
  TextField(wxWindow& parent, bool isTabStop, long style)
      : wxTextCtrl(&parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, style), isTabStop_(isTabStop) {}
  bool AcceptsFocusFromKeyboard() const override {
    return isTabStop_ && wxTextCtrl::AcceptsFocusFromKeyboard();
  }

 private:
  bool isTabStop_;
};

}  // namespace

wxTextCtrl* MakeTextField(wxWindow& parent, const TEdit& model) {
  const long style = (model.masked ? wxTE_PASSWORD : 0) | (model.rightAligned ? wxTE_RIGHT : wxTE_LEFT);
  auto* text = new TextField(parent, model.tabOrder >= 0, style);
  if (model.masked) SetMask(*text, '*');
  return text;
}

}  // namespace qx::desktop
