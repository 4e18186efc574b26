// What stands in XML and HTML for the four characters that would begin or end something there. One table, so that
// what a project file, a report and a file for a build engine write is escaped alike.
#pragma once

#include <string_view>

namespace qx {

// For & < > and the double quote; empty for every other character, which may stand as it is.
constexpr std::string_view MarkupEntity(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return {};
  }
}

}  // namespace qx
