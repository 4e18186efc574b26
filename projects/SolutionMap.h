// What a solution says about building: its configurations, and for each project the configuration it is
// mapped to, whether it is built in it, and what it depends on. The package's own reader leaves all that out
// on purpose. Text to values: looks at no file, starts nothing, prints nothing.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

enum class SolutionFormat { Unknown, Vs2002, Vs2003, Vs2005 };

// By the number in the header line: 7.00, 8.00, 9.00. Unknown for another number or no header.
SolutionFormat FormatOfSolution(std::string_view text);

// The number itself, "9.00"; empty without a header.
std::string FormatNumberOf(std::string_view text);

// What one solution configuration says of one project.
struct ProjectMapping {
  std::string configuration;  // the project's own, as written: "Release|Win32", "Release|.NET", "Release"
  bool isBuilt = false;       // a Build.0 line
  bool isDeployed = false;    // a Deploy.0 line
};

// One project line, solution folders and projects without a file included.
struct MappedProject {
  std::string name, path, typeGuid, guid;  // as written
  std::vector<std::string> needs;  // identifiers of projects, from the solution's sections, in file order
  std::map<std::string, ProjectMapping> mappings;  // by FoldCase of the solution configuration's name
};

struct SolutionMap {
  SolutionFormat format = SolutionFormat::Unknown;
  std::vector<std::string> configurations;  // "Debug" or "Debug|Win32", in file order
  std::vector<MappedProject> projects;      // in file order
};

// Lenient where the old products were: what is not known is passed over, a section may end with the file.
// Projects that bear one identifier all get what is said of it. Raises "Invalid Solution File Format : LINE"
// and "Error parsing project string" as the package's reader does.
SolutionMap ReadSolutionMap(std::string_view text);

// The solution's name of the configuration that `asked` means: letter case aside; of a text without a bar the
// first configuration of that name on any platform ("Mixed Platforms" before others); empty text: the first.
// Empty when there is none.
std::string FindConfiguration(const SolutionMap& map, std::string_view asked);

// What a solution configuration says of a project; null when it says nothing.
const ProjectMapping* FindMapping(const MappedProject& project, std::string_view configuration);

// "Release|Win32" as the two; the platform is empty without a bar.
struct ConfigurationName {
  std::string configuration, platform;
};
ConfigurationName SplitConfiguration(std::string_view text);

// A project's own configuration when the solution is built in one of its: the mapping, or what the old
// products took where the solution says nothing at all about a project, the configuration of the same name.
struct OwnConfiguration {
  std::string configuration, platform;  // "Release" "Win32"; no platform for a C# project of 2002 and 2003
  bool isBuilt = false, isDeployed = false;
};
OwnConfiguration ConfigurationOf(const MappedProject& project, const std::string& configuration);

}  // namespace qx
