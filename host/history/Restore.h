// Putting files back as they were before a run, as far as nobody has changed them since.
#pragma once

#include <string>
#include <vector>

#include "host/history/RunHistory.h"

namespace qx {

// What becomes of one file of a run.
enum class RestoreStep {
  Restored,      // it is as it was before the run
  Removed,       // the run made it
  AlreadyThere,  // it was so already
  Changed,       // somebody changed it since: it is left alone
  Lost,          // its content is not kept, or damaged
};

struct RestoredFile {
  std::string path;
  RestoreStep step = RestoreStep::AlreadyThere;
};

// What restoring would do; nothing is written. `force`: files that were changed since are restored too.
std::vector<RestoredFile> PlanRestore(const RunHistory& history, int run, bool force);
// Does it, file by file. What `force` overwrites is to be kept by whoever observes the writes. Raises as ReplaceFile.
std::vector<RestoredFile> Restore(const RunHistory& history, int run, bool force);

// How many of a run's files are as it left them, of those that it was to change.
struct StampedCount {
  std::size_t stamped = 0, all = 0;
};
StampedCount CountStamped(const KeptRun& record);

}  // namespace qx
