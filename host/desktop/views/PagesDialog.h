// The dialog of property pages on the screen: every page of a PageDialog as widgets, with OK, Cancel, Apply
// and Help. All rules stay in the pages.
#pragma once

#include <wx/dialog.h>

#include <functional>

#include "host/desktop/views/Advice.h"
#include "host/pages/Pages.h"

namespace qx::desktop {

struct PagesDialogTexts {
  wxString title;
  // Called after the pages have written, by OK and by Apply: saves or records. What it raises is shown, and
  // the dialog stays open.
  std::function<void()> written;
  // Shows the help of the page's topic over the dialog, which is its parent; null: no Help button.
  std::function<void(wxWindow* parent, int helpContext)> help;
  // Asks the user over the dialog, which is its parent; null: nobody is there to be asked, and pages do what they
  // do without advice.
  std::function<bool(wxWindow* parent, Question kind, const std::string& text)> ask;
};

// Shows it and returns when it is closed; the page of `page` is in front. False when the user gave up after
// the pages could not write: some of them may have, and the caller puts back what they wrote.
bool ShowPagesDialog(wxWindow* parent, PageDialog& pages, int page, const PagesDialogTexts& texts);

}  // namespace qx::desktop
