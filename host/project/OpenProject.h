// A build project with its actions alive: made from their classes, loaded, and written back. What a command
// does to a project it does to one of these.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/actions/ActionHost.h"
#include "host/history/KeptRun.h"
#include "host/project/BuildProject.h"

namespace qx {

class OpenProject {
 public:
  // The class that the catalogue holds under a display name; null when no loaded package has it.
  using FindClass = std::function<const TQXActionClass*(const std::string& displayName)>;

  // Makes and loads every action that the catalogue knows; each gets the surroundings with its own number,
  // and its secrets are kept out of the log from then on. Raises Exception naming the file and line.
  OpenProject(BuildProject project, FindClass findClass, const ActionSurroundings& surroundings);

  const std::string& File() const { return project_.File(); }
  const BuildProject& Project() const { return project_; }
  int ActionCount() const { return project_.ActionCount(); }
  std::string ActionType(int index) const { return project_.ActionType(index); }
  // A disabled action is passed over by whoever runs the project.
  bool IsEnabled(int index) const { return project_.IsEnabled(index); }
  // The action at a zero-based index; null when no loaded package has it. This object's.
  TQXAction* Action(int index) const { return actions_.at(static_cast<std::size_t>(index)).get(); }

  // Puts an action of a display name that the catalogue has, with its defaults, at an index or behind all
  // others, and returns it. Raises Exception when no loaded package has it.
  TQXAction& Insert(const std::string& displayName, int index);
  TQXAction& Append(const std::string& displayName) { return Insert(displayName, ActionCount()); }

  // The project's text with the stored properties of every action as they are now, which is what Save writes
  // while nobody else changed the file. Never holds the clear text of a secret of an action that is loaded.
  std::string TextToSave();
  // The warnings that go with it: what is kept without being known, and a secret whose clear text was taken
  // out since the project was opened or saved.
  std::vector<std::string> Warnings() const;
  bool TookSecretOut() const { return hadClearText_; }
  std::string ClearTextWarning() const;
  // The project goes by another file's name from now on; nothing is written.
  void SetFile(const std::string& file) { project_.SetFile(file); }

  // Saves the stored properties of every action atomically and returns warnings: what is kept without being
  // known, and a secret whose clear text was taken out. When somebody else changed the file since it was
  // read, only the values that changed here go into the file as it is now. Raises Exception naming the file,
  // and then the values that could not be saved too.
  std::vector<std::string> Save();

  // The texts of all stored properties of the enabled actions, in which variables may stand. None when it is
  // not known what stands in one of them: no loaded package has it.
  std::optional<std::vector<std::string>> StoredTexts() const;

  // Whether a stored property of an action is another than when the project was opened or saved.
  bool IsChanged() const;
  // What ChangedNumbers and IsChanged tell counts from here on: a run begins with a project that was edited.
  void CountChangesFromHere();
  // The text properties that are others than when the project was opened, or than there.
  std::vector<KeptNumber> ChangedNumbers() const;

  // Bytes of the project's file as people may see them: "***" for a secret that stands there in clear text.
  std::string WithoutSecrets(std::string bytes) const;

 private:
  using State = std::map<std::string, std::variant<std::string, std::vector<std::string>>, std::less<>>;
  static State Capture(TQXAction& action);
  std::unique_ptr<TQXAction> Make(int index);
  std::vector<std::string> SaveInto(BuildProject fresh);
  std::vector<State> States() const;
  // Puts the encrypted form in the place of each secret that stands in clear text in the action of an index,
  // which is of our action's type; whether there was one.
  bool EncryptSecrets(BuildProject& project, int index) const;

  BuildProject project_;
  std::string loadedText_;
  FindClass findClass_;
  ActionSurroundings surroundings_;
  std::vector<std::unique_ptr<TQXAction>> actions_;
  std::vector<State> opened_;  // the values as they were read, one map an action
  std::vector<State> saved_;   // as they were read or saved last
  bool hadClearText_ = false;  // a secret's clear text was taken out of the project
};

}  // namespace qx
