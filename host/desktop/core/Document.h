// The build project that is being edited: its actions alive, every edit a step that can be undone, and what
// somebody else wrote into its file never overwritten unseen. No pixel: the window shows it.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/Host.h"
#include "platform/files/Files.h"

namespace qx::desktop {

// The newest steps are kept: so many, and fewer when the texts of more would take more bytes; one at least.
struct HistoryLimits {
  std::size_t steps = 500;
  std::size_t bytes = std::size_t{64} << 20;
};

// User-interface thread. Every operation that changes something raises Exception when it cannot, and the
// document is then as it was. Actions, and references to them, are replaced by New, Open, Undo, Redo,
// SetVariables, DropOutsideEdits, Renew, whatever changes their number or order, and an edit that failed: ask
// anew afterwards. What an action does not save (properties that are not stored) is then as after opening.
//
// A step of the history is the project's text before and after it, as it would be saved: no secret stands
// there in clear.
class Document {
 public:
  // An untitled project without actions. Host and log outlive it; the log is where its actions write.
  Document(Host& host, ActionLog& log, HistoryLimits limits = {});
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  void New();
  // The current folder is the project's from then on, as relative paths in it ask for; so after SaveAs.
  void Open(const std::string& file);
  // Writes it and returns warnings, each a sentence. A file that somebody else changed meanwhile is not
  // overwritten: raises ChangedOnDisk (Overwrite does it all the same).
  enum class Overwrite { No, Yes };
  std::vector<std::string> Save(Overwrite overwrite = Overwrite::No);
  // The same for who holds the lock on File() already.
  std::vector<std::string> SaveLocked(const FileLock& lock, Overwrite overwrite = Overwrite::No);
  // On the thread of a run that goes on: what its actions are now, without a step of the history. Raises what
  // SaveLocked raises.
  std::vector<std::string> SaveDuringRun(const FileLock& lock);
  // A file of that name is replaced.
  std::vector<std::string> SaveAs(const std::string& file);
  class ChangedOnDisk;
  // Whether somebody else changed the file since it was read or saved here; a file that is gone did not
  // change. Raises Exception when it cannot be read.
  bool IsChangedOnDisk() const;

  // Absolute; empty while untitled.
  const std::string& File() const { return file_; }
  // Whether its steps lead away from what was opened or saved last.
  bool IsModified() const;

  int ActionCount() const;
  // The display name under which the action stands in the file.
  std::string ActionType(int index) const;
  // Null when no loaded package has it; such actions are kept, moved, duplicated and removed like others.
  TQXAction* Action(int index) const;
  OpenProject& Project() { return *project_; }
  // The project as it is now a second time, with actions of its own that write to the log. The document
  // outlives it.
  std::unique_ptr<OpenProject> Copy(ActionLog& log);

  // Edits; each is one step of the history, unless it changes nothing. Indexes count from 0.
  void Add(const std::string& displayName, int index);
  void Remove(int index);
  void Move(int from, int to);  // `to` is where it stands afterwards
  void Duplicate(int index);    // the copy stands behind it
  // Through the property's setter, and tells the action as an editor does; what that does to other properties
  // is part of the step. Raises what the setter raises.
  void SetProperty(int index, const PublishedProperty& property, const PropertyValue& value);
  // The project's own variables, in their order.
  std::vector<std::pair<std::string, std::string>> Variables() const;
  void SetVariables(const std::vector<std::pair<std::string, std::string>>& variables);
  // What was done to the actions from outside (their pages, a run) becomes a step of that name about that
  // action; false when nothing changed. Every other edit, Undo and Save take it too when it was not taken.
  bool TakeEdit(const std::string& what, int action = -1);
  // Undoes what was done from outside and not taken.
  void DropOutsideEdits();
  // Makes the actions anew: what they keep beside their properties is gone.
  void Renew();

  bool CanUndo() const;
  bool CanRedo() const;
  // What would be undone or redone: "Add Run MSTest"; empty for nothing.
  std::string UndoName() const;
  std::string RedoName() const;
  // Both return the index of the action that the step was about, -1 for none: the one to select.
  int Undo();
  int Redo();

 private:
  using Text = std::shared_ptr<const std::string>;
  struct Step {
    Text before;
    Text after;
    std::string name;
    int undone;  // the action to select
    int redone;
  };

  std::string Name() const;
  void Write(const std::string& text, Overwrite overwrite);
  void NeedAction(int index) const;
  std::unique_ptr<OpenProject> Make(BuildProject project);
  template <class MakeNext>
  void Edit(const std::string& name, int undone, int redone, MakeNext makeNext);
  template <class Change>
  void EditText(const std::string& name, int undone, int redone, Change change);
  void Begin(std::string file, std::unique_ptr<OpenProject> project);
  void Push(std::string text, const std::string& name, int undone, int redone);
  void GoTo(const Text& text);
  int Selectable(int index) const;

  Host& host_;
  ActionLog& log_;
  HistoryLimits limits_;
  std::string file_;
  std::unique_ptr<OpenProject> project_;
  Text text_;          // the project as the last step left it
  Text saved_;         // as it was opened or saved last
  std::string taken_;  // what the actions gave when the last step was done: others edit them too
  std::optional<std::string> onDisk_;  // the file's bytes as read or written last
  std::string clearTextWarning_;       // told by the next Save; empty: nothing to tell
  std::deque<Step> steps_;
  std::size_t done_ = 0;   // of the steps; the others can be redone
  std::size_t bytes_ = 0;  // of the texts after the steps
};

// Somebody else changed the project's file since it was read or saved here.
class Document::ChangedOnDisk : public Exception {
 public:
  using Exception::Exception;
};

}  // namespace qx::desktop
