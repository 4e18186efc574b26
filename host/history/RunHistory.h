// The runs of one build project that are kept, in a folder of the user's state that belongs to it: reading them,
// and writing the record of the one that goes on. A process that reads takes no lock.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/history/KeptRun.h"
#include "platform/files/AppendedFile.h"
#include "platform/files/WriteObserver.h"

namespace qx {

class RunHistory {
 public:
  // Of a build project's file, whatever name leads to it, below StateFolder() or another. The first raises Exception
  // where the user has none.
  explicit RunHistory(const std::string& projectFile);
  RunHistory(const std::string& projectFile, const std::string& stateFolder);

  // The folder with its delimiter; it need not exist.
  const std::string& Folder() const { return folder_; }
  // The numbers of the runs that are kept, newest first.
  std::vector<int> Numbers() const;
  std::string FileOf(int run) const;
  // None for a record that is not there, or none.
  std::optional<KeptRun> Read(int run) const;
  // Takes all but the newest away.
  void Prune(int kept) const;

 private:
  std::string folder_;
};

// The record of a run while it goes on. Each function is on the disk when it returns, and raises Exception "Cannot
// keep what this run changes: REASON".
class RunJournal {
 public:
  // Begins the record of the next run.
  RunJournal(const RunHistory& history, std::int64_t started, std::span<const std::string> folders);

  int Run() const { return run_; }
  // Keeps what will be gone.
  void Keep(std::span<const PlannedWrite> writes, std::span<const KeptNumber> numbers);
  void End(KeptResult result, double seconds, std::span<const KeptNumber> numbers,
           std::span<const KeptVersion> versions);

 private:
  void Write(std::span<const std::string_view> pieces);

  int run_ = 0;
  std::string head_;
  std::string file_;
  std::unique_ptr<AppendedFile> out_;  // from the first thing that is kept
  std::set<std::string> kept_;         // digests
};

}  // namespace qx
