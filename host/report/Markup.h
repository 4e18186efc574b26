// Texts within XML and HTML: whatever they hold, they stay text.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// Valid UTF-8 with the characters of markup escaped, in elements and in quoted attributes alike. What XML cannot
// hold is shown: a control character as its picture (U+2400 and on), anything else as U+FFFD, and so is what
// changes the direction of writing. Line ends and
// tabs stay; a reader of attributes may make blanks of them.
std::string MarkupText(std::string_view text);

}  // namespace qx
