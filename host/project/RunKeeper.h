// What a run keeps so that it can be undone and no number is given twice: before the first file of an action is
// written, the numbers that it raised are saved and the files' contents are kept, both on the disk.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/history/RunHistory.h"
#include "host/project/OpenProject.h"
#include "platform/files/WriteObserver.h"

namespace qx {

class RunKeeper final : public WriteObserver {
 public:
  struct Settings {
    // Saves the project with the numbers that were raised, and returns warnings; null: it is not saved.
    std::function<std::vector<std::string>()> saveNumbers;
    int history = 20;                  // runs that are kept; 0: none, and this one is not either
    std::int64_t started = 0;          // seconds since 1970
    std::vector<std::string> folders;  // that the run works in
  };
  // `project` outlives it. A user without a folder for it gets a warning and no history.
  RunKeeper(OpenProject& project, const Settings& settings);

  // On the thread of the actions. Raises Exception when the numbers cannot be saved or the contents not kept.
  void BeforeWrites(std::span<const PlannedWrite> writes) override;
  // Behind the last action, its thread ended. What fails becomes a warning: the run is over.
  void End(KeptResult result, double seconds, const std::vector<KeptVersion>& versions);
  // Warnings so far, each once.
  const std::vector<std::string>& Warnings() const { return warnings_; }
  bool HasWarned(const std::string& text) const;

 private:
  void Warn(const std::string& text);

  OpenProject& project_;
  Settings settings_;
  std::optional<RunHistory> history_;
  std::optional<RunJournal> journal_;
  std::vector<std::string> warnings_;
};

}  // namespace qx
