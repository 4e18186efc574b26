#include "host/keeping/Keeping.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "host/history/Digest.h"
#include "host/history/Restore.h"
#include "host/history/RunHistory.h"
#include "host/system/HostProgram.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "plugin/Qxrunplaces.h"

namespace qx {
namespace {

// A name for the lock of a folder, in the folder of the user's locks.
std::string LockName(const std::string& folder) {
  const std::string place = SystemPassesOverSpelling() ? FoldCase(folder) : folder;
  return WithTrailingDelimiter(StateFolder() + "locks") + Sha256(place).substr(0, 16);
}

bool IsInStateFolder(const std::string& file) {
  try {
    return RealPath(file).starts_with(RealPath(StateFolder()));
  } catch (const Exception&) {
    return false;  // there is no such folder
  }
}

std::string Formatted(const char* form, std::int64_t seconds) {
  const std::time_t time = seconds;
  char text[64];
  return std::string(text, std::strftime(text, sizeof text, form, std::localtime(&time)));
}

// What a killed process holds no longer goes away when it is taken and given back.
void TakeLeftLocks(const KeptRun& record) {
  for (const std::string& folder : record.folders) {
    try {
      const FileLock lock(LockName(folder));
    } catch (const Exception&) {
      // Another run works there now.
    }
  }
}

}  // namespace

std::chrono::milliseconds PatienceOf(const cli::Invocation& invocation) {
  const double seconds = cli::ToSeconds(invocation.Value("--wait").value_or("0")).value_or(0);
  return std::chrono::milliseconds(static_cast<long long>(std::ceil(seconds * 1000)));
}

std::vector<std::string> WorkFolders(const OpenProject& project) {
  std::vector<std::string> folders;
  for (int i = 0; i < project.ActionCount(); ++i) {
    if (project.Action(i) == nullptr || !project.IsEnabled(i)) continue;
    IQXRunPlaces* places = RunPlacesOf(*project.Action(i));
    if (places == nullptr) continue;
    for (const std::string& folder : places->GetWorkFolders())
      folders.push_back(WithTrailingDelimiter(RealPath(folder)));
  }
  std::sort(folders.begin(), folders.end());
  folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
  return folders;
}

std::vector<std::unique_ptr<FileLock>> LockFolders(std::span<const std::string> folders,
                                                   const std::string& project,
                                                   std::chrono::milliseconds patience) {
  std::vector<std::unique_ptr<FileLock>> locks;
  for (const std::string& folder : folders) {
    try {
      const std::string name = LockName(folder);
      CreateFolders(FolderPart(name));
      locks.push_back(
          std::make_unique<FileLock>(name, patience, FileLock::Words{folder, " (" + project + ")"}));
    } catch (const FileInUse&) {
      throw;
    } catch (const Exception&) {
      // The user has no folder for locks, or none that can be written.
    }
  }
  return locks;
}

void RefuseInputAsOutput(const std::string& output, const OpenProject& project,
                         const std::string& optionsFile) {
  const auto refuse = [&](const std::string& what) {
    throw Exception("Cannot write into " + output + ": it is " + what + "; name another file");
  };
  if (IsInStateFolder(output)) refuse("in the folder of what the host keeps");
  if (!FileExists(output)) return;
  if (AreSameFile(output, project.File())) refuse("the build project");
  if (AreSameFile(output, optionsFile)) refuse("the options store");
  for (int i = 0; i < project.ActionCount(); ++i) {
    IQXRunPlaces* places = project.Action(i) == nullptr ? nullptr : RunPlacesOf(*project.Action(i));
    if (places == nullptr) continue;
    for (const std::string& input : places->GetInputFiles()) {
      if (AreSameFile(output, input)) refuse("a file of action " + std::to_string(i + 1));
    }
  }
}

std::vector<KeptVersion> VersionsOf(const RunSummary& summary) {
  std::vector<KeptVersion> versions;
  for (const auto& [action, report] : summary.reports) {
    for (const RunVersion& version : report.versions)
      versions.push_back({action, version.name, version.from, version.to});
  }
  return versions;
}

void EndKeeping(RunKeeper& keeper, RunOutcome outcome, const RunSummary& summary) {
  KeptResult result = KeptResult::Failed;
  if (outcome == RunOutcome::Succeeded) result = KeptResult::Succeeded;
  if (outcome == RunOutcome::Stopped) result = KeptResult::Stopped;
  keeper.End(result, summary.seconds, VersionsOf(summary));
}

std::string TimeForPeople(std::int64_t seconds) {
  const bool isToday = Formatted("%Y-%m-%d", seconds) == Formatted("%Y-%m-%d", std::time(nullptr));
  return Formatted(isToday ? "%H:%M" : "%Y-%m-%d %H:%M", seconds);
}

std::optional<KeptRun> LastKeptRun(const std::string& projectFile) try {
  const RunHistory history(projectFile);
  const std::vector<int> runs = history.Numbers();
  return runs.empty() ? std::nullopt : history.Read(runs.front());
} catch (const Exception&) {
  return std::nullopt;
}

std::string NoteOfCutOffRun(const std::string& projectFile) try {
  const std::optional<KeptRun> record = LastKeptRun(projectFile);
  if (!record || record->result != KeptResult::CutOff) return "";
  try {
    const FileLock lock(projectFile);
  } catch (const FileInUse&) {
    return "";  // it goes on
  } catch (const FileNotLockable&) {
    // Nobody can hold it, and nobody does.
  }
  TakeLeftLocks(*record);
  for (const KeptFile& file : record->files) {
    if (!IsOnServer(file.path)) RemoveLeftover(file.path);
  }
  const StampedCount count = CountStamped(*record);
  if (count.stamped + count.onServers == 0) return "";
  std::string counts;
  if (count.all > 0)
    counts = std::to_string(count.stamped) + " of " + std::to_string(count.all) + " files were stamped";
  if (count.onServers > 0) {
    counts += (counts.empty() ? "" : ", ") + std::to_string(count.onServers) +
              " on web servers may have been put there";
  }
  return "the run of " + TimeForPeople(record->started) + " was cut off: " + counts +
         "; qxhost restore takes them back";
} catch (const std::exception&) {
  return "";  // what is kept cannot be read: the command has its own work
}

}  // namespace qx
