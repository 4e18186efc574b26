#include "host/project/BuildProject.h"

#include <algorithm>
#include <set>

#include "host/project/BuildProjectNames.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"

namespace qx {

using namespace build_project;

namespace {

constexpr std::string_view kEmptyProject =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<BuildProject version=\"1\">\n"
    "  <Variables/>\n"
    "  <Actions/>\n"
    "</BuildProject>\n";

// The state of one action as ReadState sees it; remembers the last line read, for complaints about a value.
class ActionReader : public IQXStateReader {
 public:
  ActionReader(const BuildProject& project, int index) : project_(project), index_(index) {}
  bool ReadText(std::string_view name, std::string& value) override {
    return Take(project_.ReadText(index_, name), value, name);
  }
  bool ReadList(std::string_view name, TStringList& value) override {
    return Take(project_.ReadList(index_, name), value.Items(), name);
  }
  const std::string& LastRead() const { return lastRead_; }

 private:
  template <class Value>
  bool Take(std::optional<Value> found, Value& value, std::string_view name) {
    if (!found) return false;
    lastRead_ = name;
    value = std::move(*found);
    return true;
  }
  const BuildProject& project_;
  int index_;
  std::string lastRead_;
};

// Where WriteState writes to: each property behind the one before it.
class ActionWriter : public IQXStateWriter {
 public:
  ActionWriter(BuildProject& project, int index) : project_(project), index_(index) {}
  void WriteText(std::string_view name, const std::string& value) override {
    project_.WriteText(index_, name, value, previous_);
    previous_ = name;
  }
  void WriteList(std::string_view name, const TStringList& value) override {
    project_.WriteList(index_, name, value.Items(), previous_);
    previous_ = name;
  }

 private:
  BuildProject& project_;
  int index_;
  std::string previous_;
};

bool HoldsElements(pugi::xml_node node) {
  return std::any_of(node.begin(), node.end(),
                     [](pugi::xml_node child) { return child.type() == pugi::node_element; });
}

bool IsWord(std::string_view text) { return text.find_first_not_of(" \t\r\n") != text.npos; }

enum class Text { Expected, Foreign };

// Walks a project and writes down what the host does not know.
class UnknownFinder {
 public:
  using Names = std::initializer_list<std::string_view>;
  explicit UnknownFinder(const XmlFile& xml) : xml_(xml) {}

  void Tell(pugi::xml_node node, const std::string& what) {
    const std::size_t line = xml_.LineOf(node);
    found_.push_back(line == 0 ? what : what + " (line " + std::to_string(line) + ")");
  }

  void Attributes(pugi::xml_node node, Names known) {
    for (const pugi::xml_attribute attribute : node.attributes()) {
      if (Holds(known, attribute.name())) continue;
      Tell(node, "the attribute \"" + std::string(attribute.name()) + "\" of <" + node.name() + ">");
    }
  }

  // Everything in `parent` but the elements of these names; comments are only counted.
  void Children(pugi::xml_node parent, Names known, Text text) {
    for (const pugi::xml_node child : parent.children()) {
      const std::string name = child.name();
      switch (child.type()) {
        case pugi::node_comment:
          ++comments_;
          break;
        case pugi::node_pi:
          Tell(child, "the processing instruction \"" + name + "\"");
          break;
        case pugi::node_element:
          if (!Holds(known, name)) Tell(child, "the element <" + name + ">");
          break;
        case pugi::node_pcdata:
        case pugi::node_cdata:
          if (text == Text::Foreign && IsWord(child.value()))
            Tell(child, "text in <" + std::string(parent.name()) + ">");
          break;
        default:
          break;
      }
    }
  }

  void Action(pugi::xml_node action, int number, PropertyTable table) {
    Attributes(action, {kType, kEnabled});
    Children(action, {kProperty}, Text::Foreign);
    const std::string ofAction = "\" of action " + std::to_string(number);
    for (const pugi::xml_node property : action.children(kProperty)) {
      Attributes(property, {kName, kEncoding});
      const std::string name = xml_.AttributeOf(property, kName).value_or("");
      const auto row =
          std::find_if(table.begin(), table.end(), [&](const auto& p) { return p.name == name; });
      if (row == table.end()) {
        Tell(property, "the property \"" + name + ofAction);
        continue;
      }
      // It is kept and not taken (docs/deliberate.md).
      if (row->storage == PropertyStorage::NotStored) {
        Tell(property, "the value of \"" + name + ofAction + ", which is not stored,");
      }
      if (row->kind != PropertyKind::TextList) {
        Children(property, {}, Text::Expected);
        continue;
      }
      Children(property, {kItem}, Text::Foreign);
      for (const pugi::xml_node item : property.children(kItem)) {
        Attributes(item, {kEncoding});
        Children(item, {}, Text::Expected);
      }
    }
  }

  std::vector<std::string> Found() {
    if (comments_ > 0)
      found_.push_back(comments_ == 1 ? "1 comment" : std::to_string(comments_) + " comments");
    return std::move(found_);
  }

 private:
  static bool Holds(Names names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  }

  const XmlFile& xml_;
  std::vector<std::string> found_;
  int comments_ = 0;
};

}  // namespace

BuildProject::BuildProject(XmlFile xml) : xml_(std::move(xml)) { Index(); }

BuildProject BuildProject::Empty(std::string file) {
  return Parse(std::string(kEmptyProject), std::move(file));
}

BuildProject BuildProject::Parse(std::string text, std::string file) {
  return BuildProject(XmlFile::Parse(std::move(text), std::move(file), kRoot));
}

BuildProject BuildProject::Load(const std::string& file) { return Parse(ReadFile(file), file); }

void BuildProject::Save() const { ReplaceFile(File(), Text()); }

// Finds the parts and refuses what would make a name ambiguous.
void BuildProject::Index() {
  const auto only = [&](const char* name) {
    const pugi::xml_node first = xml_.Root().child(name);
    if (const pugi::xml_node second = first.next_sibling(name)) {
      xml_.Complain(second, "<" + std::string(name) + "> stands twice");
    }
    return first;
  };
  const auto need = [&](pugi::xml_node node, const char* attribute) {
    std::optional<std::string> value = xml_.AttributeOf(node, attribute);
    if (!value || value->empty()) {
      xml_.Complain(node, "<" + std::string(node.name()) + "> without a " + std::string(attribute));
    }
    return *value;
  };
  actions_.clear();
  variables_ = only(kVariables);
  actionList_ = only(kActions);
  for (const pugi::xml_node variable : variables_.children(kVariable)) need(variable, kName);
  for (const pugi::xml_node action : actionList_.children(kAction)) {
    need(action, kType);
    const std::string enabled = xml_.AttributeOf(action, kEnabled).value_or(kYes);
    if (!SameText(enabled, kYes) && !SameText(enabled, kNo))
      xml_.Complain(action, "enabled is True or False, not " + Quoted(enabled));
    actions_.push_back(action);
    std::set<std::string> names;
    for (const pugi::xml_node property : action.children(kProperty)) {
      const std::string name = need(property, kName);
      if (!names.insert(name).second)
        xml_.Complain(property, "the property " + name + " stands twice in its action");
    }
  }
}

std::vector<std::pair<std::string, std::string>> BuildProject::Variables() const {
  std::vector<std::pair<std::string, std::string>> found;
  for (const pugi::xml_node variable : variables_.children(kVariable)) {
    found.emplace_back(xml_.AttributeOf(variable, kName).value_or(""), xml_.TextOf(variable));
  }
  return found;
}

std::string BuildProject::ActionType(int index) const {
  return xml_.AttributeOf(actions_.at(static_cast<std::size_t>(index)), kType).value_or("");
}

pugi::xml_node BuildProject::FindProperty(int index, std::string_view name) const {
  return xml_.FindChild(actions_.at(static_cast<std::size_t>(index)), kProperty, kName, name);
}

std::optional<std::string> BuildProject::ReadText(int index, std::string_view name) const {
  const pugi::xml_node property = FindProperty(index, name);
  if (!property) return std::nullopt;
  if (HoldsElements(property))
    xml_.Complain(property, std::string(name) + " is one text, but elements stand in it");
  return xml_.TextOf(property);
}

std::optional<std::vector<std::string>> BuildProject::ReadList(int index, std::string_view name) const {
  const pugi::xml_node property = FindProperty(index, name);
  if (!property) return std::nullopt;
  if (IsWord(xml_.TextOf(property))) {
    xml_.Complain(property, std::string(name) + " is a list: each of its texts belongs into an <Item>");
  }
  std::vector<std::string> items;
  for (const pugi::xml_node child : property.children()) {
    if (child.type() != pugi::node_element) continue;
    if (std::string_view(child.name()) != kItem || HoldsElements(child)) {
      xml_.Complain(child, std::string(name) + " is a list of <Item>s, but another element stands in it");
    }
    items.push_back(xml_.TextOf(child));
  }
  return items;
}

// The element of a property, made or moved so that it stands behind `previous`: what was written in another order
// comes into that of declaration (docs/deliberate.md). One that stands behind it already, with whatever else
// between them, stays where it is.
pugi::xml_node BuildProject::PlaceProperty(int index, std::string_view name, std::string_view previous) {
  pugi::xml_node action = actions_.at(static_cast<std::size_t>(index));
  const pugi::xml_node before = previous.empty() ? pugi::xml_node() : FindProperty(index, previous);
  pugi::xml_node property = FindProperty(index, name);
  if (!property) {
    property = xml_.Insert(action, before, kProperty);
    xml_.SetAttribute(property, kName, name);
    return property;
  }
  if (!before) return property;
  for (pugi::xml_node later = before; later; later = later.next_sibling()) {
    if (later == property) return property;
  }
  xml_.Move(property, before);
  return property;
}

void BuildProject::WriteText(int index, std::string_view name, const std::string& value,
                             std::string_view previous) {
  const pugi::xml_node property = PlaceProperty(index, name, previous);
  if (!HoldsElements(property) && xml_.TextOf(property) == value) return;
  xml_.SetText(property, value);
}

void BuildProject::WriteList(int index, std::string_view name, const std::vector<std::string>& items,
                             std::string_view previous) {
  const pugi::xml_node property = PlaceProperty(index, name, previous);
  std::vector<pugi::xml_node> places;
  for (const pugi::xml_node place : property.children(kItem)) places.push_back(place);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const bool exists = i < places.size();
    const pugi::xml_node place = exists ? places[i] : xml_.Append(property, kItem);
    if (!exists || xml_.TextOf(place) != items[i]) xml_.SetText(place, items[i]);
  }
  for (std::size_t i = places.size(); i > items.size(); --i) xml_.Remove(places[i - 1]);
}

void BuildProject::ReadAction(int index, TQXAction& action) const {
  ActionReader reader(*this, index);
  try {
    action.ReadState(reader);
  } catch (const XmlFault&) {
    throw;  // this file's own complaint, line and all
  } catch (const Exception& fault) {
    const pugi::xml_node last = FindProperty(index, reader.LastRead());
    xml_.Complain(last ? last : actions_[static_cast<std::size_t>(index)], fault.Message());
  }
  action.Loaded();
}

bool BuildProject::WriteAction(int index, TQXAction& action) {
  ActionWriter writer(*this, index);
  action.WriteState(writer);
  const TQXActionClass* actionClass = action.GetActionClass();
  bool hadClearText = false;
  if (actionClass == nullptr) return false;
  for (const PublishedProperty& property : actionClass->properties) {
    if (property.storage != PropertyStorage::Secret) continue;
    const pugi::xml_node found = FindProperty(index, property.name);
    if (!found) continue;
    xml_.Remove(found);
    hadClearText = true;
  }
  return hadClearText;
}

std::vector<std::string> BuildProject::Unknown(const KnownActions& known) const {
  UnknownFinder finder(xml_);
  finder.Children(xml_.Root().parent(), {kRoot}, Text::Foreign);
  finder.Attributes(xml_.Root(), {"version"});
  finder.Children(xml_.Root(), {kVariables, kActions}, Text::Foreign);
  finder.Attributes(variables_, {});
  finder.Children(variables_, {kVariable}, Text::Foreign);
  for (const pugi::xml_node variable : variables_.children(kVariable)) {
    finder.Attributes(variable, {kName, kEncoding});
    finder.Children(variable, {}, Text::Expected);
  }
  finder.Attributes(actionList_, {});
  finder.Children(actionList_, {kAction}, Text::Foreign);
  for (int i = 0; i < ActionCount(); ++i) {
    const pugi::xml_node action = actions_[static_cast<std::size_t>(i)];
    const std::optional<PropertyTable> table = known(ActionType(i));
    if (table) {
      finder.Action(action, i + 1, *table);
    } else {
      finder.Tell(action, "action " + std::to_string(i + 1) + ", \"" + ActionType(i) +
                              "\", which no loaded package has");
    }
  }
  return finder.Found();
}

}  // namespace qx
