// Numbers with the suffixes that the old compiler has for their size: 10i64, 0xFFui64. gcc's C++ takes them as
// literals of one's own making, which a header defines; for its C a source is compiled from a copy.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// Whether a line may hold one; comments and strings are not told apart.
bool MayHoldOldLiteral(std::string_view line);

// The text with such numbers as C writes them (10LL, 0xFFULL; those of 8 to 32 bits without a suffix), but in strings and
// comments. No line becomes two, and none is lost.
std::string WithNewLiterals(std::string_view text);

}  // namespace qx
