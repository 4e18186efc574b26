#include "host/desktop/DiffDialog.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <vector>

#include "host/desktop/LineList.h"
#include "host/desktop/WxText.h"
#include "platform/Files.h"
#include "platform/Texts.h"

namespace qx::desktop {
namespace {

struct Line {
  std::string text;
  LineLook look;
};

// The lines between the first "diff" heading and the next one belong to a file; others tell of programs.
std::vector<Line> LinesOf(const std::string& report) {
  std::vector<Line> lines;
  bool inFile = false;
  for (std::string& text : SplitLines(report)) {
    LineLook look = LineLook::Plain;
    if (text.starts_with("--- ") || text.starts_with("+++ ")) {
      look = LineLook::Heading;
      inFile = true;
    } else if (text.starts_with("Would run in ")) {
      look = LineLook::Heading;
      inFile = false;
    } else if (inFile && text.starts_with("@@")) {
      look = LineLook::Place;
    } else if (inFile && text.starts_with('+')) {
      look = LineLook::Added;
    } else if (inFile && text.starts_with('-')) {
      look = LineLook::Removed;
    }
    lines.push_back({std::move(text), look});
  }
  return lines;
}

class DiffList final : public LineList {
 public:
  DiffList(wxWindow* parent, std::vector<Line> lines)
      : LineList(parent, "diff", "What a run would do"), lines_(std::move(lines)) {
    SetLineCount(lines_.size());
    Focus(0);
    EnsureVisible(0);
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
      if (event.ControlDown() && event.GetKeyCode() == 'C')
        CopySelected();
      else
        event.Skip();
    });
  }

 private:
  wxString LineText(long line) const override { return ToWx(At(line).text); }
  LineLook Look(long line) const override { return At(line).look; }
  const Line& At(long line) const { return lines_.at(static_cast<std::size_t>(line)); }

  std::vector<Line> lines_;
};

std::string Summary(const std::vector<Line>& lines) {
  int programs = 0;
  int files = 0;
  int added = 0;
  int removed = 0;
  for (const Line& line : lines) {
    programs += line.text.starts_with("Would run in ") ? 1 : 0;
    files += line.look == LineLook::Heading && line.text.starts_with("+++ ") ? 1 : 0;
    added += line.look == LineLook::Added ? 1 : 0;
    removed += line.look == LineLook::Removed ? 1 : 0;
  }
  if (programs + files == 0) return "A run would start no program and change no file.";
  const auto counted = [](int count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
  };
  return "A run would start " + counted(programs, "program") + " and change " + counted(files, "file") +
         " (" + counted(added, "line") + " added, " + std::to_string(removed) +
         " removed). Nothing was touched.";
}

void SaveReport(wxWindow* parent, const std::string& report) {
  wxFileDialog dialog(parent, "Save what a run would do", "", "dry-run.patch",
                      "Patches (*.patch;*.diff)|*.patch;*.diff|All files|*.*",
                      wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
  if (dialog.ShowModal() != wxID_OK) return;
  try {
    ReplaceFile(FromWx(dialog.GetPath()), report);
  } catch (const std::exception& fault) {
    wxMessageBox(ToWx(fault.what()), "It was not saved", wxOK | wxICON_ERROR, parent);
  }
}

}  // namespace

void ShowDiffDialog(wxWindow* parent, const std::string& report) {
  wxDialog dialog(parent, wxID_ANY, "Dry run", wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX);
  dialog.SetName("dryRun");
  std::vector<Line> lines = LinesOf(report);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(new wxStaticText(&dialog, wxID_ANY, ToWx(Summary(lines))), wxSizerFlags().Border());
  auto* list = new DiffList(&dialog, std::move(lines));
  column->Add(list, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT));
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  auto* copy = new wxButton(&dialog, wxID_ANY, "&Copy");
  auto* save = new wxButton(&dialog, wxID_ANY, "&Save as...");
  auto* close = new wxButton(&dialog, wxID_CANCEL, "Close");
  row->Add(copy);
  row->Add(save, wxSizerFlags().Border(wxLEFT));
  row->AddStretchSpacer();
  row->Add(close);
  column->Add(row, wxSizerFlags().Expand().Border());
  dialog.SetSizer(column);
  copy->Bind(wxEVT_BUTTON, [list](wxCommandEvent&) { list->CopySelected(); });
  save->Bind(wxEVT_BUTTON, [&](wxCommandEvent&) { SaveReport(&dialog, report); });
  close->SetDefault();
  list->SetFocus();
  dialog.SetSize(dialog.GetParent()->GetClientSize() * 0.9);
  dialog.CentreOnParent();
  dialog.ShowModal();
}

}  // namespace qx::desktop
