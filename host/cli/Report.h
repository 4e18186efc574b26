// How values are shown: as lines for people and as JSON for programs. A secret is *** in both.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "plugin/Qxproperties.h"

namespace qx::cli {

// Keeps the order in which it was filled.
using Json = nlohmann::ordered_json;

// Indented, with a line end; a byte that is not UTF-8 becomes U+FFFD.
std::string AsLines(const Json& json);

// "    NAME=VALUE" with a line end; the further lines of a value are indented under it.
std::string AssignmentLine(std::string_view name, std::string_view value);

// A property's present value; an empty secret is shown as empty.
std::string PropertyLine(TPersistent& object, const PublishedProperty& property);
Json PropertyAsJson(TPersistent& object, const PublishedProperty& property);

}  // namespace qx::cli
