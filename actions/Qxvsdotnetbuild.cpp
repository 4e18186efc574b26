// A run of "Build VS.Net Solution": validation, execution, the compiler runs and what the compiler prints.
// Every failure is a line in the log and a false result.
#include <chrono>
#include <thread>

#include "actions/Qxvsdotnetaction.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxdotnetinfo.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

constexpr const char* kFrameworkVersion = "v2.0";
// Printed by the older devenv.com when nothing was built; it exits with 0 all the same. The run has then
// failed without a line about an exit code; that of 2005 prints it too and is believed (docs/deliberate.md).
constexpr std::string_view kNothingSucceeded = ": 0 succeeded,";
constexpr std::chrono::milliseconds kPauseAfterRun{10};

// The path by which the compiler finds the solution from its starting directory: as it stands where that
// works, made absolute when it leads through a folder (docs/deliberate.md), and outside Windows in the
// spelling it has on disk.
std::string CommandLinePath(const std::string& path) {
  const bool leadsAstray = !IsAbsolute(path) && !FolderPart(path).empty();
  const std::string reachable = leadsAstray ? ExpandPath("", path) : path;
  return SystemPassesOverSpelling() ? reachable : FindExisting(reachable);
}

}  // namespace

bool TQXCustomVSDotNetAction::Validate(IQXActionValidationError& errors) {
  bool valid = true;
  if (solution_.empty()) {
    errors.AddError("Solution file", "A solution file has not been set");
    valid = false;
  }
  // For vs2005 with UseMSBuild too, although that compiler lies elsewhere: set-ups depend on it
  // (docs/deliberate.md).
  if (DevEnvFolder().empty()) {
    errors.AddError("Path to devenv.com", "Path to devenv.com has not been set, check Tools->Options");
    valid = false;
  }
  return valid;
}

// An exception of the version resource update is the only one that leaves: the host reports it, and the
// numbers stay raised (docs/deliberate.md).
bool TQXCustomVSDotNetAction::Execute() {
  buildFailed_ = false;
  run_ = {};
  std::string solutionFile;
  if (!Expand("Error Expanding Solution File Name : ", solution_, solutionFile)) return false;
  if (!FileExists(solutionFile)) return Fail("Solution File does not exist");
  std::string configuration;
  if (!Expand("Error Expanding Solution Configuration Name : ", settings_.solutionConfiguration,
              configuration))
    return false;
  const CompilerPlace place = FindCompiler();
  if (!place.complaint.empty()) return Fail(place.complaint);
  const std::string& compiler = place.path;

  InterfacePtr<IVSDotNetSolution> solution;
  try {
    solutionFile = CommandLinePath(solutionFile);
    solution = OpenSolution(solutionFile);
  } catch (const std::exception& error) {
    return Fail(std::string("Error Parsing Solution File : ") + error.what());
  }
  if ((settings_.updateAssemblyInfo || settings_.updateWin32Resource) && !RunStampingPhase(solution))
    return false;
  run_.solutionFile = ExpandPath("", solutionFile);
  run_.configuration = configuration;
  if (settings_.buildType == TVSDotNetBuildType::btSelectedProjects)
    return BuildSelected(*solution, solutionFile, compiler, configuration);
  return BuildAll(*solution, solutionFile, compiler, configuration);
}

bool TQXCustomVSDotNetAction::Fail(const std::string& message) {
  SendMessage(message);
  return false;
}

bool TQXCustomVSDotNetAction::Expand(const char* complaint, const std::string& text, std::string& expanded) {
  try {
    expanded = ExpandText(text);
    return true;
  } catch (const std::exception& error) {
    return Fail(complaint + std::string(error.what()));
  }
}

bool TQXCustomVSDotNetAction::UsesMSBuild() const {
  return settings_.useMSBuild && settings_.vstudioVersion >= TVSDotNetVersion::vs2005;
}

std::string TQXCustomVSDotNetAction::DevEnvFolder() const {
  const InterfacePtr<IQXVSDotNetOptions> options = VSDotNetOptions();
  if (!options) return {};
  switch (settings_.vstudioVersion) {
    case TVSDotNetVersion::vs2002:
      return Trim(options->GetDevEnvLocation());
    case TVSDotNetVersion::vs2003:
      return Trim(options->GetDevEnv2003Location());
    case TVSDotNetVersion::vs2005:
      return Trim(options->GetDevEnv2005Location());
  }
  return {};  // a version from a damaged options store
}

TQXCustomVSDotNetAction::CompilerPlace TQXCustomVSDotNetAction::FindCompiler() const {
  const bool msbuild = settings_.useMSBuild && settings_.vstudioVersion == TVSDotNetVersion::vs2005;
  std::string folder;
  if (msbuild) {
    const InterfacePtr<IQXDotNetFramework> framework = QXDotNetInfo()->FindVersion(kFrameworkVersion);
    if (!framework) return {"", "Unable to detect .NET framework v2.x location"};
    folder = framework->GetInstallFolder();
  } else {
    folder = DevEnvFolder();
  }
  if (folder.empty()) return {"", "Path to devenv.com not set in Options!"};
  return {WithTrailingDelimiter(folder) + (msbuild ? "MSBuild.exe" : "devenv.com"), ""};
}

CompilerSettings TQXCustomVSDotNetAction::CommandLineSettings() const {
  return {UsesMSBuild() ? CompilerSyntax::MSBuild : CompilerSyntax::DevEnv, settings_.buildAction,
          settings_.useEnv};
}

void TQXCustomVSDotNetAction::LogRun(const std::string& compiler, const std::string& parameters) {
  SendMessage("Running " + compiler + " with parameters : " + parameters);
  SendMessage("------");
}

bool TQXCustomVSDotNetAction::BuildAll(IVSDotNetSolution&, const std::string& solutionFile,
                                       const std::string& compiler, const std::string& configuration) {
  const std::string parameters = SolutionParameters(CommandLineSettings(), configuration, solutionFile);
  LogRun(compiler, parameters);
  return RunCompiler(compiler, FolderPart(solutionFile), parameters);
}

bool TQXCustomVSDotNetAction::BuildSelected(IVSDotNetSolution& solution, const std::string& solutionFile,
                                            const std::string& compiler, const std::string& configuration) {
  const TStringList& selected = settings_.selectedProjects;
  if (selected.Count() == 0) return Fail("No Projects selected to build");
  const CompilerSettings settings = CommandLineSettings();
  const std::string startingDirectory = FolderPart(solutionFile);
  const InterfacePtr<IVSDotNetProjects> projects = solution.GetProjects();
  std::string remaining = configuration;
  bool succeeded = false;
  for (const std::string& id : selected.Items()) {
    const InterfacePtr<IVSDotNetProject> project = projects->FindByGUID(id);
    if (!project) {
      SendMessage(
          "A Project selected is no longer part of this solution, please open the action properties dialog "
          "and select the correct projects");
      // What the run before it gave, so the action succeeds when the first projects did: builds depend on it
      // (docs/deliberate.md).
      return succeeded;
    }
    const std::string parameters = ProjectParameters(settings, remaining, project->GetPath(), solutionFile);
    // MSBuild is told the platform once; the projects after the first build without: builds depend on it
    // (docs/deliberate.md).
    if (settings.syntax == CompilerSyntax::MSBuild) remaining = WithoutPlatform(remaining);
    SendMessage("Processing Project : " + project->GetName());
    LogRun(compiler, parameters);
    succeeded = RunCompiler(compiler, startingDirectory, parameters);
    if (!succeeded) return false;
  }
  return succeeded;
}

bool TQXCustomVSDotNetAction::RunCompiler(const std::string& compiler, const std::string& startingDirectory,
                                          const std::string& parameters) {
  try {
    InterfacePtr<IQXProcess> process;
    CreateQXProcess(process);
    process->SetExecutable(compiler);
    process->SetParameters(parameters);
    process->SetRedirectOutput(true);
    process->SetHideWindow(true);
    process->SetStartingDirectory(startingDirectory);
    // Signalled by a stop that came while nothing ran, too: this run then ends at once (docs/deliberate.md).
    process->SetStopEvent(&stopEvent_);
    process->SetCallback(this);
    const int exitCode = process->Execute();
    process = nullptr;
    std::this_thread::sleep_for(kPauseAfterRun);

    if (buildFailed_) return false;  // the compiler's own output shows why
    if (exitCode == 0) return true;
    // Also where the program ended so by itself (docs/deliberate.md).
    if (exitCode == kTerminatedExitCode) return Fail("Action Terminated by User.");
    return Fail(compiler + " returned Error code : " + std::to_string(exitCode));
  } catch (const std::exception& error) {
    return Fail("Error Running " + compiler + " : " + error.what());
  }
}

void TQXCustomVSDotNetAction::OnStdOutData(IQXProcess&, std::string_view text) {
  if (settings_.vstudioVersion < TVSDotNetVersion::vs2005 && text.find(kNothingSucceeded) != text.npos)
    buildFailed_ = true;
  LogOutput(text);
}

void TQXCustomVSDotNetAction::OnStdErrData(IQXProcess&, std::string_view text) { LogOutput(text); }

void TQXCustomVSDotNetAction::LogOutput(std::string_view text) {
  const InterfacePtr<IQXActionLogMessage> message = CreateStatusMessage();
  message->AppendDetail(text);
  SendStatusMessage(message);
}

}  // namespace qx
