// The commands `actions`, `package` and `options`.
#include <algorithm>
#include <array>

#include "host/actions/PropertyText.h"
#include "host/cli/Commands.h"
#include "host/cli/Report.h"
#include "host/cli/Session.h"
#include "host/settings/HostSettings.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

constexpr std::array<std::string_view, 5> kKindNames{"text", "integer", "boolean", "enumeration", "list"};
constexpr std::array<std::string_view, 3> kStorageNames{"stored", "not stored", "secret"};

Json PropertyRowAsJson(const PublishedProperty& property) {
  Json json{{"name", property.name},
            {"kind", kKindNames.at(static_cast<std::size_t>(property.kind))},
            {"storage", kStorageNames.at(static_cast<std::size_t>(property.storage))}};
  if (!property.valueNames.empty()) {
    json["values"] = std::vector<std::string>(property.valueNames.begin(), property.valueNames.end());
  }
  return json;
}

std::string CallAsText(const RegistrationCall& call) {
  std::string text = "    " + call.operation;
  for (const RegistrationCall::Argument& argument : call.arguments) {
    const std::string values = Join(argument.values, ", ");
    text += " " + argument.name + "=" + (argument.isList ? "[" + values + "]" : Quoted(values));
  }
  return text + "\n";
}

Json CallAsJson(const RegistrationCall& call) {
  Json json{{"call", call.operation}};
  for (const RegistrationCall::Argument& argument : call.arguments) {
    if (argument.isList)
      json[argument.name] = argument.values;
    else
      json[argument.name] = argument.values.empty() ? "" : argument.values.front();
  }
  return json;
}

std::string PackageAsText(const LoadedPackage& package, const Catalogue& catalogue) {
  std::string text =
      package.File() + "\n  State: " + std::string(PackageStateName(package.State())) + "\n  Units:\n";
  for (const TQXUnit& unit : package.Units()) {
    text += "    " + std::string(unit.name) + " (started " + std::to_string(unit.startCount) + ")\n";
  }
  text += "  Registrations:\n";
  for (std::size_t i = package.FirstCall(); i < package.EndOfCalls(); ++i)
    text += CallAsText(catalogue.Calls()[i]);
  return text;
}

Json PackageAsJson(const LoadedPackage& package, const Catalogue& catalogue) {
  Json units = Json::array();
  for (const TQXUnit& unit : package.Units())
    units.push_back({{"name", unit.name}, {"startCount", unit.startCount}});
  Json calls = Json::array();
  for (std::size_t i = package.FirstCall(); i < package.EndOfCalls(); ++i) {
    calls.push_back(CallAsJson(catalogue.Calls()[i]));
  }
  Json json{{"file", package.File()}, {"state", PackageStateName(package.State())}};
  if (!package.Error().empty()) json["error"] = package.Error();
  json["units"] = std::move(units);
  json["registrations"] = std::move(calls);
  return json;
}

void PrintOptions(Session& session, Catalogue& catalogue, bool asJson) {
  const auto settings = session.Store().All(OptionsStore::kHostSection);
  Json objects = Json::array();
  std::string text;
  for (const RegisteredOptions& entry : catalogue.Options()) {
    TQXOptionsObject& object = catalogue.ObjectOf(entry);
    text += object.GetOptionsCategory() + " / " + object.GetOptionsName() + "\n";
    Json properties = Json::object();
    for (const PublishedProperty& property : entry.optionsClass->properties) {
      text += PropertyLine(object, property);
      properties[std::string(property.name)] = PropertyAsJson(object, property);
    }
    text += "\n";
    objects.push_back({{"category", object.GetOptionsCategory()},
                       {"name", object.GetOptionsName()},
                       {"key", entry.optionsClass->getOptionKey()},
                       {"properties", std::move(properties)}});
  }
  text += "Host\n";
  Json host = Json::object();
  for (const auto& [name, value] : settings) {
    text += AssignmentLine(name, value);
    host[name] = value;
  }
  session.Print(asJson ? AsLines(Json{{"file", session.Store().File()}, {"objects", objects}, {"host", host}})
                       : text);
}

// One assignment, read and found, that is still to be made.
struct PendingOption {
  TQXOptionsObject* object;  // null: a setting of the host's
  const PublishedProperty* property;
  PropertyValue value;
  std::string hostName;
  std::string hostValue;  // empty: the setting is taken out
};

PendingOption FindOption(Catalogue& catalogue, const std::string& name, const std::string& value) {
  if (IsHostSettingName(name)) {
    const std::string stored = CheckHostSettingName(name);
    return {nullptr, nullptr, {}, stored, value.empty() ? "" : CheckHostSettingValue(stored, value)};
  }
  std::vector<std::string> names = HostSettingNames();
  for (const RegisteredOptions& entry : catalogue.Options()) {
    for (const PublishedProperty& property : entry.optionsClass->properties)
      names.emplace_back(property.name);
    if (const PublishedProperty* property = FindProperty(entry.optionsClass->properties, name)) {
      return {&catalogue.ObjectOf(entry), property, PropertyFromText(*property, value), {}, {}};
    }
  }
  throw Exception("There is no option " + Quoted(name) + NameAdvice(name, names));
}

void ChangeOptions(Session& session, Catalogue& catalogue, const std::vector<std::string>& assignments) {
  std::vector<PendingOption> pending;
  for (const std::string& text : assignments) {
    const auto [name, value] = SplitAssignment(text);
    pending.push_back(FindOption(catalogue, name, value));
  }
  for (const PendingOption& option : pending) {
    if (option.object != nullptr) {
      option.property->set(*option.object, option.value);
    } else {
      const bool removed = option.hostValue.empty();
      session.Store().Set(OptionsStore::kHostSection, option.hostName,
                          removed ? std::nullopt : std::optional(option.hostValue));
    }
  }
}

}  // namespace

int ShowActions(Session& session, const Invocation& invocation) {
  const Catalogue& catalogue = session.Packages();
  std::vector<const RegisteredAction*> actions;
  for (const RegisteredAction& action : catalogue.Actions()) actions.push_back(&action);
  if (invocation.Has("--json")) {
    Json json = Json::array();
    for (const RegisteredAction* action : actions) {
      Json properties = Json::array();
      for (const PublishedProperty& property : action->actionClass->properties) {
        properties.push_back(PropertyRowAsJson(property));
      }
      json.push_back({{"name", action->displayName},
                      {"category", action->category},
                      {"bitmap", action->bitmap},
                      {"class", action->actionClass->className},
                      {"properties", std::move(properties)}});
    }
    session.Print(AsLines(json));
    return 0;
  }
  std::stable_sort(actions.begin(), actions.end(),
                   [](const auto* a, const auto* b) { return a->category < b->category; });
  std::string text;
  const RegisteredAction* before = nullptr;
  for (const RegisteredAction* action : actions) {
    if (before == nullptr || before->category != action->category) text += action->category + "\n";
    text += "    " + action->displayName + "\n";
    before = action;
  }
  session.Print(text);
  return 0;
}

int ShowPackages(Session& session, const Invocation& invocation) {
  const bool design = !invocation.Has("--no-design");
  PackageLoader& loader = session.LoadPackages(design ? Registration::Design : Registration::Runtime);
  Json json = Json::array();
  std::string text;
  bool failed = loader.Packages().empty();
  for (const auto& package : loader.Packages()) {
    text += PackageAsText(*package, session.Catalogue());
    json.push_back(PackageAsJson(*package, session.Catalogue()));
    if (package->Error().empty()) continue;
    failed = true;
    Session::Complain(package->Error());
  }
  session.Print(invocation.Has("--json") ? AsLines(json) : text);
  return failed ? 2 : 0;
}

int ShowOptions(Session& session, const Invocation& invocation) {
  Catalogue& catalogue = session.Packages();
  if (!invocation.operands.empty()) {
    ChangeOptions(session, catalogue, invocation.operands);
    catalogue.SaveOptions();
    if (!invocation.Has("--json")) return 0;
  }
  PrintOptions(session, catalogue, invocation.Has("--json"));
  return 0;
}

}  // namespace qx::cli
