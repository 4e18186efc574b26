#include "host/desktop/window/LineList.h"

#include <wx/clipbrd.h>
#include <wx/settings.h>

#include <algorithm>
#include <utility>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/FaultColour.h"
#include "host/desktop/views/Pictures.h"

namespace qx::desktop {
namespace {

// Wider lines are cut by the list, not by the text that is copied.
constexpr std::size_t kWidestLine = 1000;
constexpr std::size_t kMostMeasured = 200;

wxColour ByTheme(const char* light, const char* dark) { return wxColour(IsDark() ? dark : light); }

std::array<wxItemAttr, 8> MakeLooks(const wxFont& font) {
  const wxColour text = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT);
  const wxColour paper;  // the list's own
  const auto look = [&](const wxColour& ink, const wxColour& ground, const wxFont& face) {
    wxItemAttr attribute;
    attribute.SetTextColour(ink);
    if (ground.IsOk()) attribute.SetBackgroundColour(ground);
    attribute.SetFont(face);
    return attribute;
  };
  return {look(text, paper, font),
          look(text, paper, font.Bold()),
          look(GoodColour(), paper, font.Bold()),
          look(WarningColour(), paper, font),
          look(ErrorColour(), paper, font.Bold()),
          look(ByTheme("#0b4f1c", "#c3f0cb"), ByTheme("#e2f5e6", "#1d3a24"), font),
          look(ByTheme("#7a1010", "#ffd0cc"), ByTheme("#fbe4e3", "#472020"), font),
          look(ByTheme("#1f4f8f", "#9cc4f5"), paper, font)};
}

}  // namespace

wxColour ErrorColour() { return FaultColour(); }
wxColour GoodColour() { return ByTheme("#1a7a2e", "#6fd083"); }
wxColour WarningColour() { return ByTheme("#8a5a00", "#e6b450"); }

LineList::LineList(wxWindow* parent, const wxString& name, const wxString& accessibleName)
    : wxListView(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxLC_REPORT | wxLC_VIRTUAL | wxLC_NO_HEADER) {
  SetName(name);
  SetAccessibleName(*this, accessibleName);
  // Where the toolkit draws lists itself, the keyboard is in a window inside this one.
  for (wxWindow* inner : GetChildren()) SetAccessibleName(*inner, accessibleName);
  const wxFont font(wxFontInfo(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT).GetPointSize())
                        .Family(wxFONTFAMILY_TELETYPE));
  SetFont(font);
  looks_ = MakeLooks(font);
  AppendColumn(accessibleName);
  Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    event.Skip();
    FitColumn();
    StayAtEnd();
  });
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
    if (event.ControlDown() && event.GetKeyCode() == 'C')
      CopySelected();
    else
      event.Skip();
  });
}

// Whoever read the last line goes on reading it in a smaller list.
void LineList::StayAtEnd() {
  const int count = GetItemCount();
  const bool wasAtEnd = count > 0 && GetTopItem() + std::exchange(page_, GetCountPerPage()) >= count - 1;
  if (!wasAtEnd) return;
  CallAfter([this] {
    if (GetItemCount() > 0) EnsureVisible(GetItemCount() - 1);
  });
}

// As wide as the list, so that colours reach its edge, or as the widest line.
void LineList::FitColumn() {
  const int width = std::max(widest_, GetClientSize().x);
  if (GetColumnWidth(0) != width) SetColumnWidth(0, width);
}

// Only the newest of many new lines are measured: a bar that is a little short costs less than all of them.
void LineList::Widen(std::size_t from, std::size_t to) {
  from = std::max(from, to - std::min(to, kMostMeasured));
  std::size_t longest = 0;
  for (std::size_t line = from; line < to; ++line)
    longest = std::max(longest, std::min(LineText(static_cast<long>(line)).length(), kWidestLine));
  const int width = (static_cast<int>(longest) + 6) * GetCharWidth();
  if (width <= widest_) return;
  widest_ = width;
  FitColumn();
}

void LineList::SetLineCount(std::size_t count) {
  const long before = GetItemCount();
  const long now = static_cast<long>(count);
  if (now != before) SetItemCount(now);
  if (now > 0) Widen(std::min<std::size_t>(static_cast<std::size_t>(before), count), count);
  Refresh();
}

bool LineList::IsAtEnd() const { return GetTopItem() + GetCountPerPage() >= GetItemCount() - 1; }

void LineList::SetTop(long line) {
  wxRect place;
  if (line < 0 || line >= GetItemCount() || GetTopItem() == line) return;
  EnsureVisible(line);  // the list knows by now how far it can be scrolled
  if (GetItemRect(line, place) && place.height > 0)
    ScrollList(0, static_cast<int>(line - GetTopItem()) * place.height);
}

void LineList::GoTo(long line) {
  if (line < 0 || line >= GetItemCount()) return;
  DeselectAll();
  Select(line);
  Focus(line);
  EnsureVisible(line);
}

wxString LineList::SelectedText() const {
  wxString text;
  for (long line = GetFirstSelected(); line >= 0; line = GetNextSelected(line)) text += LineText(line) + "\n";
  if (!text.empty()) return text;
  for (long line = 0; line < GetItemCount(); ++line) text += LineText(line) + "\n";
  return text;
}

void LineList::CopySelected() const {
  wxClipboardLocker lock;
  if (!lock) return;
  wxTheClipboard->SetData(new wxTextDataObject(SelectedText()));
  wxTheClipboard->Flush();  // stays when the program has ended
}

wxString LineList::OnGetItemText(long item, long) const { return LineText(item).Left(kWidestLine); }

wxItemAttr* LineList::OnGetItemAttr(long item) const {
  return &looks_.at(static_cast<std::size_t>(Look(item)));
}

}  // namespace qx::desktop
