// The system sends the wheel to what the pointer is over.
#include <wx/scrolwin.h>
#include <wx/window.h>

#include "host/desktop/views/Wheel.h"

namespace qx::desktop {

void LeaveWheelToPage(wxWindow& control) {
  control.Bind(wxEVT_MOUSEWHEEL, [&control](wxMouseEvent& event) {
    if (control.HasFocus() || control.IsDescendant(wxWindow::FindFocus())) {
      event.Skip();
      return;
    }
    for (wxWindow* page = control.GetParent(); page != nullptr && !page->IsTopLevel();
         page = page->GetParent()) {
      if (dynamic_cast<wxScrolledWindow*>(page) == nullptr) continue;
      page->ProcessWindowEvent(event);
      return;
    }
  });
}

}  // namespace qx::desktop
