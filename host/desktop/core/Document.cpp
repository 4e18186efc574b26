#include "host/desktop/core/Document.h"

#include <algorithm>

#include "host/system/HostProgram.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

// How an edit is named that was made from outside and not taken before the next one.
constexpr const char* kOutsideEdit = "Change";

}  // namespace

Document::Document(Host& host, ActionLog& log, HistoryLimits limits)
    : host_(host), log_(log), limits_(limits) {
  New();
}
Document::~Document() = default;

std::string Document::Name() const { return file_.empty() ? "Untitled" : file_; }

void Document::NeedAction(int index) const {
  if (index < 0 || index >= ActionCount())
    throw Exception(Name() + " has no action " + std::to_string(index + 1));
}

// The variables of a project that could not be opened do not stay in force.
std::unique_ptr<OpenProject> Document::Make(BuildProject project) {
  try {
    return std::make_unique<OpenProject>(host_.Open(std::move(project), &log_));
  } catch (...) {
    if (project_ != nullptr) host_.UseProjectVariables(project_->Project());
    throw;
  }
}

// With another project in the place of this one, and without a history.
void Document::Begin(std::string file, std::unique_ptr<OpenProject> project) {
  std::string text = project->TextToSave();
  std::string warning;
  if (project->TookSecretOut()) {
    warning = project->ClearTextWarning();
    project = Make(BuildProject::Parse(text, project->File()));
  }
  taken_ = project->TextToSave();
  project_ = std::move(project);
  file_ = std::move(file);
  text_ = std::make_shared<const std::string>(std::move(text));
  saved_ = text_;
  clearTextWarning_ = std::move(warning);
  steps_.clear();
  done_ = 0;
  bytes_ = 0;
}

void Document::New() {
  Begin("", Make(BuildProject::Empty("Untitled")));
  onDisk_.reset();
}

void Document::Open(const std::string& file) {
  const std::string path = ExpandPath("", file);
  std::string bytes = ReadFile(path);
  std::unique_ptr<OpenProject> project = Make(BuildProject::Parse(bytes, path));
  try {
    SetCurrentFolder(FolderPart(path));
    Begin(path, std::move(project));
  } catch (...) {
    host_.UseProjectVariables(project_->Project());
    throw;
  }
  onDisk_ = std::move(bytes);
}

bool Document::IsChangedOnDisk() const { return onDisk_ && FileExists(file_) && ReadFile(file_) != *onDisk_; }

std::vector<std::string> Document::Save(Overwrite overwrite) {
  if (file_.empty()) throw Exception("The project has no file yet: save it under a name");
  const FileLock lock(file_);
  return SaveLocked(lock, overwrite);
}

void Document::Write(const std::string& text, Overwrite overwrite) {
  if (overwrite == Overwrite::No && IsChangedOnDisk())
    throw ChangedOnDisk(file_ + " was changed by somebody else since it was opened; it is not overwritten");
  ReplaceFile(file_, text);
  onDisk_ = text;
}

std::vector<std::string> Document::SaveDuringRun(const FileLock&) {
  Write(project_->TextToSave(), Overwrite::No);
  return project_->Warnings();
}

std::vector<std::string> Document::SaveLocked(const FileLock&, Overwrite overwrite) {
  TakeEdit(kOutsideEdit);
  Write(*text_, overwrite);
  saved_ = text_;
  std::vector<std::string> warnings = project_->Warnings();
  if (!clearTextWarning_.empty()) warnings.push_back(std::exchange(clearTextWarning_, {}));
  return warnings;
}

std::vector<std::string> Document::SaveAs(const std::string& file) {
  const std::string path = ExpandPath("", file);
  const FileLock lock(path);
  TakeEdit(kOutsideEdit);
  ReplaceFile(path, *text_);
  file_ = path;
  project_->SetFile(path);
  SetCurrentFolder(FolderPart(path));
  return SaveLocked(lock, Overwrite::Yes);
}

bool Document::IsModified() const { return *text_ != *saved_; }

int Document::ActionCount() const { return project_->ActionCount(); }

std::string Document::ActionType(int index) const {
  NeedAction(index);
  return project_->ActionType(index);
}

TQXAction* Document::Action(int index) const {
  NeedAction(index);
  return project_->Action(index);
}

std::unique_ptr<OpenProject> Document::Copy(ActionLog& log) {
  return std::make_unique<OpenProject>(
      host_.Open(BuildProject::Parse(project_->TextToSave(), project_->File()), &log));
}

// The document goes on with the project that `makeNext` gives, whole or not at all.
template <class MakeNext>
void Document::Edit(const std::string& name, int undone, int redone, MakeNext makeNext) {
  TakeEdit(kOutsideEdit);
  std::unique_ptr<OpenProject> next = makeNext();
  std::string text;
  try {
    text = next->TextToSave();
  } catch (...) {
    host_.UseProjectVariables(project_->Project());
    throw;
  }
  project_ = std::move(next);
  taken_ = text;
  Push(std::move(text), name, undone, redone);
}

// An edit of the project's text.
template <class Change>
void Document::EditText(const std::string& name, int undone, int redone, Change change) {
  Edit(name, undone, redone, [&] {
    BuildProject project = BuildProject::Parse(*text_, Name());
    change(project);
    return Make(std::move(project));
  });
}

void Document::Add(const std::string& displayName, int index) {
  if (index < 0 || index > ActionCount()) throw Exception("An action cannot be added there");
  const std::string& type = host_.Packages().NeedAction(displayName).displayName;
  Edit("Add " + type, index, index, [&] {
    std::unique_ptr<OpenProject> project = Make(BuildProject::Parse(*text_, Name()));
    project->Insert(type, index);
    return project;
  });
}

void Document::Remove(int index) {
  EditText("Remove " + ActionType(index), index, index,
           [&](BuildProject& project) { project.RemoveAction(index); });
}

void Document::Move(int from, int to) {
  NeedAction(to);
  EditText("Move " + ActionType(from), from, to,
           [&](BuildProject& project) { project.MoveAction(from, to); });
}

void Document::Duplicate(int index) {
  EditText("Duplicate " + ActionType(index), index, index + 1,
           [&](BuildProject& project) { project.DuplicateAction(index); });
}

void Document::SetProperty(int index, const PublishedProperty& property, const PropertyValue& value) {
  TQXAction* action = Action(index);
  if (action == nullptr)
    throw Exception("No loaded package has the action \"" + ActionType(index) + "\"; it is only kept");
  TakeEdit(kOutsideEdit);
  try {
    property.set(*action, value);
    action->Updated();
    TakeEdit("Change " + std::string(property.name), index);
  } catch (...) {
    DropOutsideEdits();
    throw;
  }
}

std::vector<std::pair<std::string, std::string>> Document::Variables() const {
  return project_->Project().Variables();
}

void Document::SetVariables(const std::vector<std::pair<std::string, std::string>>& variables) {
  EditText("Change variables", -1, -1, [&](BuildProject& project) { project.SetVariables(variables); });
}

bool Document::TakeEdit(const std::string& what, int action) {
  std::string text = project_->TextToSave();
  if (text == taken_) return false;
  taken_ = text;
  Push(std::move(text), what, action, action);
  return true;
}

// A setter that refused at once, for one, leaves nothing to put back.
void Document::DropOutsideEdits() {
  if (project_->TextToSave() != taken_) GoTo(text_);
}

void Document::Renew() {
  TakeEdit(kOutsideEdit);
  GoTo(text_);
}

// What stood to be redone is lost, and the oldest steps are when there are too many.
void Document::Push(std::string text, const std::string& name, int undone, int redone) {
  if (text == *text_) return;
  for (; steps_.size() > done_; steps_.pop_back()) bytes_ -= steps_.back().after->size();
  bytes_ += text.size();
  const Text after = std::make_shared<const std::string>(std::move(text));
  steps_.push_back({text_, after, name, undone, redone});
  text_ = after;
  while (steps_.size() > limits_.steps || (bytes_ > limits_.bytes && steps_.size() > 1)) {
    bytes_ -= steps_.front().after->size();
    steps_.pop_front();
  }
  done_ = steps_.size();
}

// The actions as a text of the history has them.
void Document::GoTo(const Text& text) {
  std::unique_ptr<OpenProject> project = Make(BuildProject::Parse(*text, Name()));
  taken_ = project->TextToSave();
  project_ = std::move(project);
  text_ = text;
}

int Document::Selectable(int index) const { return std::min(index, ActionCount() - 1); }

bool Document::CanUndo() const { return done_ > 0; }
bool Document::CanRedo() const { return done_ < steps_.size(); }
std::string Document::UndoName() const { return CanUndo() ? steps_[done_ - 1].name : ""; }
std::string Document::RedoName() const { return CanRedo() ? steps_[done_].name : ""; }

int Document::Undo() {
  TakeEdit(kOutsideEdit);
  if (!CanUndo()) return -1;
  const Step& step = steps_[done_ - 1];
  GoTo(step.before);
  --done_;
  return Selectable(step.undone);
}

int Document::Redo() {
  if (TakeEdit(kOutsideEdit) || !CanRedo()) return -1;
  const Step& step = steps_[done_];
  GoTo(step.after);
  ++done_;
  return Selectable(step.redone);
}

}  // namespace qx::desktop
