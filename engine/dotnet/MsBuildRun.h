// How a project of 2005 is handed to the MSBuild engine: its switches, and the corrections that its file
// needs on a system that tells letter case and knows no "Any CPU".
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/Project.h"
#include "engine/dotnet/Assemblies.h"
#include "projects/net/NetProject.h"

namespace qx {

struct MsBuildCall {
  std::vector<std::string> switches;
  std::map<std::string, std::string> environment;
};

// `isXbuild`: mono's own engine. `codePage`: of the sources, where the project says none; empty: UTF-8.
MsBuildCall CallFor(const NetProject& project, const ProjectTask& task, bool isXbuild,
                    const std::string& codePage);

// The project file's text with the names of files as they are on disk, and with the assemblies that the
// engine would not find named by their paths; none: nothing has to be put right.
std::optional<std::string> CorrectedProject(const std::string& text, const NetProject& project,
                                            const ProjectTask& task, const AssemblyFolders& folders);

}  // namespace qx
