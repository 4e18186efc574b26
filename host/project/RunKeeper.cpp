#include "host/project/RunKeeper.h"

#include <algorithm>

#include "host/system/TemporaryFolder.h"

namespace qx {

RunKeeper::RunKeeper(OpenProject& project, const Settings& settings)
    : project_(project), settings_(settings) {
  if (settings_.history == 0) return;
  try {
    history_.emplace(project_.File());
    journal_.emplace(*history_, settings_.started, settings_.folders);
  } catch (const Exception& fault) {
    journal_.reset();
    Warn("This run cannot be undone: " + fault.Message());
  }
}

bool RunKeeper::HasWarned(const std::string& text) const {
  return std::find(warnings_.begin(), warnings_.end(), text) != warnings_.end();
}

void RunKeeper::Warn(const std::string& text) {
  if (!HasWarned(text)) warnings_.push_back(text);
}

void RunKeeper::BeforeWrites(std::span<const PlannedWrite> writes) {
  std::vector<PlannedWrite> lasting;
  for (const PlannedWrite& write : writes) {
    if (!IsTemporaryFile(write.path)) lasting.push_back(write);
  }
  if (lasting.empty()) return;
  if (journal_) journal_->Keep(lasting, project_.ChangedNumbers());
  if (!settings_.saveNumbers || !project_.IsChanged()) return;
  for (const std::string& warning : settings_.saveNumbers()) Warn(warning);
}

void RunKeeper::End(KeptResult result, double seconds, const std::vector<KeptVersion>& versions) {
  if (!journal_) return;
  try {
    journal_->End(result, seconds, project_.ChangedNumbers(), versions);
    history_->Prune(settings_.history);
  } catch (const Exception& fault) {
    Warn(fault.Message());
  }
}

}  // namespace qx
