#include "host/history/Restore.h"

#include "host/history/Digest.h"
#include "platform/files/Files.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// Empty: there is no such file.
std::string DigestOf(const std::string& path) {
  std::string bytes;
  return TryReadFile(path, bytes) ? Sha256(bytes) : std::string();
}

RestoreStep StepFor(const KeptFile& file, bool force) {
  const std::string now = DigestOf(file.path);
  if (now == file.before) return RestoreStep::AlreadyThere;
  if (now != file.after && !force) return RestoreStep::Changed;
  return file.before.empty() ? RestoreStep::Removed : RestoreStep::Restored;
}

std::vector<RestoredFile> Go(const RunHistory& history, int run, bool force, bool writes) {
  const std::string bytes = ReadFile(history.FileOf(run));
  const std::optional<KeptRun> record = ReadKeptRun(bytes);
  if (!record) throw Exception(history.FileOf(run) + " is no record of a run");
  KeptContents contents(*record, bytes);
  std::vector<RestoredFile> files;
  for (const KeptFile& file : record->files) {
    RestoredFile restored{file.path, StepFor(file, force)};
    if (restored.step == RestoreStep::Removed && writes) RemoveFile(file.path);
    if (restored.step == RestoreStep::Restored) {
      const auto content = contents.Find(file.before);
      if (!content) restored.step = RestoreStep::Lost;
      if (content && writes) ReplaceFile(file.path, *content);
    }
    if (writes) RemoveLeftover(file.path);
    files.push_back(std::move(restored));
  }
  return files;
}

}  // namespace

std::vector<RestoredFile> PlanRestore(const RunHistory& history, int run, bool force) {
  return Go(history, run, force, false);
}

std::vector<RestoredFile> Restore(const RunHistory& history, int run, bool force) {
  return Go(history, run, force, true);
}

StampedCount CountStamped(const KeptRun& record) {
  StampedCount count{0, record.files.size()};
  for (const KeptFile& file : record.files) {
    if (DigestOf(file.path) == file.after) ++count.stamped;
  }
  return count;
}

}  // namespace qx
