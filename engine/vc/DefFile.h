// Module definition files (.def) in the form that GNU ld reads.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// What ld does not know goes (DESCRIPTION, SECTIONS, a VERSION or an empty LIBRARY, PRIVATE on an export);
// the names that are exported stay, with ordinals, NONAME and DATA.
std::string DefFileForLd(std::string_view text);

// The same exports for the import library of a Win32 DLL: a function that is exported by its plain name and called
// as "_name@8" is listed as "name@8". `symbols`: what nm says of the objects. Empty: no export is such a function.
std::string DefFileWithStdcall(std::string_view forLd, std::string_view symbols);

}  // namespace qx
