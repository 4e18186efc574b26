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

  // A bar means that there is a platform, an empty one too (docs/deliberate.md).
  out += ";Platform=" + Quoted(configuration.substr(name.size() + 1));
  for (const auto& [property, value] : EngineProperties(settings, configuration)) {
    out += ";" + property + "=" + Quoted(value);
  }
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

std::map<std::string, std::string> EngineProperties(const CompilerSettings& settings,
                                                    std::string_view configuration) {
  const std::string_view name = WithoutPlatform(configuration);
  // The one platform whose projects would otherwise build into a folder of the platform's name.
  const bool isAnyCpu =
      name.size() < configuration.size() && LowerCase(configuration.substr(name.size() + 1)) == "any cpu";
  if (settings.syntax != CompilerSyntax::MSBuild || !isAnyCpu) return {};
  return {{"OutputPath", "bin\\" + std::string(name)}};
}

std::string_view WithoutPlatform(std::string_view configuration) {
  return configuration.substr(0, configuration.find('|'));
}

}  // namespace qx
