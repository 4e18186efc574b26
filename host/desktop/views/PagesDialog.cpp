#include "host/desktop/views/PagesDialog.h"

#include "host/desktop/views/PagesWindow.h"

namespace qx::desktop {

bool ShowPagesDialog(wxWindow* parent, PageDialog& pages, int page, const PagesDialogTexts& texts) {
  PagesWindow window(parent, pages, page, texts);
  window.ShowModal();
  return window.IsWhole();
}

}  // namespace qx::desktop
