#include "host/desktop/views/PagesWindow.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/display.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statline.h>

#include <algorithm>
#include <exception>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/ControlViews.h"
#include "host/desktop/views/FaultColour.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

// As large as its largest page, but for a part of the screen that stays free.
wxSize SizeOnScreen(const wxWindow& window, wxSize wanted) {
  const int number = wxDisplay::GetFromWindow(&window);
  const wxDisplay display(number == wxNOT_FOUND ? 0u : static_cast<unsigned int>(number));
  const wxSize area = display.GetClientArea().GetSize();
  wanted.DecTo(wxSize(area.GetWidth() * 9 / 10, area.GetHeight() * 9 / 10));
  return wanted;
}

}  // namespace

PagesWindow::PagesWindow(wxWindow* parent, PageDialog& pages, int page, const PagesDialogTexts& texts)
    : wxDialog(parent, wxID_ANY, texts.title, wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      pages_(pages),
      texts_(texts),
      advice_([this](Question kind, const std::string& text) { return texts_.ask(this, kind, text); },
              binding_) {
  auto* column = new wxBoxSizer(wxVERTICAL);
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  const int margin = GetCharHeight() * 3 / 4;
  if (pages_.Count() > 1) {
    list_ = new wxListBox(this, wxID_ANY);
    list_->SetName("Pages");
    SetAccessibleName(*list_, "Pages");
    for (int i = 0; i < pages_.Count(); ++i) list_->Append(ToWx(pages_.Name(i)));
    list_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent& event) { GoTo(event.GetSelection()); });
    row->Add(list_, wxSizerFlags().Expand().Border(wxLEFT | wxTOP, margin));
  }
  book_ = new wxSimplebook(this);
  MakePages();
  row->Add(book_, wxSizerFlags(1).Expand());
  column->Add(row, wxSizerFlags(1).Expand());
  if (advice_.IsGiven()) {
    wrong_ = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_ELLIPSIZE_MIDDLE);
    wrong_->SetName("wrong");
    wrong_->SetForegroundColour(FaultColour());
    wrong_->SetMinSize({1, wrong_->GetCharHeight() * 5 / 4});
    column->Add(wrong_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, margin));
  }
  column->Add(new wxStaticLine(this), wxSizerFlags().Expand());
  MakeButtons(*column);
  SetSizer(column);
  SetClientSize(SizeOnScreen(*this, column->CalcMin()));
  SetMinSize(wxSize(40 * GetCharWidth(), 12 * GetCharHeight()));
  CentreOnParent();
  GoTo(page);
  SetName("pages");
  Page(PageInFront()).FocusFirst();
  Bind(wxEVT_CHAR_HOOK, &PagesWindow::OnKey, this);
}

// Widgets go while what they report to is there, and what they report as they go reaches nobody.
PagesWindow::~PagesWindow() {
  binding_.Clear();
  DestroyChildren();
}

void PagesWindow::MakePages() {
  // Where the screen allows, wide enough for the paths that are typed into pages.
  wxSize largest(76 * GetCharWidth(), 0);
  for (int i = 0; i < pages_.Count(); ++i) {
    auto* view = new PageView(book_, pages_.Page(i), binding_);
    views_.push_back(view);
    book_->AddPage(view, ToWx(pages_.Name(i)));
  }
  binding_.Show();
  for (const PageView* view : views_) largest.IncTo(view->GetSizer()->CalcMin());
  // What stands at the side of a page that is scrolled must not cover it.
  largest.IncBy(wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this), 0);
  book_->SetInitialSize(largest);
  binding_.resized = [this] {
    for (PageView* view : views_) view->Rearrange();
  };
  binding_.edited = [this] { apply_->Enable(); };
  if (!texts_.ask) return;
  for (int i = 0; i < pages_.Count(); ++i)
    advice_.Watch(pages_.Page(i), *views_[static_cast<std::size_t>(i)]);
  binding_.shown = [this] { ShowAdvice(); };
}

void PagesWindow::MakeButtons(wxSizer& column) {
  auto* buttons = new wxStdDialogButtonSizer;
  auto* confirm = new wxButton(this, wxID_OK);
  buttons->AddButton(confirm);
  buttons->AddButton(new wxButton(this, wxID_CANCEL));
  apply_ = new wxButton(this, wxID_APPLY);
  apply_->Disable();
  buttons->AddButton(static_cast<wxButton*>(apply_));
  if (texts_.help) buttons->AddButton(new wxButton(this, wxID_HELP));
  buttons->Realize();
  confirm->SetDefault();
  column.Add(buttons, wxSizerFlags().Expand().Border(wxALL, GetCharHeight() / 2));
  Bind(
      wxEVT_BUTTON,
      [this](wxCommandEvent& event) {
        if (Write()) event.Skip();  // the dialog closes
      },
      wxID_OK);
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { Write(); }, wxID_APPLY);
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { ShowHelp(); }, wxID_HELP);
}

void PagesWindow::GoTo(int page) {
  if (page < 0 || page >= pages_.Count()) return;
  wxWindow* focus = FindFocus();
  const bool hidesFocus = page != PageInFront() && (focus == nullptr || book_->IsDescendant(focus));
  book_->ChangeSelection(static_cast<size_t>(page));
  if (list_ != nullptr) list_->SetSelection(page);
  if (hidesFocus) Page(page).FocusFirst();
  try {
    pages_.Activate(page);
  } catch (const std::exception& raised) {
    binding_.fault(raised.what());
  }
  binding_.Show();
}

void PagesWindow::ShowAdvice() {
  advice_.Mark();
  if (wrong_ == nullptr || PageInFront() < 0) return;
  const wxString text = ToWx(advice_.WrongOn(pages_.Page(PageInFront())));
  if (wrong_->GetLabelText() == text) return;
  wrong_->SetLabelText(text);
  wrong_->SetToolTip(text);
}

bool PagesWindow::Write() {
  FinishEditing(*book_);
  if (!advice_.MayWrite()) return false;
  isWhole_ = false;
  try {
    pages_.Write();
    if (texts_.written) texts_.written();
    isWhole_ = true;
  } catch (const std::exception& raised) {
    binding_.Show();
    binding_.fault(raised.what());
    return false;
  }
  binding_.Show();  // a page may have tidied up what it wrote
  // A disabled widget would take the focus along, and with it every key.
  if (apply_->HasFocus()) FindWindow(wxID_OK)->SetFocus();
  apply_->Disable();
  return true;
}

// Ctrl with Page Up and Page Down turns the pages, as in any dialog of many, wherever the focus is; F1 helps.
void PagesWindow::OnKey(wxKeyEvent& event) {
  const int key = event.GetKeyCode();
  if (key == WXK_F1 && !event.HasAnyModifiers()) {
    ShowHelp();
    return;
  }
  const bool pages = event.ControlDown() && (key == WXK_PAGEUP || key == WXK_PAGEDOWN);
  if (!pages) {
    event.Skip();
    return;
  }
  const int count = pages_.Count();
  GoTo((PageInFront() + (key == WXK_PAGEUP ? count - 1 : 1)) % count);
}

void PagesWindow::ShowHelp() {
  if (texts_.help) texts_.help(this, pages_.Page(PageInFront()).GetHelpContext());
}

}  // namespace qx::desktop
