#include "host/desktop/core/PropertyView.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "host/actions/PropertyText.h"
#include "host/pages/Pages.h"
#include "platform/Texts.h"

namespace qx::desktop {
namespace {

using Lister = void (TQXAction::*)(TStringList&) const;

TStringList ListOf(const TQXAction& action, Lister lister) {
  TStringList list;
  (action.*lister)(list);
  return list;
}

std::optional<std::pair<std::string, std::string>> SplitNamed(const std::string& line) {
  const std::size_t at = line.find('=');
  if (at == std::string::npos) return std::nullopt;
  return std::pair(Trim(line.substr(0, at)), Trim(line.substr(at + 1)));
}

// What the action says of its properties, asked once.
struct Facts {
  TStringList hidden;
  TStringList readOnly;
  TStringList help;  // "Name=text"
};

std::string HelpOf(const Facts& facts, std::string_view name) {
  for (const std::string& line : facts.help.Items()) {
    const auto named = SplitNamed(line);
    if (named && SameText(named->first, name)) return named->second;
  }
  return {};
}

}  // namespace

std::vector<PropertyGroup> GroupsOf(TQXAction& action, const Catalogue& catalogue) {
  const TQXActionClass& actionClass = *action.GetActionClass();
  const Facts facts{ListOf(action, &TQXAction::GetHiddenProperties),
                    ListOf(action, &TQXAction::GetReadOnlyProperties),
                    ListOf(action, &TQXAction::GetPropertyHelp)};
  std::vector<const PublishedProperty*> left;
  for (const PublishedProperty& property : actionClass.properties) {
    if (facts.hidden.IndexOf(property.name) < 0) left.push_back(&property);
  }
  const auto show = [&](PropertyGroup& group, const PublishedProperty& property, std::string caption) {
    group.properties.push_back({&property, std::move(caption), HelpOf(facts, property.name),
                                facts.readOnly.IndexOf(property.name) >= 0,
                                EditorPage(catalogue, actionClass, property.name).has_value()});
  };

  std::vector<PropertyGroup> groups;
  const TStringList aliases = ListOf(action, &TQXAction::GetPropertyAlias);
  for (const std::string& line : aliases.Items()) {
    const std::string text = Trim(line);
    if (text.starts_with('[') && text.ends_with(']')) {
      groups.push_back({text.substr(1, text.size() - 2), {}});
      continue;
    }
    const auto alias = SplitNamed(text);
    if (!alias) continue;
    const auto found = std::ranges::find_if(
        left, [&](const PublishedProperty* property) { return SameText(property->name, alias->first); });
    if (found == left.end()) continue;
    if (groups.empty()) groups.push_back({"Properties", {}});
    show(groups.back(), **found, alias->second);
    left.erase(found);
  }
  std::erase_if(groups, [](const PropertyGroup& group) { return group.properties.empty(); });
  if (left.empty()) return groups;
  groups.push_back({groups.empty() ? "Properties" : "Other", {}});
  for (const PublishedProperty* property : left) show(groups.back(), *property, std::string(property->name));
  return groups;
}

}  // namespace qx::desktop
