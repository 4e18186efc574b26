#include "actions/CompilerCommandLine.h"

#include "platform/Texts.h"

namespace qx {
namespace {

struct BuildSwitch {
  std::string_view devenv;
  std::string_view msbuild;
};

// By the ordinal of TVSDotNetBuildAction.
constexpr BuildSwitch kBuildSwitches[] = {
    {"/build", "/t:Build"},
    {"/rebuild", "/t:Rebuild"},
    {"/clean", "/t:Clean"},
    {"/deploy", "/t:Deploy"},
};

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string DevEnvSwitches(const CompilerSettings& settings, std::string_view configuration) {
  const std::string_view build = kBuildSwitches[static_cast<std::size_t>(settings.action)].devenv;
  return (settings.useEnvironment ? "/useenv " : "") + std::string(build) + " " + Quoted(configuration);
}

std::string MSBuildParameters(const CompilerSettings& settings, std::string_view configuration,
                              std::string_view target) {
  const std::string_view name = WithoutPlatform(configuration);
  std::string out = Quoted(target) + " ";
  out += kBuildSwitches[static_cast<std::size_t>(settings.action)].msbuild;
  if (settings.useEnvironment) out += " /p:useenv=1";
  out += " /p:Configuration=" + Quoted(name);
  if (name.size() == configuration.size()) return out;

  const std::string_view platform = configuration.substr(name.size() + 1);
  out += ";Platform=" + Quoted(platform);
  // The one platform whose projects would otherwise build into a folder of the platform's name.
  if (LowerCase(platform) == "any cpu") out += ";OutputPath=" + Quoted("bin\\" + std::string(name));
  return out;
}

}  // namespace

std::string SolutionParameters(const CompilerSettings& settings, std::string_view configuration,
                               std::string_view solutionFile) {
  if (settings.syntax == CompilerSyntax::MSBuild)
    return MSBuildParameters(settings, configuration, solutionFile);
  return DevEnvSwitches(settings, configuration) + " " + Quoted(solutionFile);
}

std::string ProjectParameters(const CompilerSettings& settings, std::string_view configuration,
                              std::string_view projectFile, std::string_view solutionFile) {
  if (settings.syntax == CompilerSyntax::MSBuild)
    return MSBuildParameters(settings, configuration, projectFile);
  return DevEnvSwitches(settings, configuration) + " /project " + Quoted(projectFile) + " " +
         Quoted(solutionFile);
}

std::string_view WithoutPlatform(std::string_view configuration) {
  return configuration.substr(0, configuration.find('|'));
}

}  // namespace qx
