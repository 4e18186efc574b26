#include "host/cli/Report.h"

#include "host/runtime/PropertyText.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

constexpr const char* kMasked = "***";

}  // namespace

std::string AsLines(const Json& json) { return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n"; }

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
  const std::string value = PropertyToText(property, property.get(object));
  const bool masked = property.storage == PropertyStorage::Secret && !value.empty();
  return AssignmentLine(property.name, masked ? kMasked : value);
}

Json PropertyAsJson(TPersistent& object, const PublishedProperty& property) {
  const PropertyValue value = property.get(object);
  const std::string text = PropertyToText(property, value);
  if (property.storage == PropertyStorage::Secret) return text.empty() ? "" : kMasked;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* truth = std::get_if<bool>(&value)) return *truth;
  if (const auto* list = std::get_if<TStringList>(&value)) return list->Items();
  return text;
}

}  // namespace qx::cli
