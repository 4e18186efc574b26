// The main window's edits: the actions of the project, their properties and pages, the options.
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/textentry.h>

#include "host/desktop/views/PagesDialog.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/window/ActionsPanel.h"
#include "host/desktop/window/CataloguePanel.h"
#include "host/desktop/window/HelpPanel.h"
#include "host/desktop/window/MainWindow.h"
#include "host/desktop/window/PropertiesPanel.h"
#include "host/desktop/window/VariablesDialog.h"

namespace qx::desktop {
namespace {

// The text that the keyboard is in: its own undo comes first there.
wxTextEntryBase* FocusedText() { return dynamic_cast<wxTextEntryBase*>(wxWindow::FindFocus()); }

// The action that a step was about; the one that is selected where it was about none.
int Chosen(int ofStep, int selected) { return ofStep < 0 ? selected : ofStep; }

bool AskOverPages(wxWindow* pages, Question kind, const std::string& text) {
  const bool loses = kind == Question::Loss;
  wxMessageDialog question(pages, ToWx(text), "Question",
                           wxYES_NO | (loses ? wxNO_DEFAULT | wxICON_WARNING : wxICON_QUESTION));
  if (loses) question.SetYesNoLabels("&Write", "&Go back");
  return question.ShowModal() == wxID_YES;
}

}  // namespace

bool MainWindow::CanUndo() const {
  const wxTextEntryBase* text = FocusedText();
  return (text != nullptr && text->CanUndo()) || (IsIdle() && document_.CanUndo());
}

bool MainWindow::CanRedo() const {
  const wxTextEntryBase* text = FocusedText();
  return (text != nullptr && text->CanRedo()) || (IsIdle() && document_.CanRedo());
}

bool MainWindow::CanEditAction() const {
  return IsIdle() && actions_->Selected() >= 0 && actions_->Selected() < document_.ActionCount();
}

bool MainWindow::CanOpenPages() const {
  if (!CanEditAction() || SelectedAction() == nullptr) return false;
  const RegisteredAction* registered =
      host_.Catalogue().FindAction(document_.ActionType(actions_->Selected()));
  return registered != nullptr && !registered->pages.empty();
}

bool MainWindow::CanMoveUp() const { return CanEditAction() && actions_->Selected() > 0; }
bool MainWindow::CanMoveDown() const {
  return CanEditAction() && actions_->Selected() + 1 < document_.ActionCount();
}
bool MainWindow::CanAdd() const { return IsIdle() && !catalogue_->Selected().empty(); }

void MainWindow::AddAction(const std::string& displayName, int index) {
  if (!IsIdle() || !properties_->Commit()) return;
  if (!Guarded("The action was not added", [&] { document_.Add(displayName, index); })) return;
  build_.Inserted(index);
  ShowDocument(index);
}

void MainWindow::AddSelected() { AddAction(catalogue_->Selected(), document_.ActionCount()); }

void MainWindow::MoveAction(int from, int to) {
  if (!IsIdle() || from == to || !properties_->Commit()) return;
  if (!Guarded("The action was not moved", [&] { document_.Move(from, to); })) return;
  build_.Moved(from, to);
  ShowDocument(to);
}

void MainWindow::MoveUp() { MoveAction(actions_->Selected(), actions_->Selected() - 1); }
void MainWindow::MoveDown() { MoveAction(actions_->Selected(), actions_->Selected() + 1); }

// What is typed into the grid is an edit like the others: the one that is undone.
void MainWindow::Undo() {
  if (wxTextEntryBase* text = FocusedText(); text != nullptr && text->CanUndo()) return text->Undo();
  if (!IsIdle() || !properties_->Commit() || !document_.CanUndo()) return;
  int selected = actions_->Selected();
  Guarded("It was not undone", [&] { selected = Chosen(document_.Undo(), selected); });
  build_.ForgetStates(ActionState::Unknown);
  ShowDocument(selected);
}

void MainWindow::Redo() {
  if (wxTextEntryBase* text = FocusedText(); text != nullptr && text->CanRedo()) return text->Redo();
  if (!IsIdle() || !properties_->Commit() || !document_.CanRedo()) return;
  int selected = actions_->Selected();
  Guarded("It was not done again", [&] { selected = Chosen(document_.Redo(), selected); });
  build_.ForgetStates(ActionState::Unknown);
  ShowDocument(selected);
}

void MainWindow::Duplicate() {
  if (!properties_->Commit()) return;
  const int index = actions_->Selected();
  if (!Guarded("The action was not duplicated", [&] { document_.Duplicate(index); })) return;
  build_.Inserted(index + 1);
  ShowDocument(index + 1);
}

void MainWindow::Delete() {
  if (!properties_->Commit()) return;
  const int index = actions_->Selected();
  if (!Guarded("The action was not deleted", [&] { document_.Remove(index); })) return;
  build_.Removed(index);
  ShowDocument(std::min(index, document_.ActionCount() - 1));
}

void MainWindow::OpenPages() { OpenPagesFor(nullptr); }

// In front is the page of the property's editor, or the first one.
void MainWindow::OpenPagesFor(const PublishedProperty* property) {
  if (!properties_->Commit()) return;
  const int index = actions_->Selected();
  const std::string type = document_.ActionType(index);
  bool isWhole = true;
  Guarded("The pages were not opened", [&] {
    TQXAction& action = *document_.Action(index);
    const std::unique_ptr<PageDialog> pages =
        PageDialog::ForAction(host_.Catalogue().NeedAction(type), action);
    const int page = property == nullptr
                         ? 0
                         : PageOfProperty(host_.Catalogue(), *pages, action, std::string(property->name));
    PagesDialogTexts texts;
    texts.title = ToWx(type);
    texts.written = [&] {
      document_.TakeEdit("Edit " + type, index);
      ShowTitle();
    };
    texts.help = [&](wxWindow* dialog, int) {
      ShowHelpDialog(dialog, folders_, document_.Action(index)->GetQuickHelpFilename());
    };
    texts.ask = AskOverPages;
    isWhole = ShowPagesDialog(this, *pages, page, texts);
  });
  if (!isWhole) Guarded("The action was not put back", [this] { document_.DropOutsideEdits(); });
  ShowDocument(index);
}

void MainWindow::ShowOptions() {
  Guarded("The options were not opened", [&] {
    const std::unique_ptr<PageDialog> pages = PageDialog::ForOptions(host_.Catalogue());
    PagesDialogTexts texts;
    texts.title = "Options";
    texts.written = [this] { host_.Catalogue().SaveOptions(); };
    if (!ShowPagesDialog(this, *pages, 0, texts)) host_.Catalogue().RestoreOptions();
  });
}

void MainWindow::EditVariables() {
  if (!properties_->Commit()) return;
  EditVariablesIn(this, document_.Variables(), [this](const ProjectVariables& variables) {
    return Guarded("The variables were not set", [&] { document_.SetVariables(variables); });
  });
  ShowDocument(actions_->Selected());
}

// The commands of the menu "Edit" that are about one action.
void MainWindow::ShowMenu() {
  wxMenu menu;
  wxMenuBar& bar = *GetMenuBar();
  for (const Command& command : Commands()) {
    const bool isAction =
        command.enabled == &MainWindow::CanEditAction || command.enabled == &MainWindow::CanOpenPages ||
        command.enabled == &MainWindow::CanMoveUp || command.enabled == &MainWindow::CanMoveDown;
    if (!isAction) continue;
    const int id = bar.FindMenuItem(wxString(command.menu), wxString(command.label).BeforeFirst('\t'));
    if (id != wxNOT_FOUND) menu.Append(id, command.label);
  }
  actions_->PopUp(menu);
}

}  // namespace qx::desktop
