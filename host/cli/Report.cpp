#include "host/cli/Report.h"

#include "host/actions/PropertyText.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

constexpr const char* kMasked = "***";

// A secret, masked; one that this user cannot decrypt is there all the same.
std::string Masked(TPersistent& object, const PublishedProperty& property) {
  try {
    return PropertyToText(property, property.get(object)).empty() ? "" : kMasked;
  } catch (const Exception&) {
    return kMasked;
  }
}

}  // namespace

std::string AsLines(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string AssignmentLine(std::string_view name, std::string_view value) {
  std::string text = "    " + std::string(name) + "=";
  bool first = true;
  for (const std::string& line : SplitLines(value)) {
    text += first ? line : "\n        " + line;
    first = false;
  }
  return text + "\n";
}

std::string PropertyLine(TPersistent& object, const PublishedProperty& property) {
  const bool secret = property.storage == PropertyStorage::Secret;
  const std::string value =
      secret ? Masked(object, property) : PropertyToText(property, property.get(object));
  return AssignmentLine(property.name, value);
}

Json PropertyAsJson(TPersistent& object, const PublishedProperty& property) {
  if (property.storage == PropertyStorage::Secret) return Masked(object, property);
  const PropertyValue value = property.get(object);
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* truth = std::get_if<bool>(&value)) return *truth;
  if (const auto* list = std::get_if<TStringList>(&value)) return list->Items();
  return PropertyToText(property, value);
}

}  // namespace qx::cli
