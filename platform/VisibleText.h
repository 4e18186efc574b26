// Texts of strangers (a compiler's output, names in a solution) as they may be shown where a terminal may be at the
// other end: nothing in them moves the cursor, sets a title or turns the reading direction around.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// Whether a sequence of ECMA-48 that only sets colours (ESC [ 1;31 m) passes.
enum class ColourSequences { Escaped, Kept };

// Control characters (C0, DEL, C1), marks and overrides of the reading direction, and line and paragraph
// separators become \u001B and the like, by which they stand in JSON, too: JSON stays the same JSON. Blanks, tabs
// and line ends (LF, CR LF) stay, and so do bytes that are not UTF-8.
std::string VisibleText(std::string_view text, ColourSequences colours = ColourSequences::Escaped);
// Whether VisibleText would change anything. Fast.
bool HasHiddenCharacters(std::string_view text);
// Whether it is one of them, tabs and line ends aside.
bool IsHiddenCharacter(char32_t c);

}  // namespace qx
