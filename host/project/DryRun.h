// A run that shows what it would do: while one is alive, nothing on disk changes and no program is started by
// the thread that made it and by those that join. The rest of the process goes on as ever.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/process/ProcessRehearsal.h"
#include "host/project/OpenProject.h"
#include "host/project/UnifiedDiff.h"
#include "host/system/UploadRehearsal.h"
#include "platform/files/Files.h"

namespace qx {

// What a run would do.
struct DryRunResult {
  // A file that would change, a backup too.
  struct File {
    std::string path;  // as it is on disk
    // Below the project's folder relative to it, any other from the root of the file system; with "/".
    std::string name;
    std::optional<std::string> before;  // none: there is no such file
    std::optional<std::string> after;   // none: it would be removed
    std::vector<DiffLine> diff;
  };
  // A file that would be put on a web server.
  struct Upload {
    std::string url;
    std::vector<DiffLine> diff;
  };
  std::vector<ProcessRehearsal::Command> programs;  // in the order they would be started
  std::vector<Upload> uploads;                      // in the order of first put
  std::vector<File> files;                          // in the order of first touch
};

// The programs, what goes to servers and then the files line by line; TextOf makes a patch with remarks of it.
std::vector<DiffLine> LinesOf(const DryRunResult& result);

class DryRun {
 public:
  // While one is alive, its thread works for the dry run too, which outlives it.
  class Joined {
   public:
    explicit Joined(const DryRun& run)
        : writes_(run.writes_), processes_(run.processes_), uploads_(run.uploads_) {}

   private:
    WriteCapture::Joined writes_;
    ProcessRehearsal::Joined processes_;
    UploadRehearsal::Joined uploads_;
  };

  // A secret that stands in clear text in the project's file is masked.
  DryRunResult Result(const OpenProject& project) const;

 private:
  WriteCapture writes_;
  ProcessRehearsal processes_;
  UploadRehearsal uploads_;
};

}  // namespace qx
