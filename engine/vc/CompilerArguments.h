// The compiler's options as MinGW-w64's gcc takes them, from what a project says for its own compiler.
#pragma once

#include <string>
#include <vector>

#include "projects/vc/VcSettings.h"

namespace qx {

enum class VcLanguage { C, Cpp };

// By CompileAs, else by the file's extension.
VcLanguage LanguageOf(const VcSettings& settings, const VcFile& file);

// For one source: language, defines, include folders and all other options, without the names of source and
// object. Include folders that do not exist are left out. `overlay`: the folder of forwarding headers,
// searched after the project's own; empty: none.
std::vector<std::string> CompilerArguments(const VcSettings& settings, const VcFile& file,
                                           const std::string& overlay);

// Whether functions that name no calling convention are to be __stdcall (/Gz). gcc's own switch for it, -mrtd, is
// of no use: it calls memset and everything else of the run-time library so as well, which is __cdecl.
bool IsStdcallByDefault(const VcSettings& settings, const VcFile* file);

// The folders in which a source's headers are looked for, in their order, as they are named on disk, with
// their delimiters.
std::vector<std::string> IncludeFolders(const VcSettings& settings, std::string_view tool,
                                        const VcFile* file);
// The headers that are included before the first line of a source.
std::vector<std::string> ForcedIncludes(const VcSettings& settings, const VcFile& file);
// "NAME" or "NAME=VALUE": those of the character set and run-time library, and those the project lists.
std::vector<std::string> Defines(const VcSettings& settings, std::string_view tool, const VcFile* file);

}  // namespace qx
