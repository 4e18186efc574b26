// Which line ends a rewritten text gets: CR LF throughout, as the tools of these files write them, or each line
// its own, so that a version control shows the lines that changed and no others.
#pragma once

#include <string>
#include <string_view>

namespace qx {

enum class LineEnds { CrLf, Keep };

// For the whole process; to be set before the threads that ask. CR LF until somebody sets it.
void SetLineEnds(LineEnds ends);
LineEnds CurrentLineEnds();

// The new text with the line ends of the old one: a line that stands in both keeps its own, one that is new gets
// the end that is the commonest there. A last line without an end stays without.
std::string WithEndsOf(std::string_view oldText, std::string_view newText);

}  // namespace qx
