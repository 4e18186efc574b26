// A run that shows what it would do: nothing on disk changes and no program is started while one is alive.
#pragma once

#include <string>

#include "host/runtime/ProcessRehearsal.h"
#include "platform/Files.h"

namespace qx::cli {

class DryRun {
 public:
  // The command lines that would have run, and a unified diff of every file that would have changed, backups too.
  // Files below `folder` are named relative to it, others from the root of the file system.
  std::string Report(const std::string& folder) const;

 private:
  WriteCapture writes_;
  ProcessRehearsal processes_;
};

}  // namespace qx::cli
