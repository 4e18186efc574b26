// Build projects: the file that holds a build's variables and its actions with their properties. This is the
// core - text to values to text - and what joins it to actions: their state read from it and written into it.
// What the host does not know stays in its place, whatever is written.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/xml/XmlFile.h"
#include "plugin/Qxaction.h"

namespace qx {

class BuildProject {
 public:
  // One without variables and actions. `file` is where it will be saved and what complaints name.
  static BuildProject Empty(std::string file);
  // Raises Exception "FILE(LINE): reason" for what XmlFile refuses, for a <Variables> or <Actions> that
  // stands twice, a nameless variable, property or action, a property that stands twice in its action, and
  // an `enabled` other than True and False.
  static BuildProject Parse(std::string text, std::string file);
  // Parse of a file's content. Raises Exception "Cannot read FILE: reason" too.
  static BuildProject Load(const std::string& file);

  // The file's content; the very bytes read as long as nothing was changed.
  std::string Text() const { return xml_.Text(); }
  const std::string& File() const { return xml_.File(); }
  // Under another name from now on.
  void SetFile(std::string file) { xml_.SetFile(std::move(file)); }
  // Replaces the file atomically; a file that holds these bytes already is not touched. Raises Exception.
  void Save() const;

  // In the order they stand.
  std::vector<std::pair<std::string, std::string>> Variables() const;

  int ActionCount() const { return static_cast<int>(actions_.size()); }
  // The display name of the action at a zero-based index, as the file has it.
  std::string ActionType(int index) const;
  // Appends an action without properties and returns its index.
  int AppendAction(const std::string& type);
  // A disabled action is kept and passed over.
  bool IsEnabled(int index) const;
  void SetEnabled(int index, bool isEnabled);
  // Edits by people. Comments on the lines right above an action move with it, and so does one behind it on
  // its line; all comments stay when it is removed. An index that is none raises std::out_of_range.
  // The new action, without properties, stands at the index; the number of actions appends it.
  void InsertAction(int index, const std::string& type);
  void RemoveAction(int index);
  void MoveAction(int from, int to);  // `to` is where it stands afterwards
  void DuplicateAction(int index);    // the copy, with all that stands in it, comes behind it
  // In this order; variables that stay keep their elements. Raises Exception for an empty name, one that
  // %NAME% cannot mean and, letter case aside, one that stands twice.
  void SetVariables(const std::vector<std::pair<std::string, std::string>>& variables);

  // The values of one action, as text or as items. Null when the file has no such property. Raises Exception
  // "FILE(LINE): NAME ..." when a text holds elements or a list is not made of <Item>s.
  std::optional<std::string> ReadText(int index, std::string_view name) const;
  std::optional<std::vector<std::string>> ReadList(int index, std::string_view name) const;
  bool Has(int index, std::string_view name) const { return static_cast<bool>(FindProperty(index, name)); }
  // Sets one property, behind the property `previous` of the same action (empty: at the front), which gives
  // the order of declaration to an action whose properties are written one after the other. An equal value is
  // left as written.
  void WriteText(int index, std::string_view name, const std::string& value, std::string_view previous);
  void WriteList(int index, std::string_view name, const std::vector<std::string>& items,
                 std::string_view previous);

  // Loads an action: ReadState, then Loaded. Raises Exception naming the file, the line and the property.
  void ReadAction(int index, TQXAction& action) const;
  // Writes an action's stored properties through WriteState, in the order of declaration, and takes out a
  // secret that stands there in clear text. True when there was one.
  bool WriteAction(int index, TQXAction& action);

  // What a lookup by the type of an action gives: its properties, or nothing when no loaded package has that action.
  using KnownActions = std::function<std::optional<PropertyTable>(const std::string& type)>;
  // What stands in the file that the host does not know and only keeps: "2 comments", "the property \"Foo\"
  // of action 1 (line 9)". Empty when there is nothing.
  std::vector<std::string> Unknown(const KnownActions& known) const;

 private:
  explicit BuildProject(XmlFile xml);
  pugi::xml_node ActionAt(int index) const { return actions_.at(static_cast<std::size_t>(index)); }
  pugi::xml_node FindProperty(int index, std::string_view name) const;
  pugi::xml_node PlaceProperty(int index, std::string_view name, std::string_view previous);
  void Index();

  XmlFile xml_;
  pugi::xml_node variables_;  // null when the file has none
  pugi::xml_node actionList_;
  std::vector<pugi::xml_node> actions_;
};

}  // namespace qx
