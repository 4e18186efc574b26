// JSON as vsinspect prints it: one line, members in the order in which they were put in.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Texts.h"

namespace qx {

using Json = nlohmann::ordered_json;

// Texts for members: bytes that are not UTF-8 become U+FFFD, each one.
inline Json JsonText(std::string_view text) { return AsValidUtf8(text); }
inline Json JsonTexts(const std::vector<std::string>& texts) {
  Json list = Json::array();
  for (const std::string& text : texts) list.push_back(JsonText(text));
  return list;
}

// The whole line, with its end.
inline std::string JsonLine(const Json& value) { return value.dump() + "\n"; }

}  // namespace qx
