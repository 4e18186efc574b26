// Custom build steps and build events: commands for Windows' own command line, which Wine's cmd runs.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Console.h"

namespace qx {

// A batch file, all ASCII: Wine reads it in a code page that has few letters. What else its commands hold comes
// in variables of its environment, for which Wine has to run where LC_ALL is kWineLocale.
struct Batch {
  std::string text;                              // empty: there is nothing to run
  std::map<std::string, std::string> variables;  // name and value
};
inline constexpr const char* kWineLocale = "C.UTF-8";

// The commands as a batch file that runs in `folder` (a path of this system), stops at the first that fails
// and answers with its code.
Batch BatchFor(std::string_view commands, const std::string& folder);

// The commands one by one, for printing them before they run.
std::vector<std::string> CommandLines(std::string_view commands);

// A path of this system as programs under Wine know it.
std::string WinePath(const std::string& path);

// Commands that run by themselves: the build events of C# projects.
struct CommandStep {
  std::string title;     // "Performing Post-Build Event..."
  std::string commands;  // lines, macros replaced
  std::string folder;    // where they run, absolute
  // Where they are written down, absolute; its folder exists, its name is a plain word.
  std::string batchFile;
};
// Prints the title and each command before any runs, then what they print. The answer is why the step failed,
// one line; empty when it succeeded or there is nothing to run.
std::string RunCommandStep(const CommandStep& step, Console& console);

// Wine's program; empty: there is none.
const std::string& WineProgram();
inline constexpr const char* kNoWine =
    "its commands are for Windows and need wine, which is not on the PATH (Debian's package wine)";

// What RunCommandStep answers where a program for Win32 was to run and Wine has its 64-bit part only.
inline constexpr const char* kNo32Bits =
    "its commands start a 32-bit program, and the wine that is installed runs 64-bit programs only (Debian's "
    "package wine32)";

}  // namespace qx
