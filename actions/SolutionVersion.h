// Which version of Visual Studio a solution is for: its file's format says it. Raises what reading the file
// raises; any thread.
#pragma once

#include <optional>
#include <string>

#include "actions/Qxvsdotnetaction.h"
#include "projects/SolutionMap.h"

namespace qx {

// None for a format that no version has.
std::optional<TVSDotNetVersion> VersionOfFormat(SolutionFormat format);

struct SolutionVersion {
  std::string format;                       // "9.00"; empty where the file names none
  std::optional<TVSDotNetVersion> version;  // none for a format that no version has
};

SolutionVersion VersionOfSolution(const std::string& file);

}  // namespace qx
