// What stands around a run so that nothing is lost: the folders it works in held against other runs, its inputs held
// against its own outputs, and what the next command tells of a run that was cut off.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/history/KeptRun.h"
#include "host/project/OpenProject.h"
#include "host/project/RunKeeper.h"
#include "host/project/RunSummary.h"
#include "host/project/Runner.h"
#include "platform/commandline/Invocation.h"
#include "platform/files/Files.h"

namespace qx {

// How long --wait says; no time where it is not given.
std::chrono::milliseconds PatienceOf(const cli::Invocation& invocation);

// The folders that the actions of a project change files in, by their real paths, each once and sorted: whoever locks
// several does it in one order. The current folder is the project's.
std::vector<std::string> WorkFolders(const OpenProject& project);
// Holds them for one run of `project`. Raises FileInUse that says who holds one; without a folder for the host's own
// files nothing is held.
std::vector<std::unique_ptr<FileLock>> LockFolders(std::span<const std::string> folders,
                                                   const std::string& project,
                                                   std::chrono::milliseconds patience);

// Raises Exception when the file that something is to be written into is the build project, the options store, or a
// file that an action reads, whatever name leads to it.
void RefuseInputAsOutput(const std::string& output, const OpenProject& project,
                         const std::string& optionsFile);

// The versions of a summary, as they are kept.
std::vector<KeptVersion> VersionsOf(const RunSummary& summary);

// Ends what a run kept: how it went and what it says of itself.
void EndKeeping(RunKeeper& keeper, RunOutcome outcome, const RunSummary& summary);

// The newest run of a build project that is kept; none when there is none, or it cannot be read.
std::optional<KeptRun> LastKeptRun(const std::string& projectFile);

// What is to be said of a run that was killed while it stamped, and empty otherwise. Takes away what it left
// beside its files.
std::string NoteOfCutOffRun(const std::string& projectFile);

// "10:02", with the date before it for another day than today. Local time.
std::string TimeForPeople(std::int64_t seconds);

}  // namespace qx
