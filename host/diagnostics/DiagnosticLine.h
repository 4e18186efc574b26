// What one line of a compiler's output says: an error or a warning in the forms of Visual Studio 2002 to 2005,
// of MSBuild and of gcc. Text in, views into it out; linear in the line's length, allocates nothing.
#pragma once

#include <optional>
#include <string_view>

namespace qx {

enum class Severity { Warning, Error };

// "Warning" in the model's words: "warning", "error".
std::string_view NameOf(Severity severity);

// Texts are bytes as the compiler wrote them, views into the line or into whoever keeps the diagnostic.
struct Diagnostic {
  Severity severity = Severity::Error;
  std::string_view code;  // "C2065", "CS0103", "-Wunused-variable"; empty: none was given
  std::string_view file;  // empty: no file, a tool speaks for itself (LINK, MSBUILD)
  int line = 0;           // 1-based; 0: none was given
  int column = 0;         // 1-based; 0: none was given
  std::string_view message;
  std::string_view project;  // its name; empty: not known
  int action = 0;            // 1-based place in the build project
  bool isKnown = false;      // the baseline holds it: it does not count
};

// Understood, each after blanks and a build's number ("3>"):
//   FILE(12) : error C2065: TEXT     FILE(12,5): warning CS0168: TEXT     FILE(12,5,12,9), FILE(12-14)
//   TOOL : fatal error LNK1104: TEXT     FILE.obj : error LNK2019: TEXT     error CS0006: TEXT
//   FILE:12:5: error: TEXT [-Wname]     FILE:12: fatal error: TEXT     TOOL: error: TEXT
// "Command line", "fatal" and "internal compiler" may stand before the word. A project file in brackets at the
// end ("[C:\a\b.csproj]") gives the project and is no part of the message. Remarks ("note", "see declaration
// of") are none. `action` and `isKnown` stay as they are by default.
std::optional<Diagnostic> ReadDiagnostic(std::string_view line);
// A quick look, for the many lines that are none: false says so for sure.
inline bool MayBeDiagnostic(std::string_view line) { return line.find(':') != std::string_view::npos; }

// The number before the line ("3>"), taken off the line together with the blanks around it; 0: there is none.
int TakeBuildNumber(std::string_view& line);

// A project's name from its file: "b" of "C:\a\b.csproj"; empty for a solution, which is no project.
std::string_view ProjectNameOf(std::string_view projectFile);

}  // namespace qx
