// What a program of the host asks its system: its own place, the user's configuration, another program in its
// stead. One source a system: HostProgramPosix.cpp, HostProgramWindows.cpp.
#pragma once

#include <string>
#include <vector>

namespace qx {

// The host's folder among the user's configuration, with its trailing delimiter: $XDG_CONFIG_HOME/qxhost/,
// else $HOME/.config/qxhost/; %APPDATA%\qxhost\ on Windows. Raises Exception when the environment names none.
// The folder need not exist.
std::string ConfigFolder();
// The same for what the host keeps for itself: $XDG_STATE_HOME/qxhost/, else $HOME/.local/state/qxhost/;
// %LOCALAPPDATA%\qxhost\ on Windows.
std::string StateFolder();

// The folder of the running program's file, links followed, with its trailing delimiter.
std::string ProgramFolder();

// The file of a program in the first folder of PATH that has it; the name is without an ending. Empty when
// none has.
std::string FindOnPath(const std::string& program);

// Another program of the host, by its name without an ending: the file beside this program, else the one on
// the PATH. Raises Exception that says where it was looked for.
std::string FindCompanion(const std::string& program);

// Leaves the user to another program: takes this process's place outside Windows, and then never returns;
// on Windows starts it and does not wait. What this one still holds is to be given back before. Raises
// Exception "Cannot start FILE: reason".
void HandOver(const std::string& file, const std::vector<std::string>& arguments);

// Raises Exception "Cannot enter FOLDER: reason". It holds for the whole process.
void SetCurrentFolder(const std::string& folder);

// From now on memory that was freed stays with the program up to some megabytes: a solution that is read
// again and again is then read into memory that is there. For programs whose users wait.
void KeepFreedMemory();

// Ends this process now, with nothing of it closed or written any more but what the system closes.
[[noreturn]] void LeaveAtOnce(int exitCode);

// From now on writing to a stream that nobody reads is an error of the write, not the end of the process:
// what is still to be saved is saved. Child processes are not affected.
void IgnoreBrokenStreams();

}  // namespace qx
