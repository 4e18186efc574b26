// The commands `new`, `add`, `set`, `show` and `expand`.
#include <cstdio>
#include <nlohmann/json.hpp>

#include "host/HostArguments.h"
#include "host/actions/ActionHost.h"
#include "host/actions/PropertyText.h"
#include "host/cli/Commands.h"
#include "host/cli/Report.h"
#include "host/cli/Session.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxversions.h"

namespace qx::cli {
namespace {

// A secret need not stand on the command line, where others may read it and a shell keeps it: "-" is what standard
// input gives, "@FILE" what the file holds, either without its last line end.
std::string SecretFrom(const std::string& value) {
  std::string secret = value;
  if (value == "-") {
    secret.clear();
    char buffer[1024];
    while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, stdin)) secret.append(buffer, size);
  } else if (value.starts_with('@')) {
    secret = ReadFile(ExpandPath("", value.substr(1)));
  } else {
    return secret;
  }
  if (secret.ends_with('\n')) secret.pop_back();
  if (secret.ends_with('\r')) secret.pop_back();
  return secret;
}

// Every value is read before the first is set, so that a wrong one changes nothing.
void SetAll(TQXAction& action, std::span<const std::string> assignments) {
  const PropertyTable table = action.GetActionClass()->properties;
  std::vector<std::pair<const PublishedProperty*, PropertyValue>> values;
  for (const std::string& text : assignments) {
    const auto [name, value] = SplitAssignment(text);
    const PublishedProperty& property = NeedProperty(table, name);
    const bool isSecret = property.storage == PropertyStorage::Secret;
    values.emplace_back(&property, PropertyFromText(property, isSecret ? SecretFrom(value) : value));
  }
  for (const auto& [property, value] : values) property->set(action, value);
  IQXVersions* const versions = VersionsOf(action);
  if (versions == nullptr) return;
  for (const auto& [property, value] : values) {
    const std::string warning =
        versions->WarnOfText(std::string(property->name), PropertyToText(*property, value));
    if (!warning.empty()) Session::Warn(warning);
  }
}

bool IsHidden(const TStringList& hidden, std::string_view name) { return hidden.IndexOf(name) >= 0; }

TStringList HiddenOf(TQXAction& action) {
  TStringList hidden;
  action.GetHiddenProperties(hidden);
  return hidden;
}

// Hidden properties that somebody set: those that a new action has otherwise. Internal ones, whose names begin with "_",
// speak of others that are shown.
bool IsSet(TQXAction& action, TQXAction& fresh, const PublishedProperty& property) {
  if (property.storage != PropertyStorage::Stored || property.name.starts_with('_')) return false;
  return PropertyToText(property, property.get(action)) != PropertyToText(property, property.get(fresh));
}

std::string ActionAsText(const OpenProject& project, int index, bool all) {
  std::string text = std::to_string(index + 1) + " " + project.ActionType(index) +
                     (project.IsEnabled(index) ? "\n" : " (disabled)\n");
  TQXAction* action = project.Action(index);
  if (action == nullptr)
    return text + "    (no loaded package has this action; its properties are only kept)\n";
  const TStringList hidden = HiddenOf(*action);
  const std::unique_ptr<TQXAction> fresh = MakeAction(*action->GetActionClass(), {});
  for (const PublishedProperty& property : action->GetActionClass()->properties) {
    if (all || !IsHidden(hidden, property.name) || IsSet(*action, *fresh, property))
      text += PropertyLine(*action, property);
  }
  return text;
}

Json ActionAsJson(const OpenProject& project, int index, bool all) {
  TQXAction* action = project.Action(index);
  Json json{{"number", index + 1},
            {"type", project.ActionType(index)},
            {"enabled", project.IsEnabled(index)},
            {"known", action != nullptr}};
  if (action == nullptr) return json;
  Json properties = Json::object();
  const TStringList hidden = HiddenOf(*action);
  for (const PublishedProperty& property : action->GetActionClass()->properties) {
    if (all || !IsHidden(hidden, property.name))
      properties[std::string(property.name)] = PropertyAsJson(*action, property);
  }
  json["properties"] = std::move(properties);
  json["dynamicProperties"] = action->Host().dynamicProperties;
  return json;
}

}  // namespace

int NewProject(Session&, const Invocation& invocation) {
  const std::string file = ExpandPath("", invocation.operands[0]);
  if (FileExists(file) || FolderExists(file))
    throw Exception(file + " exists already and is not overwritten");
  BuildProject::Empty(file).Save();
  return 0;
}

int AddAction(Session& session, const Invocation& invocation) {
  const std::string name = session.Packages().NeedAction(invocation.operands[1]).displayName;
  const std::string file = Session::ProjectFile(invocation);
  const FileLock lock(file);
  OpenProject project = session.Open(file, invocation);
  SetAll(project.Append(name), std::span(invocation.operands).subspan(2));
  Session::Save(project);
  return 0;
}

int SetProperties(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  const FileLock lock(file);
  OpenProject project = session.Open(file, invocation);
  SetAll(Session::ActionOf(project, ActionNumber(invocation)), std::span(invocation.operands).subspan(1));
  Session::Save(project);
  return 0;
}

int ShowProject(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  const OpenProject project = session.Open(file, invocation);
  const bool all = invocation.Has("--all");
  if (invocation.Has("--json")) {
    Json variables = Json::object();
    for (const auto& [name, value] : project.Project().Variables()) variables[name] = value;
    Json actions = Json::array();
    for (int i = 0; i < project.ActionCount(); ++i) actions.push_back(ActionAsJson(project, i, all));
    session.Print(AsLines(Json{{"file", file}, {"variables", variables}, {"actions", actions}}));
    return 0;
  }
  std::string text;
  const auto variables = project.Project().Variables();
  if (!variables.empty()) text += "Variables\n";
  for (const auto& [name, value] : variables) text += AssignmentLine(name, value);
  for (int i = 0; i < project.ActionCount(); ++i)
    text += (text.empty() ? "" : "\n") + ActionAsText(project, i, all);
  session.Print(text);
  return 0;
}

int ExpandText(Session& session, const Invocation& invocation) {
  std::optional<BuildProject> project;
  if (const auto file = invocation.Value("--project")) project = BuildProject::Load(ExpandPath("", *file));
  session.UseVariables(invocation, project ? &*project : nullptr);
  // As the actions do: what a variable holds is expanded in turn.
  constexpr bool kNested = true;
  session.PrintExact(session.Variables().Expand(invocation.operands[0], kNested) + "\n");
  return 0;
}

}  // namespace qx::cli
