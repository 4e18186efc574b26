// The folder for the temporary files of one run: made with a random name when it is first asked for, closed
// to other users, removed with everything in it at the run's end. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// Removes the folder behind GetTemporaryPath; the next question for it makes another one. Called when a run
// is over and once more when the process ends. What cannot be removed stays.
void RemoveTemporaryFolder();

// Whether a file on disk, links followed, lies in a folder that GetTemporaryPath gave, now or before: what is done to
// it is no change of anything that stays.
bool IsTemporaryFile(std::string_view path);

// Makes a new empty folder among the user's temporary files that nobody else may enter; without a trailing
// delimiter. Raises Exception naming the place. One source a system: MachinePosix.cpp, MachineWindows.cpp.
std::string MakePrivateFolder();

}  // namespace qx
