#include "engine/front/Programs.h"

#include <cstdio>
#include <functional>
#include <optional>

#include "engine/ChildCommand.h"
#include "engine/front/BuildRequest.h"
#include "engine/front/HandOver.h"
#include "engine/front/SolutionBuild.h"
#include "engine/front/StreamConsole.h"
#include "platform/Posix.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr int kFailed = 1;
// The exit codes that a shell gives for the same two faults.
constexpr int kNotFound = 127;
constexpr int kNotStarted = 126;

int Complain(const char* program, const std::string& text) {
  std::fprintf(stderr, "%s : error QXE0001: %s\n", program, text.c_str());
  return kFailed;
}

// `close` prints what comes behind a build.
int Build(const char* program, const BuildRequest& request,
          const std::function<void(Console&, bool succeeded)>& close) {
  try {
    ForwardSignals();
    StreamConsole console(request.logFile);
    const bool succeeded = CarryOut(request, SettingsFromEnvironment(), RealBuilders(), console);
    close(console, succeeded);
    if (StopSignal() != 0) return 128 + StopSignal();
    return succeeded ? 0 : kFailed;
  } catch (const std::exception& failure) {
    return Complain(program, failure.what());
  }
}

// Becomes the build engine that the machine has; returns only when it cannot.
int HandOver(const std::vector<std::string>& arguments) {
  const std::optional<Engine> engine = FindEngine(system::SearchPath());
  if (!engine) {
    std::fputs(
        "MSBuild.exe: no build engine was found on the PATH (msbuild, dotnet or xbuild). Install one of "
        "them: Debian's package mono-devel has xbuild.\n",
        stderr);
    return kNotFound;
  }
  system::BecomeProgram(EngineCommand(*engine, arguments));
  const std::string reason = system::LastError();
  std::fprintf(stderr, "MSBuild.exe: cannot start %s: %s\n", engine->program.c_str(), reason.c_str());
  return kNotStarted;
}

// Files that the front builds itself, of which no MSBuild of today knows the older forms.
bool IsOurs(const std::string& file) {
  for (const char* extension : {".sln", ".vcproj", ".csproj", ".vbproj"}) {
    if (HasExtension(file, extension)) return true;
  }
  return false;
}

void PrintResult(Console& console, bool succeeded) {
  const Console::Counts counts = console.Counted();
  console.Line("");
  console.Line(succeeded ? "Build succeeded." : "Build FAILED.");
  console.Line("    " + std::to_string(counts.warnings) + " Warning(s)");
  console.Line("    " + std::to_string(counts.errors) + " Error(s)");
}

}  // namespace

int RunDevenv(const std::vector<std::string>& arguments) {
  try {
    return Build("devenv.com", ReadDevenvArguments(arguments), [](Console&, bool) {});
  } catch (const UsageError& refusal) {
    return Complain("devenv.com", refusal.what());
  }
}

int RunMsBuild(const std::vector<std::string>& arguments) {
  const MsBuildRequest request = ReadMsBuildArguments(arguments);
  if (IsOurs(request.build.file) && request.isUnderstood)
    return Build("MSBuild.exe", request.build, PrintResult);
  if (HasExtension(request.build.file, ".sln") || HasExtension(request.build.file, ".vcproj")) {
    return Complain("MSBuild.exe",
                    "for " + request.build.file +
                        " only the targets Build, Rebuild and Clean and the switches /t, /p, /v, "
                        "/m and /nologo are known here");
  }
  return HandOver(arguments);
}

}  // namespace qx
