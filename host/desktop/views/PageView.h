// A property page on the screen: the widgets of its controls in rows and columns, scrolled where the window
// is too small for them.
#pragma once

#include <wx/scrolwin.h>

#include "host/desktop/views/Binding.h"
#include "plugin/Qxframe.h"

namespace qx::desktop {

class PageView final : public wxScrolledWindow {
 public:
  // Frame and binding outlive it. Nothing is shown yet of what the controls hold: Binding::Show does that.
  PageView(wxWindow* parent, TFrame& frame, Binding& binding);

  // Puts the keys where the Tab key begins; in vain when nothing on the page is enabled.
  void FocusFirst();

  // Lays the page out anew: captions have other lengths.
  void Rearrange();
};

}  // namespace qx::desktop
