// A run that shows what it would do: nothing on disk changes and no program is started while one is alive.
#pragma once

#include <string>

#include "host/runtime/OpenProject.h"
#include "host/runtime/ProcessRehearsal.h"
#include "platform/Files.h"

namespace qx {

class DryRun {
 public:
  // The command lines that would have run, and a unified diff of every file that would have changed, backups
  // too. Files below the project's folder are named relative to it, others from the root of the file system.
  // A secret that stands in clear text in the project's file is masked.
  std::string Report(const OpenProject& project) const;

 private:
  WriteCapture writes_;
  ProcessRehearsal processes_;
};

}  // namespace qx
