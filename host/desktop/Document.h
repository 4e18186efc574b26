// The build project that is being edited: its actions alive, every edit a step that can be undone, and what
// somebody else wrote into its file never overwritten unseen. No pixel: the window shows it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/runtime/Host.h"

namespace qx::desktop {

// User-interface thread. Every operation that changes something raises Exception when it cannot, and the
// document is then as it was. Actions, and references to them, are replaced by Open, Undo, Redo and whatever
// changes their number or order: ask anew afterwards.
class Document {
 public:
  // An untitled project without actions. Host and log outlive it; the log is where its actions write.
  Document(Host& host, ActionLog& log);
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
  std::vector<std::string> SaveAs(const std::string& file);
  class ChangedOnDisk;

  // Absolute; empty while untitled.
  const std::string& File() const { return file_; }
  // Whether it differs from what was opened or saved last.
  bool IsModified() const;

  int ActionCount() const;
  // The display name under which the action stands in the file.
  std::string ActionType(int index) const;
  // Null when no loaded package has it; such actions are kept, moved, duplicated and removed like others.
  TQXAction* Action(int index) const;
  OpenProject& Project() { return *project_; }

  // Edits; each is one step of the history. Indexes count from 0.
  void Add(const std::string& displayName, int index);
  void Remove(int index);
  void Move(int from, int to);  // `to` is where it stands afterwards
  void Duplicate(int index);    // the copy stands behind it
  // Through the property's setter. Raises what the setter raises.
  void SetProperty(int index, const PublishedProperty& property, const PropertyValue& value);
  // The project's own variables, in their order.
  std::vector<std::pair<std::string, std::string>> Variables() const;
  void SetVariables(const std::vector<std::pair<std::string, std::string>>& variables);
  // What was done to the actions from outside (their pages, a run) becomes a step of that name; false when
  // nothing changed.
  bool TakeEdit(const std::string& what);

  bool CanUndo() const;
  bool CanRedo() const;
  // What would be undone or redone: "Add Run MSTest"; empty for nothing.
  std::string UndoName() const;
  std::string RedoName() const;
  // Both return the index of the action that the step was about, -1 for none: the one to select.
  int Undo();
  int Redo();

 private:
  struct Step;
  Host& host_;
  ActionLog& log_;
  std::string file_;
  std::unique_ptr<OpenProject> project_;
};

// Somebody else changed the project's file since it was read or saved here.
class Document::ChangedOnDisk : public Exception {
 public:
  using Exception::Exception;
};

}  // namespace qx::desktop
