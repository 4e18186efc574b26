// The assembly attributes of one AssemblyInfo file: the table of their names, and the rewriter that puts new
// values into the attribute lines of a text and appends the entries it lacks. Texts in, text out: no file and
// no host. Nothing is kept from one text to the next.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "versioning/Qxassemblyinfo.h"

namespace qx {

// Where `word`, which is in lower case and letters only, first stands in the text in any letter case and with
// the character `mark` behind it; npos when nowhere.
std::size_t FindWord(std::string_view text, std::string_view word, char mark);

// The attribute of that exact name, with or without "Attribute" behind it; none for a name in no row.
// AssemblyAttribute::Comment has no row.
std::optional<AssemblyAttribute> FindAssemblyAttribute(std::string_view name);

// The new value of an attribute that is to be updated; none for one that is not. Asked at each use.
using AttributeValues = std::function<std::optional<std::string>(AssemblyAttribute)>;
// A value in the bytes of the text; raises Exception, naming the attribute, for one that does not fit.
using AttributeFitter = std::function<std::string(const std::string& value, std::string_view name)>;
// Receives the lines of progress: "Processing Entry : NAME", "Adding Entry : NAME Value : VALUE".
using ProgressLog = std::function<void(const std::string&)>;

// The text with its attribute lines updated and missing entries appended; every line ends in CR LF. `extension`
// is the file's, with its point: ".cpp" in any letter case makes appended names end in "Attribute".
std::string StampAssemblyInfo(std::string_view text, std::string_view extension,
                              const AttributeValues& values, const AttributeFitter& fit,
                              const ProgressLog& log);

// The first file reference in a project file whose name begins with "assemblyinfo.": what stands between the
// double quotes around it. Empty when there is none.
std::string AssemblyInfoReference(std::string_view project);

// The versions that an AssemblyInfo file gives the program: "1.2.*". Empty: said nowhere, by a name instead
// of a text, or in more than one way.
struct WrittenVersions {
  std::string assembly, file;
};
// Attribute lines are those of StampAssemblyInfo, but for what a compiler passes over: lines in comments.
WrittenVersions ReadWrittenVersions(std::string_view text);

}  // namespace qx
