// The window of ShowPagesDialog: a list of the pages, the page in front, and the buttons. The view driver
// opens it without waiting for it.
#pragma once

#include <wx/dialog.h>
#include <wx/listbox.h>
#include <wx/simplebook.h>
#include <wx/stattext.h>

#include <vector>

#include "host/desktop/views/Advice.h"
#include "host/desktop/views/Binding.h"
#include "host/desktop/views/PageView.h"
#include "host/desktop/views/PagesDialog.h"

namespace qx::desktop {

class PagesWindow final : public wxDialog {
 public:
  // Dialog and texts outlive it.
  PagesWindow(wxWindow* parent, PageDialog& pages, int page, const PagesDialogTexts& texts);

  ~PagesWindow() override;
  PagesWindow(const PagesWindow&) = delete;
  PagesWindow& operator=(const PagesWindow&) = delete;

  // False when the pages could not write the last time they were asked to.
  bool IsWhole() const { return isWhole_; }
  Binding& Bound() { return binding_; }
  PageView& Page(int index) { return *views_[static_cast<std::size_t>(index)]; }
  void GoTo(int page);
  int PageInFront() const { return book_->GetSelection(); }
  // The list of the pages; null when there is one page only.
  wxListBox* PageList() { return list_; }

 private:
  void MakePages();
  void MakeButtons(wxSizer& column);
  // False when a page, or who saves, has raised; it is shown then.
  bool Write();
  void ShowAdvice();
  void OnKey(wxKeyEvent& event);
  void ShowHelp();

  PageDialog& pages_;
  const PagesDialogTexts& texts_;
  Binding binding_;
  Advice advice_;
  wxListBox* list_ = nullptr;
  wxSimplebook* book_ = nullptr;
  wxWindow* apply_ = nullptr;
  wxStaticText* wrong_ = nullptr;  // what is wrong on the page in front; null where no page tells
  std::vector<PageView*> views_;
  bool isWhole_ = true;
};

}  // namespace qx::desktop
