// The main window's files: new, open, save, and what is unsaved.
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/splitter.h>

#include "host/desktop/views/WxText.h"
#include "host/desktop/window/LogPanel.h"
#include "host/desktop/window/MainWindow.h"
#include "host/desktop/window/PropertiesPanel.h"
#include "host/keeping/Keeping.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

constexpr const char* kFilter = "Build projects (*.xml)|*.xml|All files|*.*";

}  // namespace

void MainWindow::New() {
  if (!SettleUnsaved()) return;
  if (Guarded("No new build project", [this] { document_.New(); })) ForgetBuild();
  ShowDocument(-1);
}

// The log, the states of actions and the progress told of the project that was open before.
void MainWindow::ForgetBuild() {
  logPanel_->Clear();
  ShowLastRun();
  SetStatusText(wxString(), 1);
}

void MainWindow::Open() {
  wxFileDialog dialog(this, "Open a build project", "", "", kFilter, wxFD_OPEN | wxFD_FILE_MUST_EXIST);
  if (dialog.ShowModal() == wxID_OK) OpenFile(FromWx(dialog.GetPath()));
}

void MainWindow::OpenFile(const std::string& file) {
  if (!SettleUnsaved()) return;
  const bool opened = Guarded("The build project was not opened", [&] { document_.Open(file); });
  if (opened) ForgetBuild();
  ShowDocument(document_.ActionCount() > 0 ? 0 : -1);
  if (!opened) return;
  if (const std::string note = NoteOfCutOffRun(document_.File()); !note.empty()) {
    warnings_ = {note};
    TellWarnings();
  }
  settings_.AddRecentFile(document_.File());
  FillRecentMenu();
}

void MainWindow::OpenRecent(const std::string& file) {
  if (FileExists(file)) return OpenFile(file);
  wxMessageBox(ToWx(file) + " is not there any more.", "The build project was not opened",
               wxOK | wxICON_ERROR, this);
  settings_.RemoveRecentFile(file);
  FillRecentMenu();
}

void MainWindow::FillRecentMenu() {
  while (recent_->GetMenuItemCount() > 0) recent_->Destroy(recent_->FindItemByPosition(0));
  int number = 1;
  for (const std::string& file : settings_.RecentFiles()) {
    wxString label = ToWx(file);
    label.Replace("&", "&&");
    wxMenuItem* item = recent_->Append(wxID_ANY, wxString::Format("&%d %s", number++, label));
    recent_->Bind(
        wxEVT_MENU,
        [this, file](wxCommandEvent&) {
          CallAfter([this, file] {
            if (IsIdle()) OpenRecent(file);
          });
        },
        item->GetId());
  }
  if (recent_->GetMenuItemCount() == 0) recent_->Append(wxID_ANY, "(none yet)")->Enable(false);
}

bool MainWindow::Save() {
  if (!properties_->Commit()) return false;
  if (document_.File().empty()) return SaveAs();
  Document::Overwrite overwrite = Document::Overwrite::No;
  for (;;) {
    try {
      warnings_ = document_.Save(overwrite);
      TellWarnings();
      ShowTitle();
      SetStatusText("Saved " + ToWx(document_.File()));
      return true;
    } catch (const Document::ChangedOnDisk& fault) {
      wxMessageDialog question(this, ToWx(fault.what()), "The file was changed by somebody else",
                               wxYES_NO | wxCANCEL | wxCANCEL_DEFAULT | wxICON_WARNING);
      question.SetYesNoCancelLabels("&Overwrite it", "Open &theirs", "&Cancel");
      const int answer = question.ShowModal();
      if (answer == wxID_NO) OpenTheirs();
      if (answer != wxID_YES) return false;
      overwrite = Document::Overwrite::Yes;
    } catch (const std::exception& fault) {
      wxMessageBox(ToWx(fault.what()), "The build project was not saved", wxOK | wxICON_ERROR, this);
      return false;
    }
  }
}

// The file as somebody else has left it, in the place of what is edited here.
void MainWindow::OpenTheirs() {
  if (!Guarded("The build project was not opened", [this] { document_.Open(document_.File()); })) return;
  ForgetBuild();
  ShowDocument(document_.ActionCount() > 0 ? 0 : -1);
}

bool MainWindow::SaveAs() {
  if (!properties_->Commit()) return false;
  wxFileDialog dialog(this, "Save the build project", ToWx(FolderPart(document_.File())),
                      document_.File().empty() ? wxString("build.xml") : ToWx(FilePart(document_.File())),
                      kFilter, wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
  if (dialog.ShowModal() != wxID_OK) return false;
  const bool saved = Guarded("The build project was not saved",
                             [&] { warnings_ = document_.SaveAs(FromWx(dialog.GetPath())); });
  if (!saved) return false;
  TellWarnings();
  settings_.AddRecentFile(document_.File());
  FillRecentMenu();
  ShowTitle();
  SetStatusText("Saved " + ToWx(document_.File()));
  return true;
}

void MainWindow::TellWarnings() {
  for (const std::string& warning : warnings_) log_.AddMessage(0, warning);
  log_.Flush();
  logPanel_->Update();
}

bool MainWindow::SettleUnsaved() {
  if (!properties_->Commit()) return false;
  if (!document_.IsModified()) return true;
  const std::string name = document_.File().empty() ? "the new build project" : FilePart(document_.File());
  wxMessageDialog question(this, "Save the changes to " + ToWx(name) + "?", "Unsaved changes",
                           wxYES_NO | wxCANCEL | wxICON_QUESTION);
  question.SetExtendedMessage("What was changed is lost if it is not saved.");
  question.SetYesNoCancelLabels("&Save", "&Don't save", "&Cancel");
  switch (question.ShowModal()) {
    case wxID_YES:
      return Save();
    case wxID_NO:
      return true;
    default:
      return false;
  }
}

// A build is asked to end, and the window goes when it has.
void MainWindow::OnCloseWindow(wxCloseEvent& event) {
  if (build_.IsRunning() && event.CanVeto()) {
    event.Veto();
    if (closing_) return;
    wxMessageDialog question(this, "A build is running. Stop it and close the window?", "A build is running",
                             wxYES_NO | wxNO_DEFAULT | wxICON_QUESTION);
    question.SetYesNoLabels("&Stop and close", "&Go on");
    if (question.ShowModal() != wxID_YES) return;
    if (!build_.IsRunning()) return static_cast<void>(Close());
    closing_ = true;
    Stop();
    return;
  }
  if (event.CanVeto() && !SettleUnsaved()) {
    closing_ = false;
    return event.Veto();
  }
  settings_.Keep(kPlaceName, *this);
  for (std::size_t i = 0; i < splitters_.size(); ++i)
    settings_.SetNumber(SashName(i), splitters_[i]->GetSashPosition());
  settings_.Save();
  Destroy();
}

}  // namespace qx::desktop
