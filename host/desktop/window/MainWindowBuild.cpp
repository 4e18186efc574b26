// The main window's builds: validating, running, rehearsing, stopping, and their log.
#include <wx/aboutdlg.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

#include "host/actions/PropertyText.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/window/AboutBox.h"
#include "host/desktop/window/ActionsPanel.h"
#include "host/desktop/window/Counted.h"
#include "host/desktop/window/DiffDialog.h"
#include "host/desktop/window/HelpPanel.h"
#include "host/desktop/window/LogPanel.h"
#include "host/desktop/window/MainWindow.h"
#include "host/desktop/window/PropertiesPanel.h"
#include "host/desktop/window/RunPanel.h"
#include "host/keeping/Keeping.h"

namespace qx::desktop {
namespace {

// How often what a build has written is shown; far below what feels late.
constexpr int kTickMilliseconds = 50;

// By BuildKind.
const std::array<std::string, 3> kNames{"Validation", "Run", "Dry run"};
const std::array<wxString, 3> kDoing{"Validating", "Running", "Dry run: nothing is touched"};

std::string At(std::int64_t time) { return " at " + TimeForPeople(time); }

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
  if (!IsIdle() || !properties_->Commit()) return;
  if (document_.ActionCount() == 0) return SayThereIsNothingToRun();
  warnings_.clear();
  if (document_.File().empty() && !SaveAs()) return;
  bool needsSaving = false;
  if (!Guarded("The build did not begin", [&] {
        needsSaving = kind == BuildKind::Run && (document_.IsModified() || document_.IsChangedOnDisk());
      }))
    return;
  if (needsSaving && !Save()) return;
  // What a run wrote stays until the next one: the others only ask.
  if (kind == BuildKind::Run) logPanel_->Clear();
  if (kind != BuildKind::Run)
    log_.AddMessage(0, kNames.at(static_cast<std::size_t>(kind)) + At(std::time(nullptr)));
  store_.TakeRefusals();
  TellWarnings();
  if (!Guarded("The build did not begin", [&] { build_.Start(kind, document_); })) return;
  actions_->SetFocus();  // what is disabled now may have had it
  properties_->Enable(false);
  SetStatusText(kDoing.at(static_cast<std::size_t>(kind)));
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
  if (!build_.IsRunning()) return;
  const wxString doing = kDoing.at(static_cast<std::size_t>(build_.Kind()));
  runPanel_->ShowProgress(doing + "   " + action + "   " + Clock(progress.seconds), progress.done);
}

// Why it cannot run, by the first reason, and the way to where that is set.
void MainWindow::ShowStory(BuildKind kind, const BuildResult& result) {
  std::vector<Refusal> reasons = store_.TakeRefusals();
  if (reasons.empty() && result.outcome == RunOutcome::ActionFailed) {
    for (const auto& [action, finding] : result.foreseen)
      reasons.push_back({action, finding.subject, finding.message});
  }
  if (reasons.empty()) return runPanel_->ShowStory(StoryOf(kind, result, ""));
  const Refusal& first = reasons.front();
  std::string reason = first.subject + ": " + first.message;
  if (reasons.size() > 1) reason += " (and " + std::to_string(reasons.size() - 1) + " more in the log)";
  const bool isKnown = first.action > 0 && first.action <= document_.ActionCount();
  RunPanel::Way way;
  if (isKnown && document_.Action(first.action - 1) != nullptr)
    way = {"Set it up...", [this, first] { GoToRefused(first); }};
  runPanel_->ShowStory(StoryOf(kind, result, reason), std::move(way));
}

void MainWindow::GoToRefused(const Refusal& refusal) {
  if (!IsIdle() || refusal.action > document_.ActionCount()) return;
  ShowDocument(refusal.action - 1);
  const TQXAction* action = SelectedAction();
  if (action == nullptr) return;
  if (!CanOpenPages()) return properties_->SetFocus();
  OpenPagesFor(FindProperty(action->GetActionClass()->properties, refusal.subject));
}

void MainWindow::SayThereIsNothingToRun() {
  RunStory story{StoryTone::Bad,
                 "There is nothing to run yet: open a solution, or add an action from the catalogue",
                 {}};
  runPanel_->ShowStory(story, {"Open a solution...", [this] { Open(); }});
}

// Of the project that was opened, as far as its runs are kept.
void MainWindow::ShowLastRun() {
  const std::optional<KeptRun> last = document_.File().empty() ? std::nullopt : LastKeptRun(document_.File());
  build_.ForgetStates(last ? ActionState::Unknown : ActionState::NotRun);
  if (!last) return runPanel_->Clear();
  runPanel_->ShowStory(StoryOf(*last));
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
  ShowStory(kind, result);
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
