// The parameter strings of devenv.com and MSBuild.exe: settings and texts in, one string out, quoted the way
// these programs read it. Pure: knows no action, no file and no process.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "plugin/Qxproperties.h"

namespace qx {

// What a build does. Stored by name; the order is that of the switch table.
enum class TVSDotNetBuildAction : std::uint8_t { baBuild, baRebuild, baClean, baDeploy };

template <>
inline constexpr std::array<std::string_view, 4> ValueNames<TVSDotNetBuildAction>{"baBuild", "baRebuild",
                                                                                  "baClean", "baDeploy"};

enum class CompilerSyntax { DevEnv, MSBuild };

struct CompilerSettings {
  CompilerSyntax syntax = CompilerSyntax::DevEnv;
  TVSDotNetBuildAction action = TVSDotNetBuildAction::baBuild;
  bool useEnvironment = false;
};

// Builds the whole solution. The configuration is "Debug" or "Debug|Win32"; devenv takes it whole, MSBuild
// takes what stands behind the first bar as the platform.
std::string SolutionParameters(const CompilerSettings& settings, std::string_view configuration,
                               std::string_view solutionFile);

// Builds one project of a solution, `projectFile` as it is written there. MSBuild is not told the solution.
std::string ProjectParameters(const CompilerSettings& settings, std::string_view configuration,
                              std::string_view projectFile, std::string_view solutionFile);

// The properties by which the engine is told where programs go (MSBuild's /p:); none for devenv.
std::map<std::string, std::string> EngineProperties(const CompilerSettings& settings,
                                                    std::string_view configuration);

// The configuration up to its first bar.
std::string_view WithoutPlatform(std::string_view configuration);

}  // namespace qx
