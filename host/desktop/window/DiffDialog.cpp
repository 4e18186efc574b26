#include "host/desktop/window/DiffDialog.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>
#include <vector>

#include "host/desktop/views/WxText.h"
#include "host/desktop/window/Counted.h"
#include "host/desktop/window/LineList.h"
#include "host/desktop/window/SaveDialog.h"
#include "platform/files/Files.h"

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
  // Without the carriage return of a line that ends in both.
  wxString LineText(long line) const override {
    const std::string& text = At(line).text;
    return ToWx(text.ends_with('\r') ? text.substr(0, text.size() - 1) : text);
  }
  LineLook Look(long line) const override { return LookOf(At(line).kind); }
  const DiffLine& At(long line) const { return lines_.at(static_cast<std::size_t>(line)); }

  std::vector<DiffLine> lines_;
};

wxString Summary(const DryRunResult& result, const std::vector<DiffLine>& lines) {
  const std::size_t programs = result.programs.size();
  const std::size_t files = result.files.size();
  const auto count = [&lines](DiffKind kind) {
    return static_cast<std::size_t>(
        std::ranges::count_if(lines, [kind](const DiffLine& line) { return line.kind == kind; }));
  };
  if (programs + files == 0) return "A run would start no program and change no file.";
  return "A run would start " + Counted(programs, "program", "programs") + " and change " +
         Counted(files, "file", "files") + " (" + Counted(count(DiffKind::Added), "line", "lines") +
         " added, " + Number(count(DiffKind::Removed)) + " removed). Nothing was touched.";
}

void SaveReport(wxWindow* parent, const DryRunResult& result) {
  SaveUnderAName({parent, "Save what a run would do", "dry-run.patch",
                  "Patches (*.patch;*.diff)|*.patch;*.diff|All files|*.*", "It was not saved"},
                 [&](const std::string& file) { ReplaceFile(file, TextOf(LinesOf(result))); });
}

}  // namespace

void ShowDiffDialog(wxWindow* parent, const DryRunResult& result) {
  wxDialog dialog(parent, wxID_ANY, "Dry run", wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX);
  dialog.SetName("dryRun");
  std::vector<DiffLine> lines = LinesOf(result);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(new wxStaticText(&dialog, wxID_ANY, Summary(result, lines)), wxSizerFlags().Border());
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
  save->Bind(wxEVT_BUTTON, [&](wxCommandEvent&) { SaveReport(&dialog, result); });
  close->SetDefault();
  list->SetFocus();
  dialog.SetSize(dialog.GetParent()->GetClientSize() * 0.9);
  dialog.CentreOnParent();
  dialog.ShowModal();
}

}  // namespace qx::desktop
