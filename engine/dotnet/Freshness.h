// Whether files are newer than others, and copies that keep their original's time, so that both can be told.
#pragma once

#include <string>
#include <vector>

namespace qx {

// Whether `file` is there and none of the inputs is newer, or gone.
bool IsFresh(const std::string& file, const std::vector<std::string>& inputs);

// A copy keeps the original's time, so this is told by size and time.
bool IsSameCopy(const std::string& from, const std::string& to);
// Makes the folder, too. Raises as CopyFileAside does.
void CopyWithTime(const std::string& from, const std::string& to);

// Puts a file that a tool has finished in its place; makes the folder. Raises "Cannot write FILE: REASON".
void MoveIntoPlace(const std::string& from, const std::string& to);

}  // namespace qx
