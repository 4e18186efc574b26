// Which names that come out of a solution or project file may name a file of the temporary folder, and which
// folders of a server they may lead to: such files come from strangers, and they must not choose where we write.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// Raises Exception naming the name unless it is that of a plain file on every system: no delimiter, drive or
// stream (":"), control character, "." or "..", reserved device name, or end in a point or blank.
void RequireTemporaryName(std::string_view name);

// Raises Exception naming the folder when it holds "..", a colon or a control character. Delimiters of either
// kind part it.
void RequireRemoteFolder(std::string_view folder);

}  // namespace qx
