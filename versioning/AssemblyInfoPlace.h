// Which file a project file may lead the stamping to: a reference is text that anybody may have written. Looks at
// names and links, not at what is in files.
#pragma once

#include <string>

namespace qx {

// Whether a file that a project refers to so may be taken for its AssemblyInfo file, by the name that is really
// opened: "." and ".." resolved and links followed. `folder` is the project's, `tree` the solution's, both
// absolute; what lies outside the tree has to be named AssemblyInfo itself. `isNoLink`: it is known to be none.
bool IsAssemblyInfoFile(const std::string& reference, const std::string& folder, const std::string& tree,
                        bool isNoLink = false);

// Whether the name that is really opened lies outside the tree.
bool LeavesTree(const std::string& reference, const std::string& folder, const std::string& tree,
                bool isNoLink = false);

}  // namespace qx
