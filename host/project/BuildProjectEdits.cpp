// What people do to a build project: actions added, taken out, moved and copied, and its variables. The
// actions' values are BuildProject.cpp's.
#include <algorithm>

#include "host/project/BuildProject.h"
#include "host/project/BuildProjectNames.h"
#include "platform/Texts.h"

namespace qx {

using namespace build_project;

namespace {

using NamedValue = std::pair<std::string, std::string>;

// A name that %NAME% cannot mean, or that means another one already, is refused.
void CheckVariables(const std::vector<NamedValue>& variables) {
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const std::string& name = variables[i].first;
    if (name.empty()) throw Exception("A variable needs a name");
    if (name.find_first_of("%\r\n") != std::string::npos)
      throw Exception("The name of the variable \"" + name + "\" holds a percent sign or a line end");
    const auto same = [&](const NamedValue& other) { return SameText(other.first, name); };
    if (std::any_of(variables.begin(), variables.begin() + static_cast<std::ptrdiff_t>(i), same))
      throw Exception("The variable \"" + name + "\" stands twice");
  }
}

}  // namespace

int BuildProject::AppendAction(const std::string& type) {
  if (!actionList_) actionList_ = xml_.Append(xml_.Root(), kActions);
  pugi::xml_node action = xml_.Append(actionList_, kAction);
  xml_.SetAttribute(action, kType, type);
  actions_.push_back(action);
  return ActionCount() - 1;
}

bool BuildProject::IsEnabled(int index) const {
  return !SameText(xml_.AttributeOf(ActionAt(index), kEnabled).value_or(kYes), kNo);
}

void BuildProject::SetEnabled(int index, bool isEnabled) {
  if (isEnabled == IsEnabled(index)) return;
  if (isEnabled) {
    xml_.RemoveAttribute(ActionAt(index), kEnabled);
  } else {
    xml_.SetAttribute(ActionAt(index), kEnabled, kNo);
  }
}

void BuildProject::InsertAction(int index, const std::string& type) {
  if (index == ActionCount()) {
    AppendAction(type);
    return;
  }
  xml_.SetAttribute(xml_.InsertBefore(ActionAt(index), kAction), kType, type);
  Index();
}

void BuildProject::RemoveAction(int index) {
  xml_.Remove(ActionAt(index));
  Index();
}

void BuildProject::MoveAction(int from, int to) {
  const pugi::xml_node place = ActionAt(to);
  xml_.MoveBlock(ActionAt(from), place, from < to ? XmlFile::Side::Behind : XmlFile::Side::Before);
  Index();
}

void BuildProject::DuplicateAction(int index) {
  xml_.Duplicate(ActionAt(index));
  Index();
}

// An element of a name that stays is used again, with whatever else stands in it.
void BuildProject::SetVariables(const std::vector<std::pair<std::string, std::string>>& variables) {
  if (variables == Variables()) return;
  CheckVariables(variables);
  if (!variables_) variables_ = xml_.Insert(xml_.Root(), {}, kVariables);
  std::vector<pugi::xml_node> left;
  for (const pugi::xml_node variable : variables_.children(kVariable)) left.push_back(variable);
  pugi::xml_node previous;
  for (const auto& [name, value] : variables) {
    const auto found = std::find_if(left.begin(), left.end(), [&, &wanted = name](pugi::xml_node variable) {
      return xml_.AttributeOf(variable, kName) == wanted;
    });
    pugi::xml_node place;
    if (found != left.end()) {
      place = *found;
      left.erase(found);
      bool isBehind = !previous;
      for (pugi::xml_node node = previous; node && !isBehind; node = node.next_sibling())
        isBehind = node == place;
      if (!isBehind) xml_.MoveBlock(place, previous, XmlFile::Side::Behind);
    } else {
      place = xml_.Insert(variables_, previous, kVariable);
      xml_.SetAttribute(place, kName, name);
    }
    if (xml_.TextOf(place) != value) xml_.SetText(place, value);
    previous = place;
  }
  for (const pugi::xml_node variable : left) xml_.Remove(variable);
}

}  // namespace qx
