#include "host/desktop/window/LogPanel.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/sizer.h>
#include <wx/srchctrl.h>
#include <wx/stattext.h>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Caption.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/window/Counted.h"
#include "host/desktop/window/LineList.h"
#include "host/desktop/window/SaveDialog.h"

namespace qx::desktop {
namespace {

constexpr std::array kLeast{Severity::Plain, Severity::Warning, Severity::Error};  // by the choice's items

LineLook LookOf(Severity severity) {
  switch (severity) {
    case Severity::Heading:
      return LineLook::Heading;
    case Severity::Good:
      return LineLook::Good;
    case Severity::Warning:
      return LineLook::Warning;
    case Severity::Error:
      return LineLook::Error;
    case Severity::Plain:
      break;
  }
  return LineLook::Plain;
}

}  // namespace

class LogList final : public LineList {
 public:
  LogList(wxWindow* parent, LogStore& log) : LineList(parent, "log", "Log of the build"), log_(log) {
    Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent& event) { Toggle(event.GetIndex()); });
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
      if (!TakeKey(event)) event.Skip();
    });
  }

  // Where the reader is, in lines that are known again after a change.
  struct Place {
    std::size_t top = 0;
    std::optional<std::size_t> focused;
    std::vector<std::size_t> selected;
    bool isAtEnd = true;
  };
  Place Held() const {
    Place place;
    if (GetItemCount() == 0) return place;
    const auto number = [this](long line) { return log_.NumberOf(static_cast<std::size_t>(line)); };
    place.isAtEnd = IsAtEnd();
    place.top = number(std::max(0L, GetTopItem()));
    if (Focused() >= 0) place.focused = number(Focused());
    place.selected = SelectedNumbers();
    return place;
  }
  // Shows the rows that there are now. What was read, focused or selected stays so until it is gone; whoever
  // was at the end is there again when the change follows it.
  void ShowRows(const Place& place, bool follows) {
    const auto count = static_cast<long>(log_.RowCount());
    if (count == 0) DeselectAll();
    SetLineCount(log_.RowCount());
    if (count == 0) return;
    const auto nearest = [&](std::size_t number) {
      return std::min(static_cast<long>(log_.RowFrom(number)), count - 1);
    };
    if (SelectedNumbers() != place.selected) SelectNumbers(place.selected);
    if (place.focused) SetItemState(nearest(*place.focused), wxLIST_STATE_FOCUSED, wxLIST_STATE_FOCUSED);
    if (follows && place.isAtEnd)
      EnsureVisible(count - 1);
    else
      SetTop(nearest(place.top));
  }

 private:
  std::vector<std::size_t> SelectedNumbers() const {
    std::vector<std::size_t> numbers;
    long line = GetSelectedItemCount() == 0 ? -1 : GetFirstSelected();
    for (; line >= 0; line = GetNextSelected(line))
      numbers.push_back(log_.NumberOf(static_cast<std::size_t>(line)));
    return numbers;
  }
  // Those of them that are there.
  void SelectNumbers(const std::vector<std::size_t>& numbers) {
    DeselectAll();
    for (const std::size_t number : numbers) {
      const std::size_t row = log_.RowFrom(number);
      if (row < log_.RowCount() && log_.NumberOf(row) == number) Select(static_cast<long>(row));
    }
  }
  wxString LineText(long line) const override {
    const LogRow& row = log_.Row(static_cast<std::size_t>(line));
    return Marker(line) + ToWx(row.text);
  }
  LineLook Look(long line) const override {
    return LookOf(log_.Row(static_cast<std::size_t>(line)).severity);
  }
  // In front of a heading with details: whether they are shown.
  wxString Marker(long line) const {
    const LogRow& row = log_.Row(static_cast<std::size_t>(line));
    if (row.isDetail) return "    ";
    if (!row.hasDetails) return "";
    return log_.IsOpen(static_cast<std::size_t>(line)) ? "[-] " : "[+] ";
  }
  void Toggle(long line) {
    if (line < 0) return;
    const auto row = static_cast<std::size_t>(line);
    if (log_.Row(row).hasDetails) SetOpen(line, !log_.IsOpen(row));
  }
  void SetOpen(long line, bool open) {
    const Place place = Held();
    log_.SetOpen(static_cast<std::size_t>(line), open);
    ShowRows(place, false);
  }
  bool TakeKey(const wxKeyEvent& event) {
    const long line = Focused();
    const bool opens = event.GetKeyCode() == WXK_RIGHT;
    if (line < 0 || event.HasModifiers() || (!opens && event.GetKeyCode() != WXK_LEFT)) return false;
    const auto row = static_cast<std::size_t>(line);
    if (!log_.Row(row).hasDetails || log_.IsOpen(row) == opens) return false;
    SetOpen(line, opens);
    return true;
  }

  LogStore& log_;
};

LogPanel::LogPanel(wxWindow* parent, LogStore& log) : wxPanel(parent), log_(log) {
  MakeBar();
  list_ = new LogList(this, log);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(bar_, wxSizerFlags().Expand());
  column->Add(list_, wxSizerFlags(1).Expand());
  SetSizer(column);
  // Room for the folded bar and a few lines, which the sash above leaves.
  bar_->SetOrientation(wxVERTICAL);
  SetMinSize(wxSize(-1, bar_->GetMinSize().y + 2 * GetCharHeight()));
  Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    FoldBar(event.GetSize().x);
    event.Skip();
  });
}

// Two halves side by side or, when that is too narrow for comfort, one above the other.
void LogPanel::MakeBar() {
  const wxSizerFlags flags = wxSizerFlags().CentreVertical().Border(wxALL, FromDIP(3));
  auto* heading = new wxBoxSizer(wxHORIZONTAL);
  heading->Add(MakeCaption(this, "Log"), wxSizerFlags().CentreVertical());
  counts_ = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                             wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
  counts_->SetMinSize(wxSize(12 * GetCharWidth(), -1));
  counts_->SetName("logCounts");
  heading->Add(counts_, wxSizerFlags(1).CentreVertical().Border(wxLEFT));
  auto* copy = new wxButton(this, wxID_ANY, "&Copy", wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
  copy->SetName("logCopy");
  heading->Add(copy, flags);
  auto* save = new wxButton(this, wxID_ANY, "Sa&ve log...", wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
  save->SetName("logSave");
  heading->Add(save, flags);

  auto* fields = new wxBoxSizer(wxHORIZONTAL);
  const wxSizerFlags wide = wxSizerFlags(1).CentreVertical().Border(wxALL, FromDIP(3));
  const wxSize least(8 * GetCharWidth(), -1);
  find_ = new wxSearchCtrl(this, wxID_ANY, "", wxDefaultPosition, least, wxTE_PROCESS_ENTER);
  find_->SetName("logFind");
  find_->SetDescriptiveText("Find (Ctrl+F)");
  SetAccessibleName(*find_, "Find in the log");
  fields->Add(find_, wide);

  least_ = new wxChoice(this, wxID_ANY);
  for (const char* item : {"Everything", "Warnings and errors", "Errors"}) least_->Append(item);
  least_->SetSelection(0);
  least_->SetName("logLeast");
  SetAccessibleName(*least_, "Lines shown in the log");
  fields->Add(least_, flags);

  filter_ = new wxSearchCtrl(this, wxID_ANY, "", wxDefaultPosition, least);
  filter_->SetName("logFilter");
  filter_->SetDescriptiveText("Only lines with...");
  SetAccessibleName(*filter_, "Show only lines of the log with this text");
  fields->Add(filter_, wide);

  bar_ = new wxBoxSizer(wxHORIZONTAL);
  bar_->Add(heading, wxSizerFlags(1).Expand());
  bar_->Add(fields, wxSizerFlags(1).Expand());
  copy->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Copy(); });
  save->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Save(); });
  BindFields();
}

// The widgets' least widths are for a narrow window: beside each other they have these characters more.
void LogPanel::FoldBar(int width) {
  constexpr int kComfort = 50;
  int needed = kComfort * GetCharWidth();
  for (const wxSizerItem* half : bar_->GetChildren()) needed += half->GetSizer()->GetMinSize().x;
  bar_->SetOrientation(width >= needed ? wxHORIZONTAL : wxVERTICAL);
}

void LogPanel::BindFields() {
  find_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) {
    found_.clear();
    ShowCounts();
  });
  find_->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { FindNext(true); });
  least_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { Filter(); });
  filter_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Filter(); });
}

void LogPanel::ShowCounts() {
  wxString text = Counted(log_.LineCount(), "line", "lines");
  if (log_.ErrorCount() > 0) text += ", " + Counted(log_.ErrorCount(), "error", "errors");
  if (log_.WarningCount() > 0) text += ", " + Counted(log_.WarningCount(), "warning", "warnings");
  if (log_.DroppedCount() > 0)
    text += " (the last " + Number(LogStore::kDefaultKept) + " are shown, Save log keeps all)";
  const bool isFiltered = !filter_->IsEmpty() || least_->GetSelection() > 0;
  if (isFiltered && log_.RowCount() == 0) text = "No line passes the filter. " + text;
  if (!found_.empty()) text = found_ + ". " + text;
  if (log_.LineCount() == 0) text.clear();
  // First, because the end is cut in a narrow window.
  const wxString lost = ToWx(log_.FileError());
  if (!lost.empty()) text = "The log is not kept whole. " + lost + ". " + text;
  if (text == counts_->GetLabelText()) return;
  counts_->SetForegroundColour(lost.empty() ? wxColour() : ErrorColour());
  counts_->SetLabelText(text);
  if (text.empty())
    counts_->UnsetToolTip();
  else
    counts_->SetToolTip(text);  // all of it when it is cut
}

void LogPanel::Update() {
  const LogList::Place place = list_->Held();
  if (log_.Update()) list_->ShowRows(place, true);
  ShowCounts();  // lines that the filter hides are counted too
}

void LogPanel::Clear() {
  log_.Clear();
  found_.clear();
  list_->DeselectAll();
  list_->SetLineCount(0);
  ShowCounts();
}

void LogPanel::Filter() {
  const LogList::Place place = list_->Held();
  log_.SetFilter(FromWx(filter_->GetValue()), kLeast.at(static_cast<std::size_t>(least_->GetSelection())));
  list_->ShowRows(place, place.selected.empty());
  if (list_->GetSelectedItemCount() > 0) list_->EnsureVisible(list_->GetFirstSelected());
  ShowCounts();
}

void LogPanel::SetFocus() { list_->SetFocus(); }

void LogPanel::StartFind() {
  find_->SetFocus();
  find_->SelectAll();
}

void LogPanel::FindNext(bool forwards) {
  const std::string text = FromWx(find_->GetValue());
  if (text.empty()) return StartFind();
  const long focused = list_->Focused();
  const long from = forwards ? focused + 1 : focused < 0 ? -1 : focused - 1;
  const long row = log_.Find(text, from, forwards);
  if (row < 0) {
    wxBell();
    found_ = "Not found";
    return ShowCounts();
  }
  list_->GoTo(row);
  const LogStore::Hits hits = log_.CountHits(text, static_cast<std::size_t>(row));
  found_ = Number(hits.place) + " of " + Number(hits.count);
  ShowCounts();
}

void LogPanel::Copy() const { list_->CopySelected(); }

void LogPanel::Save() {
  SaveUnderAName({this, "Save the log", "build.log", "Logs (*.log;*.txt)|*.log;*.txt|All files|*.*",
                  "The log was not saved"},
                 [this](const std::string& file) { log_.SaveTo(file); });
}

}  // namespace qx::desktop
