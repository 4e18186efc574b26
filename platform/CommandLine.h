// Parameter strings: the one text in which a caller hands all arguments to a child process, taken apart and put
// together by the rules that Windows programs use, so that a command line written for Windows means the same
// everywhere. On Windows the string reaches the child as it stands; elsewhere SplitCommandLine makes its arguments.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx {

// The arguments in `parameters`, the program's own name not among them. Bytes, any 8-bit encoding that keeps ASCII.
//   - Blanks and tabs separate, unless they stand between double quotes; nothing else separates, not even a
//   line end.
//   - A double quote begins or ends a quoted stretch and vanishes; the stretch need not be a whole argument:
//     /p:Configuration="Release";Platform="Any CPU" is one argument.
//   - 2n backslashes before a double quote stand for n backslashes, and the quote keeps its meaning;
//     2n+1 stand for n backslashes and a double quote that is just text. Any other backslash is just text.
//   - Inside a quoted stretch two double quotes stand for one, and the stretch goes on.
//   - Two quotes with nothing between them are an empty argument; a missing last quote is no error.
std::vector<std::string> SplitCommandLine(std::string_view parameters);

// `argument` written so that SplitCommandLine gives it back as exactly one argument; without quotes where
// none are needed. Join several with a blank.
std::string QuoteArgument(std::string_view argument);

}  // namespace qx
