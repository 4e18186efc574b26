// The stamping phase of a run: raises the numbers, has the assembly attributes and the version resources of the
// chosen projects rewritten. It comes before any compiler run, and a failure keeps the compiler from running.
#include <exception>

#include "actions/Qxvsdotnetaction.h"
#include "platform/files/FileRewrite.h"
#include "platform/files/Files.h"
#include "solution/Vsnetsln.h"

namespace qx {

bool TQXCustomVSDotNetAction::RunStampingPhase(const InterfacePtr<IVSDotNetSolution>& solution) {
  run_.versions = VersionsForReport();
  const bool stamped = Stamp(solution);
  NoteVersionsAfterStamping();
  return stamped;
}

bool TQXCustomVSDotNetAction::Stamp(const InterfacePtr<IVSDotNetSolution>& solution) {
  if (settings_.updateAssemblyInfo) {
    // Raised whether or not the build that follows succeeds.
    AssemblyVersions raised = VersionsOfNextRun();
    assemblyVersion_ = std::move(raised.assembly);
    assemblyFileVersion_ = std::move(raised.file);
    if (!UpdateAssemblyAttributes(solution)) return false;
  }
  if (settings_.updateWin32Resource) {
    if (!DoUpdateWin32VersionInfo(*solution)) return Fail("Win32 Version Info Not updated");
    SendMessage("Win32 Version Info updated");
  }
  return true;
}

// A part that is no number becomes 1, where DoAutoIncBuild makes it 0 (docs/deliberate.md).
TQXCustomVSDotNetAction::AssemblyVersions TQXCustomVSDotNetAction::VersionsOfNextRun() const {
  AssemblyVersions versions{assemblyVersion_, assemblyFileVersion_};
  const auto raise = [](AssemblyVersionState& version, std::string VersionParts::*part) {
    version.parts.*part = NextNumber(version.parts.*part, 0);
    version.Reset();
  };
  if (autoIncAssemblyRevisionNo_) raise(versions.assembly, &VersionParts::revision);
  if (autoIncAssemblyFileRevisionNo_) raise(versions.file, &VersionParts::revision);
  if (autoIncAssemblyBuildNo_) raise(versions.assembly, &VersionParts::build);
  if (autoIncAssemblyFileBuildNo_) raise(versions.file, &VersionParts::build);
  return versions;
}

bool TQXCustomVSDotNetAction::UpdateAssemblyAttributes(const InterfacePtr<IVSDotNetSolution>& solution) {
  const InterfacePtr<IQXActionLogMessage> message = CreateStatusMessage();
  try {
    const InterfacePtr<IQXAssemblyInfoUpdater> updater = GetAssemblyInfoUpdater(solution, *this, message);
    message->SetHeading("Updating AssemblyInfo");
    if (settings_.applyAssemblyInfoTo == TVSDotNetBuildType::btAllProjects) {
      updater->UpdateAll();
    } else {
      const bool buildsSelected = settings_.buildType == TVSDotNetBuildType::btSelectedProjects;
      updater->UpdateSelected(settings_.assemblySelectedProjects,
                              buildsSelected ? &settings_.selectedProjects : nullptr);
    }
    SendStatusMessage(message);
    return true;
  } catch (const std::exception& error) {
    message->SetHeading(std::string("Error Updating Assembly Info : ") + error.what());
    SendStatusMessage(message);
    return false;
  }
}

// The scripts are written together; the log comes out as if each were written when it is its turn: a script that
// cannot be written ends it.
bool TQXCustomVSDotNetAction::DoUpdateWin32VersionInfo(IVSDotNetSolution& solution) {
  // Once a run, so that every project gets the same number.
  if (autoIncBuild_) SetBuildVer(NextNumber(GetBuildVer()));

  std::vector<ScriptUpdate> updates;
  bool updated = false;
  std::exception_ptr fault;
  RewritesTogether rewrites;
  scriptUpdates_ = &updates;
  try {
    updated = UpdateScripts(solution);
  } catch (...) {
    fault = std::current_exception();
  }
  scriptUpdates_ = nullptr;
  try {
    rewrites.Place();
  } catch (...) {
    fault = std::current_exception();
  }
  const std::size_t placed = rewrites.PlacedCount();
  for (std::size_t i = 0; i < updates.size() && i <= placed; ++i) {
    LogScript(updates[i]);
    if (i < placed) NoteScript(updates[i]);
  }
  if (fault) std::rethrow_exception(fault);
  return updated;
}

bool TQXCustomVSDotNetAction::UpdateScripts(IVSDotNetSolution& solution) {
  const auto apply = [this](const InterfacePtr<IVSDotNetProject>& project) {
    if (!project) return true;
    const std::string script = project->GetVersionInfoFile();
    return script.empty() || ApplyVersionInfo(script);
  };
  const InterfacePtr<IVSDotNetProjects> projects = solution.GetProjects();
  if (settings_.applyResourceInfoTo == TVSDotNetBuildType::btSelectedProjects) {
    for (const std::string& id : settings_.resourceSelectedProjects.Items()) {
      if (!apply(projects->FindByGUID(id))) return false;
    }
    return true;
  }
  for (int index = 0; index < projects->GetCount(); ++index) {
    if (!apply(projects->GetItem(index))) return false;
  }
  return true;
}

bool TQXCustomVSDotNetAction::ApplyVersionInfo(const std::string& fileName) {
  const InterfacePtr<IQXVC7VersionInfoParser> parser = GetVersionInfoParser(*this, fileName);
  const ScriptUpdate update{fileName, TimeWritten(fileName)};
  if (scriptUpdates_ != nullptr) {
    scriptUpdates_->push_back(update);
    return parser->UpdateVersionInfo(*this);
  }
  LogScript(update);
  const bool updated = parser->UpdateVersionInfo(*this);
  if (updated) NoteScript(update);
  return updated;
}

void TQXCustomVSDotNetAction::LogScript(const ScriptUpdate& update) {
  SendMessage("Updating Version info in file : " + update.file);
}

// Bytes that stay the same are not written: then the time stays, too.
void TQXCustomVSDotNetAction::NoteScript(const ScriptUpdate& update) {
  run_.files.push_back(
      {update.file, "ResourceScript", TimeWritten(update.file) != update.timeBefore, update.file + ".orig"});
}

}  // namespace qx
