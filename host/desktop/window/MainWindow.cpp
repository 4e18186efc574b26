#include "host/desktop/window/MainWindow.h"

#include <wx/accel.h>
#include <wx/display.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/splitter.h>
#include <wx/textentry.h>
#include <wx/toolbar.h>

#include <algorithm>
#include <array>
#include <map>

#include "host/desktop/views/WxText.h"
#include "host/desktop/window/ActionsPanel.h"
#include "host/desktop/window/CataloguePanel.h"
#include "host/desktop/window/HelpPanel.h"
#include "host/desktop/window/LogPanel.h"
#include "host/desktop/window/PropertiesPanel.h"
#include "host/desktop/window/RunPanel.h"
#include "host/pages/Pages.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

constexpr int kSettlingMilliseconds = 600;

std::vector<std::string> FoldersOf(Host& host) {
  std::vector<std::string> folders;
  for (const auto& package : host.LoadPackages(Registration::Design).Packages())
    folders.push_back(FolderPart(package->File()));
  return folders;
}

// What the first side of each splitter, from outside to inside, takes at most of it where there is little room.
constexpr std::array kLargestShares{0.62, 0.45, 0.6, 0.6};

LogStore& AddStore(ActionLog& log) {
  return static_cast<LogStore&>(log.AddSink(std::make_unique<LogStore>()));
}

}  // namespace

const std::vector<MainWindow::Command>& MainWindow::Commands() {
  using W = MainWindow;
  static constexpr auto none = std::nullopt;
  static const std::vector<Command> commands{
      {"&File", "&New\tCtrl+N", "Begin a new build project", Picture::New, &W::New, &W::IsIdle},
      {"&File", "&Open...\tCtrl+O", "Open a build project", Picture::Open, &W::Open, &W::IsIdle},
      {"&File", "&Save\tCtrl+S", "Save the build project", Picture::Save, &W::SaveCommand, &W::IsIdle},
      {"&File", "Save &as...\tCtrl+Shift+S", "Save the build project under another name", none,
       &W::SaveAsCommand, &W::IsIdle},
      {"&File", "", "", none, nullptr, nullptr},
      {"&File", "&Quit\tCtrl+Q", "Close the window", none, &W::Quit, &W::Always},
      {"&Edit", "&Undo\tCtrl+Z", "Undo the last edit", Picture::Undo, &W::Undo, &W::CanUndo},
      {"&Edit", "&Redo\tCtrl+Y", "Do again what was undone", Picture::Redo, &W::Redo, &W::CanRedo},
      {"&Edit", "", "", none, nullptr, nullptr},
      {"&Edit", "&Add from the catalogue\tCtrl+Ins", "Add the action that is selected in the catalogue", none,
       &W::AddSelected, &W::CanAdd},
      {"&Edit", "&Property pages...\tAlt+Enter", "Set the selected action up on its pages", Picture::Pages,
       &W::OpenPages, &W::CanOpenPages},
      {"&Edit", "&Duplicate action\tCtrl+D", "Add a copy of the selected action behind it",
       Picture::Duplicate, &W::Duplicate, &W::CanEditAction},
      {"&Edit", "D&elete action\tCtrl+Del", "Take the selected action out", Picture::Delete, &W::Delete,
       &W::CanEditAction},
      {"&Edit", "Move action &up\tCtrl+Shift+Up", "Run the selected action earlier", Picture::Up, &W::MoveUp,
       &W::CanMoveUp},
      {"&Edit", "Move action do&wn\tCtrl+Shift+Down", "Run the selected action later", Picture::Down,
       &W::MoveDown, &W::CanMoveDown},
      {"&Edit", "", "", none, nullptr, nullptr},
      {"&Edit", "&Variables...", "The build project's own variables", none, &W::EditVariables, &W::IsIdle},
      {"&Build", "&Validate\tF7", "Check every action without running one", Picture::Validate,
       &W::ValidateActions, &W::IsIdle},
      {"&Build", "&Run\tF5", "Save the build project and run its actions", Picture::Run, &W::Run, &W::IsIdle},
      {"&Build", "&Dry run\tCtrl+F5", "Show what a run would change and start; nothing is touched",
       Picture::Rehearse, &W::Rehearse, &W::IsIdle},
      {"&Build", "&Stop\tShift+F5", "Stop the action that runs", Picture::Stop, &W::Stop, &W::IsRunning},
      {"&Build", "", "", none, nullptr, nullptr},
      {"&Build", "&Find in the log\tCtrl+F", "", none, &W::FindInLog, &W::Always},
      {"&Build", "Find &next\tF3", "", none, &W::FindNext, &W::Always},
      {"&Build", "Find &previous\tShift+F3", "", none, &W::FindPrevious, &W::Always},
      {"&Build", "&Copy the log", "Copy the selected lines, or all that are shown", none, &W::CopyLog,
       &W::Always},
      {"&Build", "Save the &log...", "Save the whole log as a text file", none, &W::SaveLog, &W::Always},
      {"&View", "&Next part\tF6", "Go to the next part of the window", none, &W::ShowNextPart, &W::Always},
      {"&View", "&Previous part\tShift+F6", "Go to the part before", none, &W::ShowPreviousPart, &W::Always},
      {"&Tools", "&Options...", "Options of the loaded packages", Picture::Options, &W::ShowOptions,
       &W::IsIdle},
      {"&Help", "&Quick help\tF1", "Go to the help of the selected action", none, &W::ShowHelp, &W::Always},
      {"&Help", "&About", "Which program this is", none, &W::ShowAbout, &W::Always},
  };
  return commands;
}

MainWindow::MainWindow(Host& host, WindowSettings& settings)
    : wxFrame(nullptr, wxID_ANY, "qxhost", wxDefaultPosition, wxDefaultSize),
      host_(host),
      settings_(settings),
      store_(AddStore(log_)),
      document_(host, log_),
      build_(host, log_, [this] { CallAfter([this] { OnBuildEnded(); }); },
             {[this] { return store_.ProblemCounts(); },
              [this](RunReport& report, int action) { store_.TakeSkipped(report, action); }}),
      folders_(FoldersOf(host)),
      timer_(this) {
  SetName("mainWindow");
  const wxSize screen = wxDisplay(this).GetClientArea().GetSize();
  SetSize(std::min(Scaled(1240), screen.x), std::min(Scaled(780), screen.y));
  SetIcons(wxIconBundle(PictureOf(Picture::Action, 32).GetIcon(FromDIP(wxSize(32, 32)))));
  MakeMenus();
  CreateStatusBar(2)->SetName("status");
  const int widths[] = {-2, -1};
  SetStatusWidths(2, widths);
  Centre();
  MakeParts();
  BindParts();
  settings_.Restore(kPlaceName, *this);
  Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    event.Skip();
    if (!isSettled_) CallAfter([this] { PlaceParts(); });
  });
  settling_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Settle(); });
  settling_.StartOnce(kSettlingMilliseconds);
  ShowDocument(-1);
  Bind(wxEVT_CLOSE_WINDOW, &MainWindow::OnCloseWindow, this);
  Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTimer(); });
}

MainWindow::~MainWindow() = default;

void MainWindow::MakeMenus() {
  auto* bar = new wxMenuBar;
  wxToolBar* tools = CreateToolBar(wxTB_HORIZONTAL | wxTB_FLAT);
  tools->SetName("tools");
  const int size = ToDIP(Scaled(20));
  std::map<std::string, wxMenu*> menus;
  std::string lastMenu;
  for (const Command& command : Commands()) {
    wxMenu*& menu = menus[command.menu];
    if (menu == nullptr) bar->Append(menu = new wxMenu, command.menu);
    if (*command.label == '\0') {
      menu->AppendSeparator();
      continue;
    }
    wxMenuItem* item = menu->Append(wxID_ANY, command.label, command.help);
    Bind(
        wxEVT_MENU, [this, &command](wxCommandEvent&) { (this->*command.run)(); }, item->GetId());
    Bind(
        wxEVT_UPDATE_UI, [this, &command](wxUpdateUIEvent& event) { UpdateCommand(event, command); },
        item->GetId());
    if (!command.picture) continue;
    if (!lastMenu.empty() && lastMenu != command.menu) tools->AddSeparator();
    lastMenu = command.menu;
    wxString tip = item->GetItemLabelText();
    if (const std::unique_ptr<wxAcceleratorEntry> key{item->GetAccel()}) tip += " (" + key->ToString() + ")";
    tools->AddTool(item->GetId(), item->GetItemLabelText(), PictureOf(*command.picture, size),
                   PictureOf(*command.picture, size, PictureLook::Disabled), wxITEM_NORMAL, tip);
  }
  tools->Realize();
  recent_ = new wxMenu;
  menus["&File"]->Insert(2, wxID_ANY, "Open &recent", recent_);
  SetMenuBar(bar);
  FillRecentMenu();
}

void MainWindow::UpdateCommand(wxUpdateUIEvent& event, const Command& command) {
  event.Enable((this->*command.enabled)());
  if (command.run != &MainWindow::Undo && command.run != &MainWindow::Redo) return;
  const std::string name = command.run == &MainWindow::Undo ? document_.UndoName() : document_.RedoName();
  wxString label(command.label);
  if (!name.empty()) label = label.BeforeFirst('\t') + " " + ToWx(name) + "\t" + label.AfterFirst('\t');
  if (wxMenuItem* item = GetMenuBar()->FindItem(event.GetId());
      item != nullptr && item->GetItemLabel() != label)
    item->SetItemLabel(label);
}

void MainWindow::MakeParts() {
  const auto split = [this](wxWindow* parent) {
    auto* splitter =
        new wxSplitterWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxSP_LIVE_UPDATE);
    splitter->SetMinimumPaneSize(FromDIP(80));
    splitters_.push_back(splitter);
    return splitter;
  };
  wxSplitterWindow* all = split(this);      // work above, log below
  wxSplitterWindow* work = split(all);      // lists at the left
  wxSplitterWindow* lists = split(work);    // the project above the catalogue
  wxSplitterWindow* details = split(work);  // the properties beside the help

  actions_ = new ActionsPanel(lists, document_, build_, host_.Catalogue(), folders_);
  catalogue_ = new CataloguePanel(lists, host_.Catalogue(), folders_);
  properties_ = new PropertiesPanel(details);
  help_ = new HelpPanel(details, folders_);
  auto* results = new wxPanel(all);
  runPanel_ = new RunPanel(results);
  logPanel_ = new LogPanel(results, store_);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(runPanel_, wxSizerFlags().Expand());
  column->Add(logPanel_, wxSizerFlags(1).Expand());
  results->SetSizer(column);
  runPanel_->OnHeight = [results, all] {
    results->SetMinSize(wxSize(-1, results->GetSizer()->CalcMin().y));
    all->UpdateSize();
    results->Layout();
  };
  runPanel_->OnHeight();

  lists->SplitHorizontally(actions_, catalogue_);
  details->SplitVertically(properties_, help_);
  work->SplitVertically(lists, details);
  all->SplitHorizontally(work, results);
  SetMinSize(FromDIP(wxSize(640, 480)));
}

// Where the parts meet, from outside to inside. The system gives a new window its size in several steps, each
// of which would move what was placed: so they are placed after each, until it has settled.
void MainWindow::PlaceParts() {
  const std::array<int, 4> defaults{Scaled(410), Scaled(470), Scaled(200), Scaled(460)};
  for (std::size_t i = 0; i < splitters_.size(); ++i) {
    const long place = settings_.Number(SashName(i), defaults.at(i));
    const wxSplitterWindow& splitter = *splitters_[i];
    const wxSize size = splitter.GetClientSize();
    const int whole = splitter.GetSplitMode() == wxSPLIT_VERTICAL ? size.x : size.y;
    splitters_[i]->SetSashPosition(
        std::min(static_cast<int>(place), static_cast<int>(whole * kLargestShares.at(i))));
    splitters_[i]->UpdateSize();
  }
  properties_->FitCaptions();
}

// Of pixels at 100 % for as many as the fonts and the screen of this user make of them.
int MainWindow::Scaled(int pixels) const {
  constexpr int usualCharacter = 8;
  return std::max(FromDIP(pixels), pixels * GetCharWidth() / usualCharacter);
}

// A window that grows from now on gives more to all of its parts.
void MainWindow::Settle() {
  const std::array gravities{0.6, 0.3, 0.4, 0.4};
  for (std::size_t i = 0; i < splitters_.size(); ++i) splitters_[i]->SetSashGravity(gravities.at(i));
  properties_->FitCaptions();
  isSettled_ = true;
}

void MainWindow::BindParts() {
  Bind(wxEVT_CHAR_HOOK, &MainWindow::OnKey, this);
  actions_->OnSelect = [this] {
    if (IsIdle()) properties_->Commit();
    ShowSelected();
  };
  actions_->OnOpen = [this] {
    if (CanOpenPages()) OpenPages();
  };
  actions_->OnAdd = [this](const std::string& name, int index) { AddAction(name, index); };
  actions_->OnMove = [this](int from, int to) { MoveAction(from, to); };
  actions_->OnMenu = [this] { ShowMenu(); };
  actions_->OnDelete = [this] {
    if (CanEditAction()) Delete();
  };
  catalogue_->OnAdd = [this](const std::string& name) { AddAction(name, document_.ActionCount()); };
  properties_->OnEdit = [this](int index, const PublishedProperty& property, const PropertyValue& value) {
    if (IsIdle()) document_.SetProperty(index, property, value);
  };
  properties_->OnLeave = [this](bool forwards) { GoToPart(forwards ? 1 : -1); };
  properties_->OnEdited = [this] { ShowDocument(actions_->Selected()); };
  properties_->OnOpenPages = [this](const PublishedProperty& property) {
    if (CanOpenPages()) OpenPagesFor(&property);
  };
}

// While a build runs the actions are its thread's: what is shown of them stays until it has ended.
void MainWindow::ShowDocument(int selected) {
  if (!IsIdle()) return;
  actions_->Refill(selected);
  ShowSelected();
}

void MainWindow::ShowSelected() {
  if (!IsIdle()) return;
  TQXAction* action = SelectedAction();
  properties_->ShowAction(actions_->Selected(), action, host_.Catalogue());
  properties_->Enable();
  help_->ShowPage(action == nullptr ? std::string() : action->GetQuickHelpFilename());
  ShowTitle();
}

void MainWindow::ShowTitle() {
  const std::string name = document_.File().empty() ? "Untitled" : FilePart(document_.File());
  SetTitle((document_.IsModified() ? "*" : "") + ToWx(name) + " - qxhost");
}

TQXAction* MainWindow::SelectedAction() const {
  const int index = actions_->Selected();
  return index < 0 || index >= document_.ActionCount() ? nullptr : document_.Action(index);
}

// Lists, and editors within them, take some keys before the menu sees them: here the commands come first, but
// not where a text is typed.
void MainWindow::OnKey(wxKeyEvent& event) {
  event.Skip();
  wxWindow* focus = FindFocus();
  const auto* text = dynamic_cast<const wxTextEntryBase*>(focus);
  for (const Command& command : Commands()) {
    const std::unique_ptr<wxAcceleratorEntry> key(wxAcceleratorEntry::Create(command.label));
    if (key == nullptr || key->GetKeyCode() != event.GetKeyCode()) continue;
    if (key->GetFlags() != event.GetModifiers()) continue;
    if (text != nullptr) {
      // Where a text has nothing to undo nothing else is undone, but for a value of the grid, which is an edit.
      const bool isUndo = command.run == &MainWindow::Undo && !text->CanUndo();
      const bool isRedo = command.run == &MainWindow::Redo && !text->CanRedo();
      return event.Skip(properties_->IsDescendant(focus) || (!isUndo && !isRedo));
    }
    if (!(this->*command.enabled)()) continue;
    event.Skip(false);
    return (this->*command.run)();
  }
}

void MainWindow::ShowNextPart() { GoToPart(1); }
void MainWindow::ShowPreviousPart() { GoToPart(-1); }

void MainWindow::GoToPart(int step) {
  wxWindow* const parts[] = {actions_, catalogue_, properties_, help_, logPanel_};
  constexpr int count = static_cast<int>(std::size(parts));
  const wxWindow* focus = FindFocus();
  const auto holds = [focus](const wxWindow* part) {
    for (const wxWindow* at = focus; at != nullptr; at = at->GetParent())
      if (at == part) return true;
    return false;
  };
  const auto now = std::ranges::find_if(parts, holds);
  int index = now == std::end(parts) ? -step : static_cast<int>(now - std::begin(parts));
  do index = (index + step + count) % count;
  while (!parts[index]->IsEnabled());
  parts[index]->SetFocus();
}

bool MainWindow::Guarded(const wxString& title, const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const std::exception& fault) {
    wxMessageBox(ToWx(fault.what()), title, wxOK | wxICON_ERROR, this);
    return false;
  }
}

}  // namespace qx::desktop
