// The little that must be known of C# and Visual Basic sources before they are compiled: the class that a
// form's resources are named after, and the key file that an assembly is signed with.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "projects/net/NetProject.h"

namespace qx {

// The full name of the first class in a source ("Outer.Inner.Form1"; of Visual Basic without the root
// namespace); empty: there is none. Comments, texts and preprocessor lines are passed over, #if among them.
std::string FirstClass(NetLanguage language, std::string_view source);

// The text of the last [assembly: AssemblyKeyFile("...")] that is compiled, by the #if lines of C# and these
// symbols (separated by ";", "," or blanks); none: there is no such line.
std::optional<std::string> KeyFileAttribute(NetLanguage language, std::string_view source,
                                            std::string_view symbols);

}  // namespace qx
