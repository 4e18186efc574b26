// The assemblies that stand beside a program so that it starts: those it refers to, what these need, their
// debug information and translations.
#pragma once

#include <string>
#include <vector>

#include "engine/dotnet/CompilePlan.h"

namespace qx {

struct FileCopy {
  std::string from, to;
};

// Without those that would copy a file onto itself.
std::vector<FileCopy> CopiesBeside(const CompilePlan& plan, const AssemblyFolders& folders);

// Whether the bytes of an assembly name another: its name stands as a text of its own in the metadata.
bool NamesAssembly(std::string_view bytes, std::string_view name);

}  // namespace qx
