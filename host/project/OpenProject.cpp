#include "host/project/OpenProject.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/files/Files.h"

namespace qx {

namespace {

using Value = std::variant<std::string, std::vector<std::string>>;

class CapturingWriter : public IQXStateWriter {
 public:
  void WriteText(std::string_view name, const std::string& value) override { values.emplace(name, value); }
  void WriteList(std::string_view name, const TStringList& value) override {
    values.emplace(name, value.Items());
  }
  std::map<std::string, Value, std::less<>> values;
};

std::string ForPeople(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return Join(std::get<std::vector<std::string>>(value), ";");
}

}  // namespace

OpenProject::OpenProject(BuildProject project, FindClass findClass, const ActionSurroundings& surroundings)
    : project_(std::move(project)),
      loadedText_(project_.Text()),
      findClass_(std::move(findClass)),
      surroundings_(surroundings) {
  for (int i = 0; i < ActionCount(); ++i) {
    actions_.push_back(Make(i));
    opened_.emplace_back();
    TQXAction* action = actions_.back().get();
    if (action == nullptr) continue;
    project_.ReadAction(i, *action);
    opened_.back() = Capture(*action);
    if (surroundings_.log != nullptr) GuardSecrets(*action, *surroundings_.log);
  }
  saved_ = opened_;
}

OpenProject::State OpenProject::Capture(TQXAction& action) {
  CapturingWriter writer;
  action.WriteState(writer);
  return std::move(writer.values);
}

std::vector<OpenProject::State> OpenProject::States() const {
  std::vector<State> states;
  for (const auto& action : actions_) states.push_back(action == nullptr ? State() : Capture(*action));
  return states;
}

bool OpenProject::IsChanged() const { return States() != saved_; }

void OpenProject::CountChangesFromHere() {
  opened_ = States();
  saved_ = opened_;
}

std::vector<KeptNumber> OpenProject::ChangedNumbers() const {
  std::vector<KeptNumber> numbers;
  const std::vector<State> now = States();
  for (std::size_t i = 0; i < now.size(); ++i) {
    for (const auto& [name, value] : now[i]) {
      const auto before = opened_[i].find(name);
      if (before == opened_[i].end() || before->second == value) continue;
      const auto* from = std::get_if<std::string>(&before->second);
      const auto* to = std::get_if<std::string>(&value);
      if (from != nullptr && to != nullptr) numbers.push_back({static_cast<int>(i) + 1, name, *from, *to});
    }
  }
  return numbers;
}

// The action of an index as it is when it is new; null when no loaded package has it.
std::unique_ptr<TQXAction> OpenProject::Make(int index) {
  const TQXActionClass* actionClass = findClass_(ActionType(index));
  ActionSurroundings surroundings = surroundings_;
  surroundings.number = index + 1;
  return actionClass == nullptr ? nullptr : MakeAction(*actionClass, surroundings);
}

TQXAction& OpenProject::Insert(const std::string& displayName, int index) {
  if (findClass_(displayName) == nullptr)
    throw Exception("No loaded package has the action \"" + displayName + "\"");
  project_.InsertAction(index, displayName);
  actions_.insert(actions_.begin() + index, Make(index));
  opened_.emplace(opened_.begin() + index);
  saved_.emplace(saved_.begin() + index);
  for (int i = index + 1; i < ActionCount(); ++i) {
    if (Action(i) == nullptr) continue;
    ActionSurroundings surroundings = surroundings_;
    surroundings.number = i + 1;
    MoveAction(*Action(i), surroundings);
  }
  return *Action(index);
}

std::string OpenProject::TextToSave() {
  for (int i = 0; i < ActionCount(); ++i) {
    if (Action(i) != nullptr && project_.WriteAction(i, *Action(i))) hadClearText_ = true;
  }
  return project_.Text();
}

std::vector<std::string> OpenProject::Save() {
  if (FileExists(File())) {
    const std::string now = ReadFile(File());
    if (now != loadedText_) {
      return SaveInto(BuildProject::Parse(now, File()));
    }
  }
  std::string text = TextToSave();
  project_.Save();
  loadedText_ = std::move(text);
  saved_ = States();
  std::vector<std::string> warnings = Warnings();
  hadClearText_ = false;
  return warnings;
}

std::string OpenProject::ClearTextWarning() const {
  return File() + ": a secret stood there in clear text; only its encrypted form was kept";
}

bool OpenProject::EncryptSecrets(BuildProject& project, int index) const {
  const PropertyTable table = Action(index)->GetActionClass()->properties;
  const bool hasClearText = std::any_of(table.begin(), table.end(), [&](const PublishedProperty& property) {
    return property.storage == PropertyStorage::Secret && project.Has(index, property.name);
  });
  if (!hasClearText) return false;
  const auto reader = MakeAction(*Action(index)->GetActionClass(), surroundings_);
  project.ReadAction(index, *reader);
  project.WriteAction(index, *reader);
  return true;
}

std::string OpenProject::WithoutSecrets(std::string bytes) const {
  BuildProject shown = BuildProject::Parse(std::move(bytes), File());
  for (int i = 0; i < shown.ActionCount(); ++i) {
    const TQXActionClass* actionClass = findClass_(shown.ActionType(i));
    if (actionClass == nullptr) continue;
    for (const PublishedProperty& property : actionClass->properties) {
      if (property.storage != PropertyStorage::Secret || !shown.Has(i, property.name)) continue;
      shown.WriteText(i, property.name, "***", "");
    }
  }
  return shown.Text();
}

// Somebody edited the file meanwhile: only what changed here goes in, all else is theirs
// (docs/deliberate.md).
std::vector<std::string> OpenProject::SaveInto(BuildProject fresh) {
  std::vector<std::string> warnings = {
      File() + " was changed by somebody else meanwhile; only the values that changed here were written"};
  std::string lost;
  bool hadClearText = false;
  for (int i = 0; i < ActionCount(); ++i) {
    if (Action(i) == nullptr) continue;
    const State after = Capture(*Action(i));
    const bool found = i < fresh.ActionCount() && fresh.ActionType(i) == ActionType(i);
    if (found && EncryptSecrets(fresh, i)) hadClearText = true;
    std::string previous;  // the last property of the order of declaration that stands in the file
    for (const PublishedProperty& property : Action(i)->GetActionClass()->properties) {
      const std::string name(property.name);
      const auto value = after.find(name);
      if (value == after.end()) continue;
      const auto before = saved_[static_cast<std::size_t>(i)].find(name);
      const bool changed =
          before == saved_[static_cast<std::size_t>(i)].end() || before->second != value->second;
      if (changed && !found) {
        lost += (lost.empty() ? "" : ", ") + name + "=" + ForPeople(value->second);
      } else if (changed) {
        if (const auto* text = std::get_if<std::string>(&value->second))
          fresh.WriteText(i, name, *text, previous);
        else
          fresh.WriteList(i, name, std::get<std::vector<std::string>>(value->second), previous);
      }
      if (found && fresh.Has(i, name)) previous = name;
    }
  }
  if (!lost.empty()) {
    throw Exception(File() +
                    " was changed by somebody else meanwhile and lacks an action; not saved: " + lost);
  }
  fresh.Save();
  saved_ = States();
  if (hadClearText) warnings.push_back(ClearTextWarning());
  return warnings;
}

std::optional<std::vector<std::string>> OpenProject::StoredTexts() const {
  std::vector<std::string> texts;
  for (int i = 0; i < ActionCount(); ++i) {
    if (!IsEnabled(i)) continue;
    if (Action(i) == nullptr) return std::nullopt;
    for (const auto& [name, value] : Capture(*Action(i))) texts.push_back(ForPeople(value));
  }
  return texts;
}

std::vector<std::string> OpenProject::Warnings() const {
  const std::vector<std::string> unknown =
      project_.Unknown([&](const std::string& type) -> std::optional<PropertyTable> {
        const TQXActionClass* actionClass = findClass_(type);
        if (actionClass == nullptr) return std::nullopt;
        return actionClass->properties;
      });
  std::vector<std::string> warnings;
  if (!unknown.empty())
    warnings.push_back(File() + " holds what this host does not know and only keeps: " + Join(unknown, "; "));
  if (hadClearText_) warnings.push_back(ClearTextWarning());
  return warnings;
}

}  // namespace qx
