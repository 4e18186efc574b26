// What a command line of devenv.com or MSBuild.exe asks for. The two readers of command lines make it, the
// build of a solution or project works from it.
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Project.h"

namespace qx {

struct BuildRequest {
  std::string file;           // the solution or project, as given
  std::string configuration;  // "Release", "Release|Win32"; of MSBuild.exe both parts joined; may be empty
  std::string project;        // only this one and what it needs: a name, path or identifier; empty: all
  std::string projectConfiguration;  // for that one, instead of the one it is mapped to; empty: none
  std::string logFile;               // gets every line as well; empty: none
  Goal goal = Goal::Build;
  bool isDeployed = false;       // build, then deploy
  bool usesEnvironment = false;  // INCLUDE, LIB and PATH before the folders of the tools
  // Of MSBuild.exe, without the configuration and the platform.
  std::map<std::string, std::string> properties;
};

// A command line that cannot be followed; the text says what to do.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// How the user set the engine up; the host hands it on by environment variables.
struct FrontSettings {
  std::string launcher;        // QX_ENGINE_LAUNCHER: stands before every C and C++ compile
  int jobs = 0;                // QX_ENGINE_JOBS; 0: as many as there are processors
  std::set<std::string> skip;  // QX_ENGINE_SKIP: "vb,setup": skipped with a warning instead of failed
};
// Raises UsageError where a variable holds what it cannot.
FrontSettings SettingsFromEnvironment();

// `/build CFG`, `/rebuild`, `/clean`, `/deploy`, with `/project`, `/projectconfig`, `/useenv`, `/out`;
// switches in any letter case. Raises UsageError.
BuildRequest ReadDevenvArguments(const std::vector<std::string>& arguments);

// What MSBuild.exe was asked, as far as this front itself can do it.
struct MsBuildRequest {
  BuildRequest build;
  bool isUnderstood = true;  // false: a target, switch or response file that only a full MSBuild knows
};
MsBuildRequest ReadMsBuildArguments(const std::vector<std::string>& arguments);

}  // namespace qx
