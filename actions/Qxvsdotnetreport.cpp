// What a run of "Build VS.Net Solution" tells of itself: versions from and to, stamped files, and the
// programs that it was to make. Looks and compares only after the run; the run itself notes down what would
// be gone by then.
#include <algorithm>

#include "actions/Qxvsdotnetaction.h"
#include "built/BuiltPrograms.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

RunProject AsReported(const BuiltProgram& program) {
  return {program.name,
          program.path,
          program.output,
          std::string(NameOfState(program.state)),
          program.reason,
          {program.expected.assembly, program.expected.file},
          {program.found.assembly, program.found.file},
          IsFault(program.state)};
}

// One row for the whole solution, where its projects could not be looked at.
RunProject WholeSolution(const std::string& file, BuiltState state, const std::string& reason) {
  BuiltProgram all;
  all.name = FilePart(file);
  all.path = file;
  all.state = state;
  all.reason = reason;
  return AsReported(all);
}

}  // namespace

// As the files get it: expanded, with points; as it stands where it cannot be expanded.
std::string TQXCustomVSDotNetAction::DottedForReport(const std::string& version) {
  std::string text = version;
  try {
    text = ExpandText(version);
  } catch (const std::exception&) {
    // The run itself has complained.
  }
  std::replace(text.begin(), text.end(), '|', '.');
  return text;
}

std::vector<RunVersion> TQXCustomVSDotNetAction::VersionsForReport() {
  std::vector<RunVersion> versions;
  const auto add = [&](const char* name, const std::string& value) { versions.push_back({name, "", value}); };
  if (settings_.updateAssemblyInfo && IsAttributeUpdated(AssemblyAttribute::Version)) {
    add("AssemblyVersion", DottedForReport(assemblyVersion_.whole));
  }
  if (settings_.updateAssemblyInfo && IsAttributeUpdated(AssemblyAttribute::FileVersion)) {
    const bool isLinked = settings_.linkAssemblyFileVersionInfo;
    add("AssemblyFileVersion",
        DottedForReport(isLinked ? assemblyVersion_.whole : assemblyFileVersion_.whole));
  }
  if (settings_.updateWin32Resource) {
    const VersionNumbers& n = record_.numbers;
    add("FileVersion", std::to_string(n.major) + "." + std::to_string(n.minor) + "." +
                           std::to_string(n.release) + "." + std::to_string(n.build));
  }
  return versions;
}

void TQXCustomVSDotNetAction::FileStamped(const std::string& path, const std::string& backup, bool changed) {
  run_.files.push_back({path, "AssemblyInfo", changed, backup});
}

void TQXCustomVSDotNetAction::NoteVersionsAfterStamping() {
  const std::vector<RunVersion> now = VersionsForReport();
  for (std::size_t i = 0; i < run_.versions.size(); ++i) {
    run_.versions[i].from = run_.versions[i].to;
    run_.versions[i].to = now[i].to;
  }
}

RunReport TQXCustomVSDotNetAction::ReportRun(bool looksForPrograms) {
  RunReport report{run_.versions, run_.files, {}};
  const bool builds = settings_.buildAction == TVSDotNetBuildAction::baBuild ||
                      settings_.buildAction == TVSDotNetBuildAction::baRebuild;
  if (!looksForPrograms || !builds || run_.solutionFile.empty()) return report;
  const bool isSelection = settings_.buildType == TVSDotNetBuildType::btSelectedProjects;
  const auto isBuilt = [&](const std::string& guid) {
    return !isSelection || settings_.selectedProjects.IndexOf(guid) >= 0;
  };
  try {
    const auto programs =
        LookAtBuiltPrograms(run_.solutionFile, run_.configuration,
                            EngineProperties(CommandLineSettings(), run_.configuration), isBuilt);
    for (const BuiltProgram& program : programs) report.projects.push_back(AsReported(program));
  } catch (const UnknownConfiguration& error) {
    // The engine had nothing to build.
    report.projects.push_back(WholeSolution(run_.solutionFile, BuiltState::Missing, error.what()));
  } catch (const std::exception& error) {
    report.projects.push_back(WholeSolution(run_.solutionFile, BuiltState::Unknown, error.what()));
  }
  return report;
}

}  // namespace qx
