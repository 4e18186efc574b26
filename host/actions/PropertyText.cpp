// Property values as text, and the walk over a table of properties.
#include "host/actions/PropertyText.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/Nearest.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr std::array<std::string_view, 2> kBooleans{"False", "True"};

// The ordinal of a word, or -1.
std::int32_t FindWord(std::span<const std::string_view> words, std::string_view text) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](std::string_view word) { return SameText(word, text); });
  return found == words.end() ? -1 : static_cast<std::int32_t>(found - words.begin());
}

[[noreturn]] void Refuse(const PublishedProperty& property, const std::string& complaint) {
  throw Exception(std::string(property.name) + ": " + complaint);
}

std::int32_t WordFromText(const PublishedProperty& property, std::span<const std::string_view> words,
                          std::string_view text) {
  const std::int32_t ordinal = FindWord(words, Trim(text));
  if (ordinal >= 0) return ordinal;
  Refuse(property, Quoted(text) + " is no value of it" + NameAdvice(text, words));
}

std::int32_t IntegerFromText(const PublishedProperty& property, std::string_view text) {
  const std::string trimmed = Trim(text);
  if (const std::optional<std::int32_t> number = ToInteger(trimmed)) return *number;
  const bool digits = trimmed.find_first_not_of("0123456789", trimmed.find_first_of("+-") == 0 ? 1 : 0) ==
                          std::string::npos &&
                      trimmed.find_first_of("0123456789") != std::string::npos;
  if (!digits) Refuse(property, Quoted(text) + " is no decimal number");
  const std::string nearest = trimmed.front() == '-' ? "-2147483648" : "2147483647";
  Refuse(property, Quoted(text) + " is beyond -2147483648 to 2147483647 (nearest: " + nearest + ")");
}

TStringList ListFromText(std::string_view text) {
  TStringList list;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(';'), text.size());
    list.Add(std::string(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return list;
}

std::string ListToText(const TStringList& list) { return Join(list.Items(), ";"); }

std::string WordToText(const PublishedProperty& property, EnumerationValue value) {
  const auto index = static_cast<std::size_t>(value.ordinal);
  if (value.ordinal >= 0 && index < property.valueNames.size())
    return std::string(property.valueNames[index]);
  return std::to_string(value.ordinal);
}

// An ordinal without a name was written as a number, and comes back (docs/deliberate.md).
PropertyValue ValueFromState(const PublishedProperty& property, const std::string& text) {
  if (property.kind == PropertyKind::Enumeration) {
    if (const std::optional<std::int32_t> ordinal = ToInteger(text)) return EnumerationValue{*ordinal};
  }
  return PropertyFromText(property, text);
}

}  // namespace

std::string PropertyToText(const PublishedProperty& property, const PropertyValue& value) {
  switch (property.kind) {
    case PropertyKind::Text:
      return std::get<std::string>(value);
    case PropertyKind::Integer:
      return std::to_string(std::get<std::int32_t>(value));
    case PropertyKind::Boolean:
      return std::string(kBooleans[std::get<bool>(value) ? 1 : 0]);
    case PropertyKind::Enumeration:
      return WordToText(property, std::get<EnumerationValue>(value));
    case PropertyKind::TextList:
      return ListToText(std::get<TStringList>(value));
  }
  return {};
}

PropertyValue PropertyFromText(const PublishedProperty& property, std::string_view text) {
  switch (property.kind) {
    case PropertyKind::Text:
      break;
    case PropertyKind::Integer:
      return IntegerFromText(property, text);
    case PropertyKind::Boolean:
      return WordFromText(property, kBooleans, text) != 0;
    case PropertyKind::Enumeration:
      return EnumerationValue{WordFromText(property, property.valueNames, text)};
    case PropertyKind::TextList:
      return ListFromText(text);
  }
  return std::string(text);
}

const PublishedProperty* FindProperty(PropertyTable table, std::string_view name) {
  const auto exact =
      std::find_if(table.begin(), table.end(), [&](const auto& property) { return property.name == name; });
  if (exact != table.end()) return &*exact;
  const auto same = std::find_if(table.begin(), table.end(),
                                 [&](const auto& property) { return SameText(property.name, name); });
  return same != table.end() ? &*same : nullptr;
}

const PublishedProperty& NeedProperty(PropertyTable table, std::string_view name) {
  if (const PublishedProperty* property = FindProperty(table, name)) return *property;
  std::vector<std::string_view> names;
  for (const PublishedProperty& property : table) names.push_back(property.name);
  throw Exception("There is no property " + Quoted(name) +
                  NameAdvice(name, std::span<const std::string_view>(names)));
}

void ReadProperties(TPersistent& object, PropertyTable table, IQXStateReader& reader) {
  for (const PublishedProperty& property : table) {
    if (property.storage != PropertyStorage::Stored) continue;
    if (property.kind == PropertyKind::TextList) {
      TStringList list;
      if (reader.ReadList(property.name, list)) property.set(object, list);
    } else {
      std::string text;
      if (reader.ReadText(property.name, text)) property.set(object, ValueFromState(property, text));
    }
  }
  // A clear text is newer than the encrypted form, which was read above (docs/deliberate.md).
  for (const PublishedProperty& property : table) {
    std::string text;
    if (property.storage != PropertyStorage::Secret || !reader.ReadText(property.name, text)) continue;
    if (!text.empty()) property.set(object, text);
  }
}

void WriteProperties(TPersistent& object, PropertyTable table, IQXStateWriter& writer) {
  for (const PublishedProperty& property : table) {
    if (property.storage != PropertyStorage::Stored) continue;
    const PropertyValue value = property.get(object);
    if (property.kind == PropertyKind::TextList) {
      writer.WriteList(property.name, std::get<TStringList>(value));
    } else {
      writer.WriteText(property.name, PropertyToText(property, value));
    }
  }
}

}  // namespace qx
