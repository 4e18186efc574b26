// The main window's builds: validating, running, rehearsing, stopping, and their log.
#include <wx/aboutdlg.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "host/desktop/views/WxText.h"
#include "host/desktop/window/AboutBox.h"
#include "host/desktop/window/ActionsPanel.h"
#include "host/desktop/window/Counted.h"
#include "host/desktop/window/DiffDialog.h"
#include "host/desktop/window/HelpPanel.h"
#include "host/desktop/window/LogPanel.h"
#include "host/desktop/window/MainWindow.h"
#include "host/desktop/window/PropertiesPanel.h"

namespace qx::desktop {
namespace {

// How often what a build has written is shown; far below what feels late.
constexpr int kTickMilliseconds = 50;

wxString Clock(double seconds) {
  const long whole = std::lround(std::floor(seconds));
  return wxString::Format("%ld:%02ld", whole / 60, whole % 60);
}

wxString Ended(BuildKind kind, const BuildResult& result) {
  if (!result.error.empty()) return ToWx(result.error);
  switch (result.outcome) {
    case RunOutcome::Succeeded:
      return kind == BuildKind::Validate ? "Every action can run"
             : kind == BuildKind::DryRun ? "The dry run has ended"
                                         : "The run has succeeded";
    case RunOutcome::ActionFailed:
      return "An action has failed";
    case RunOutcome::Invalid:
      return "Not every action can run as it is set; nothing was executed";
    case RunOutcome::ExceptionLeft:
      return "The run was ended by an exception";
    case RunOutcome::Stopped:
      return "Stopped by the user";
  }
  return {};
}

}  // namespace

// A run takes relative paths from the project's folder, so the project has one first; it is saved as the
// command line saves what it runs.
void MainWindow::Start(BuildKind kind) {
  if (!HasActions()) return;
  if (!properties_->Commit()) return;
  warnings_.clear();
  if (document_.File().empty() && !SaveAs()) return;
  bool needsSaving = false;
  if (!Guarded("The build did not begin", [&] {
        needsSaving = kind == BuildKind::Run && (document_.IsModified() || document_.IsChangedOnDisk());
      }))
    return;
  if (needsSaving && !Save()) return;
  logPanel_->Clear();
  TellWarnings();
  if (!Guarded("The build did not begin", [&] { build_.Start(kind, document_); })) return;
  actions_->SetFocus();  // what is disabled now may have had it
  properties_->Enable(false);
  SetStatusText(kind == BuildKind::Validate ? "Validating" : kind == BuildKind::Run ? "Running" : "Dry run");
  timer_.Start(kTickMilliseconds);
}

void MainWindow::Stop() {
  if (!build_.IsRunning()) return;
  build_.Stop();
  SetStatusText("Stopping");
}

void MainWindow::OnTimer() {
  log_.Flush();
  logPanel_->Update();
  actions_->RefreshStates();
  ShowProgress();
}

void MainWindow::ShowProgress() {
  const BuildProgress progress = build_.Progress();
  const wxString action = progress.action > 0
                              ? wxString::Format("Action %d of %d", progress.action, progress.actionCount)
                              : wxString();
  const wxString text = wxString::Format("%s   %s   %s", action, Clock(progress.seconds),
                                         Counted(store_.LineCount(), "line", "lines"));
  if (GetStatusBar()->GetStatusText(1) != text) SetStatusText(text, 1);
}

void MainWindow::OnBuildEnded() {
  timer_.Stop();
  const BuildKind kind = build_.Kind();
  const BuildResult result = build_.Finish();
  for (const std::string& warning : result.warnings) {
    if (std::ranges::find(warnings_, warning) == warnings_.end()) log_.AddMessage(0, warning);
  }
  if (!result.error.empty()) log_.AddException(0, result.error);
  OnTimer();
  ShowDocument(actions_->Selected());
  SetStatusText(Ended(kind, result));
  if (closing_) {
    closing_ = false;
    Close();
    return;
  }
  if (!result.error.empty())
    wxMessageBox(ToWx(result.error), "The build", wxOK | wxICON_ERROR, this);
  else if (kind == BuildKind::DryRun && result.outcome != RunOutcome::Invalid)
    ShowDiffDialog(this, result.dryRun);
}

void MainWindow::FindInLog() { logPanel_->StartFind(); }
void MainWindow::FindNext() { logPanel_->FindNext(true); }
void MainWindow::FindPrevious() { logPanel_->FindNext(false); }
void MainWindow::SaveLog() { logPanel_->Save(); }
void MainWindow::CopyLog() { logPanel_->Copy(); }
void MainWindow::ShowHelp() { help_->SetFocus(); }

void MainWindow::ShowAbout() { ShowAboutBox(this); }

}  // namespace qx::desktop
