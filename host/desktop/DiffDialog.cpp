#include "host/desktop/DiffDialog.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <vector>

#include "host/desktop/Counted.h"
#include "host/desktop/DiffLines.h"
#include "host/desktop/LineList.h"
#include "host/desktop/SaveDialog.h"
#include "host/desktop/WxText.h"
#include "platform/Files.h"

namespace qx::desktop {
namespace {

LineLook LookOf(DiffKind kind) {
  switch (kind) {
    case DiffKind::Program:
    case DiffKind::OldFile:
    case DiffKind::NewFile:
      return LineLook::Heading;
    case DiffKind::Place:
      return LineLook::Place;
    case DiffKind::Added:
      return LineLook::Added;
    case DiffKind::Removed:
      return LineLook::Removed;
    case DiffKind::Plain:
      break;
  }
  return LineLook::Plain;
}

class DiffList final : public LineList {
 public:
  DiffList(wxWindow* parent, std::vector<DiffLine> lines)
      : LineList(parent, "diff", "What a run would do"), lines_(std::move(lines)) {
    SetLineCount(lines_.size());
    Focus(0);
    EnsureVisible(0);
  }

 private:
  wxString LineText(long line) const override { return ToWx(At(line).text); }
  LineLook Look(long line) const override { return LookOf(At(line).kind); }
  const DiffLine& At(long line) const { return lines_.at(static_cast<std::size_t>(line)); }

  std::vector<DiffLine> lines_;
};

wxString Summary(const std::vector<DiffLine>& lines) {
  const std::size_t programs = CountOf(lines, DiffKind::Program);
  const std::size_t files = CountOf(lines, DiffKind::NewFile);
  if (programs + files == 0) return "A run would start no program and change no file.";
  return "A run would start " + Counted(programs, "program", "programs") + " and change " +
         Counted(files, "file", "files") + " (" + Counted(CountOf(lines, DiffKind::Added), "line", "lines") +
         " added, " + Number(CountOf(lines, DiffKind::Removed)) + " removed). Nothing was touched.";
}

void SaveReport(wxWindow* parent, const std::string& report) {
  SaveUnderAName({parent, "Save what a run would do", "dry-run.patch",
                  "Patches (*.patch;*.diff)|*.patch;*.diff|All files|*.*", "It was not saved"},
                 [&](const std::string& file) { ReplaceFile(file, report); });
}

}  // namespace

void ShowDiffDialog(wxWindow* parent, const std::string& report) {
  wxDialog dialog(parent, wxID_ANY, "Dry run", wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX);
  dialog.SetName("dryRun");
  std::vector<DiffLine> lines = DiffLinesOf(report);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(new wxStaticText(&dialog, wxID_ANY, Summary(lines)), wxSizerFlags().Border());
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
