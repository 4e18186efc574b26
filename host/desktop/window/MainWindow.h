// The main window: the build project and the catalogue at the left, the properties and the quick help of the
// selected action beside them, the log below; everything that can be done is a command in its menus.
#pragma once

#include <wx/frame.h>
#include <wx/timer.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/desktop/core/BuildThread.h"
#include "host/desktop/core/Document.h"
#include "host/desktop/core/LogStore.h"
#include "host/desktop/views/Pictures.h"
#include "host/desktop/window/WindowSettings.h"

class wxSplitterWindow;

namespace qx::desktop {

class ActionsPanel;
class CataloguePanel;
class HelpPanel;
class LogPanel;
class PropertiesPanel;
class RunPanel;

class MainWindow final : public wxFrame {
 public:
  // Both outlive it.
  MainWindow(Host& host, WindowSettings& settings);
  ~MainWindow() override;

  // Opens a project, once what is unsaved was dealt with; a file that cannot be read is complained about.
  void OpenFile(const std::string& file);

 private:
  static constexpr const char* kPlaceName = "MainWindow";  // under which its place is remembered
  // One row a command: menus, tool bar, accelerators and what is greyed come from the table.
  struct Command {
    const char* menu;   // the title of its menu
    const char* label;  // with its accelerator; empty: a separator, here and in the tool bar
    const char* help;
    std::optional<Picture> picture;  // and a place in the tool bar
    void (MainWindow::*run)();
    bool (MainWindow::*enabled)() const;
  };
  static const std::vector<Command>& Commands();

  // MainWindow.cpp: what it is made of, and what is shown.
  void MakeMenus();
  void MakeParts();
  static wxString SashName(std::size_t splitter) { return wxString::Format("/Sashes/%zu", splitter); }
  void PlaceParts();
  void Settle();
  void BindParts();
  void UpdateCommand(wxUpdateUIEvent& event, const Command& command);
  void ShowDocument(int selected);
  void ShowSelected();
  void ShowTitle();
  void OnKey(wxKeyEvent& event);
  int Scaled(int pixels) const;
  void ShowNextPart();
  void ShowPreviousPart();
  void GoToPart(int step);
  // Runs what may raise, and shows what it raised under a title.
  bool Guarded(const wxString& title, const std::function<void()>& work);
  bool Always() const { return true; }
  bool IsIdle() const { return !build_.IsRunning(); }

  // MainWindowFile.cpp: files and what is unsaved.
  void New();
  void Open();
  void OpenRecent(const std::string& file);
  void FillRecentMenu();
  void SaveCommand() { Save(); }
  void SaveAsCommand() { SaveAs(); }
  bool Save();
  bool SaveAs();
  void OpenTheirs();
  void ForgetBuild();
  void TellWarnings();
  bool SettleUnsaved();  // false: the user wants to stay
  void OnCloseWindow(wxCloseEvent& event);
  void Quit() { Close(); }

  // MainWindowEdit.cpp: the actions, their properties and pages.
  void AddAction(const std::string& displayName, int index);
  void AddSelected();
  void MoveAction(int from, int to);
  void Undo();
  void Redo();
  void Duplicate();
  void Delete();
  void MoveUp();
  void MoveDown();
  void OpenPages();
  void OpenPagesFor(const PublishedProperty* property);
  void EditVariables();
  void ShowOptions();
  void ShowMenu();
  bool CanUndo() const;
  bool CanRedo() const;
  bool CanEditAction() const;
  bool CanOpenPages() const;
  bool CanMoveUp() const;
  bool CanMoveDown() const;
  bool CanAdd() const;
  TQXAction* SelectedAction() const;

  // MainWindowBuild.cpp: validating, running, stopping; the log.
  void ValidateActions() { Start(BuildKind::Validate); }
  void Run() { Start(BuildKind::Run); }
  void Rehearse() { Start(BuildKind::DryRun); }
  void Start(BuildKind kind);
  void Stop();
  void OnTimer();
  void OnBuildEnded();
  void ShowProgress();
  void ShowStory(BuildKind kind, const BuildResult& result);
  void ShowLastRun();
  void SayThereIsNothingToRun();
  void GoToRefused(const Refusal& refusal);
  void FindInLog();
  void FindNext();
  void FindPrevious();
  void SaveLog();
  void CopyLog();
  void ShowHelp();
  void ShowAbout();
  bool IsRunning() const { return build_.IsRunning(); }

  Host& host_;
  WindowSettings& settings_;
  ActionLog log_;
  LogStore& store_;  // the log's
  Document document_;
  BuildThread build_;
  std::vector<std::string> folders_;   // those that packages were loaded from
  std::vector<std::string> warnings_;  // of the last saving
  wxTimer timer_;
  bool closing_ = false;
  wxTimer settling_;
  bool isSettled_ = false;  // the system has given it its size

  wxMenu* recent_ = nullptr;
  std::vector<wxSplitterWindow*> splitters_;
  ActionsPanel* actions_ = nullptr;
  CataloguePanel* catalogue_ = nullptr;
  PropertiesPanel* properties_ = nullptr;
  HelpPanel* help_ = nullptr;
  RunPanel* runPanel_ = nullptr;
  LogPanel* logPanel_ = nullptr;
};

}  // namespace qx::desktop
