#include "host/desktop/window/RunPanel.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/wrapsizer.h>

#include <utility>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Pictures.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/window/LineList.h"

namespace qx::desktop {
namespace {

constexpr int kSteps = 1000;  // of the bar
// More of them stand in the log alone.
constexpr std::size_t kMostLines = 12;

std::optional<Picture> PictureFor(StoryTone tone) {
  if (tone == StoryTone::Good) return Picture::Succeeded;
  if (tone == StoryTone::Bad) return Picture::Failed;
  return std::nullopt;
}

wxColour ColourFor(StoryTone tone) {
  if (tone == StoryTone::Good) return GoodColour();
  return tone == StoryTone::Bad ? ErrorColour() : wxColour();
}

}  // namespace

RunPanel::RunPanel(wxWindow* parent) : wxPanel(parent) {
  SetName("run");
  picture_ = new wxStaticBitmap(this, wxID_ANY, PictureOf(Picture::Succeeded));
  verdict_ = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                              wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
  verdict_->SetName("runVerdict");
  verdict_->SetFont(verdict_->GetFont().Bold());
  gauge_ = new wxGauge(this, wxID_ANY, kSteps, wxDefaultPosition,
                       wxSize(24 * GetCharWidth(), std::max(FromDIP(10), GetCharHeight() / 2)),
                       wxGA_HORIZONTAL | wxGA_SMOOTH);
  gauge_->SetName("runProgress");
  SetAccessibleName(*gauge_, "How far the build is");
  button_ = new wxButton(this, wxID_ANY, "");
  button_->SetName("runWay");
  lines_ = new wxPanel(this);
  lines_->SetName("runLines");
  lines_->SetSizer(new wxWrapSizer(wxHORIZONTAL, wxREMOVE_LEADING_SPACES));

  const wxSizerFlags flags = wxSizerFlags().CentreVertical().Border(wxRIGHT);
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(picture_, flags);
  row->Add(verdict_, wxSizerFlags(1).CentreVertical().Border(wxRIGHT));
  row->Add(gauge_, flags);
  row->Add(button_, flags);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(row, wxSizerFlags().Expand().Border(wxLEFT | wxTOP | wxBOTTOM));
  column->Add(lines_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
  SetSizer(column);
  Hide();
  button_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
    const std::function<void()> go = way_.go;
    if (go) CallAfter(go);
  });
  // How many rows the lines take depends on the width.
  Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    event.Skip();
    if (std::exchange(width_, event.GetSize().x) != event.GetSize().x) CallAfter([this] { Settle(); });
  });
}

void RunPanel::ShowProgress(const wxString& text, std::optional<double> done) {
  const bool isNew = !gauge_->IsShown() || !IsShown();
  if (done) {
    gauge_->SetValue(static_cast<int>(*done * kSteps));
  } else {
    gauge_->Pulse();
  }
  if (verdict_->GetLabelText() != text) verdict_->SetLabelText(text);
  if (!isNew) return;
  verdict_->SetForegroundColour(wxColour());
  way_ = {};
  picture_->Hide();
  button_->Hide();
  gauge_->Show();
  ShowLines({});
}

void RunPanel::ShowStory(const RunStory& story, Way way) {
  const std::optional<Picture> picture = PictureFor(story.tone);
  if (picture) picture_->SetBitmap(PictureOf(*picture));
  picture_->Show(picture.has_value());
  verdict_->SetForegroundColour(ColourFor(story.tone));
  verdict_->SetLabelText(ToWx(story.verdict));
  verdict_->SetToolTip(ToWx(story.verdict));
  gauge_->Hide();
  button_->SetLabel(way.caption);
  button_->Show(!way.caption.empty());
  way_ = std::move(way);
  ShowLines(story.lines);
}

void RunPanel::Clear() {
  lines_->DestroyChildren();
  Hide();
  if (OnHeight) OnHeight();
}

void RunPanel::ShowLines(const std::vector<SummaryLine>& lines) {
  lines_->DestroyChildren();
  std::size_t number = 0;
  const auto add = [&](const wxString& text, bool isBad) {
    auto* line = new wxStaticText(lines_, wxID_ANY, "");
    line->SetLabelText(text);
    line->SetName(wxString::Format("runLine%zu", number++));
    if (isBad) line->SetForegroundColour(ErrorColour());
    lines_->GetSizer()->Add(line, wxSizerFlags().Border(wxRIGHT, 2 * GetCharWidth()));
  };
  for (const SummaryLine& line : lines) {
    if (number == kMostLines) {
      add(wxString::Format("and %zu more in the log", lines.size() - number), false);
      break;
    }
    add(ToWx(line.text), line.isBad);
  }
  lines_->Show(!lines.empty());
  Show();
  Settle();
}

void RunPanel::Settle() {
  if (!IsShown()) return;
  Layout();
  // The rows that the lines take in the width that there is.
  lines_->GetSizer()->Layout();
  SetMinSize(wxSize(-1, GetSizer()->CalcMin().y));
  if (OnHeight) OnHeight();
}

}  // namespace qx::desktop
