#include "host/history/Restore.h"

#include "host/history/Digest.h"
#include "host/system/Stopping.h"
#include "platform/files/Files.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// Empty: there is no such file.
std::string DigestOf(const std::string& path) {
  std::string bytes;
  return TryReadFile(path, bytes) ? Sha256(bytes) : std::string();
}

RestoreStep StepFor(const KeptFile& file, const std::string& now, bool force) {
  if (now == file.before) return RestoreStep::AlreadyThere;
  if (now != file.after && !force) return RestoreStep::Changed;
  return file.before.empty() ? RestoreStep::Removed : RestoreStep::Restored;
}

// One restoring, or the plan of one.
class Restoring {
 public:
  Restoring(const RunHistory& history, int run, const RestoreWay* way, bool force)
      : run_(run), way_(way), force_(force), bytes_(ReadFile(history.FileOf(run))) {
    auto record = ReadKeptRun(bytes_);
    if (!record) throw Exception(history.FileOf(run) + " is no record of a run");
    record_ = *std::move(record);
    contents_.emplace(record_, bytes_);
  }

  std::vector<RestoredFile> Go() {
    std::vector<RestoredFile> files;
    for (const KeptFile& file : record_.files)
      files.push_back(IsOnServer(file.path) ? PutBack(file) : WriteBack(file));
    return files;
  }

 private:
  RestoredFile WriteBack(const KeptFile& file) {
    RestoredFile restored{file.path, StepFor(file, DigestOf(file.path), force_), "", ""};
    const bool writes = way_ != nullptr;
    if (restored.step == RestoreStep::Removed && writes) RemoveFile(file.path);
    if (restored.step == RestoreStep::Restored) {
      const auto content = contents_->Find(file.before);
      if (!content) restored.step = RestoreStep::Lost;
      if (content && writes) ReplaceFile(file.path, *content);
    }
    if (writes) RemoveLeftover(file.path);
    return restored;
  }

  RestoredFile PutBack(const KeptFile& file) {
    RestoredFile restored{file.path, RestoreStep::Lost, "", ""};
    const auto content = contents_->Find(file.before);
    if (!content) return restored;
    restored.step = RestoreStep::Unknown;
    if (way_ == nullptr) return restored;
    try {
      if (way_->servers == nullptr) throw Exception("no server is asked");
      restored.step = StepFor(file, Sha256(way_->servers->Read(file.path)), force_);
      if (restored.step == RestoreStep::Restored) way_->servers->Put(file.path, *content);
    } catch (const Exception& fault) {
      if (StopIsAsked()) throw;
      restored = {file.path, RestoreStep::Aside, fault.Message(), WriteAside(file.path, *content)};
    }
    return restored;
  }

  std::string WriteAside(const std::string& url, const std::string& content) const {
    const std::string stem =
        way_->asideFolder + url.substr(url.rfind('/') + 1) + ".before-run-" + std::to_string(run_);
    std::string file = stem;
    // Two of a name come from different folders of the server.
    std::string bytes;
    for (int i = 2; TryReadFile(file, bytes) && bytes != content; ++i) file = stem + "." + std::to_string(i);
    ReplaceFile(file, content);
    return file;
  }

  int run_;
  const RestoreWay* way_;  // null: nothing is done
  bool force_;
  std::string bytes_;
  KeptRun record_;
  std::optional<KeptContents> contents_;
};

}  // namespace

bool IsOnServer(std::string_view path) { return path.starts_with("http://") || path.starts_with("https://"); }

std::vector<RestoredFile> PlanRestore(const RunHistory& history, int run, bool force) {
  return Restoring(history, run, nullptr, force).Go();
}

std::vector<RestoredFile> Restore(const RunHistory& history, int run, const RestoreWay& way) {
  return Restoring(history, run, &way, way.force).Go();
}

StampedCount CountStamped(const KeptRun& record) {
  StampedCount count;
  for (const KeptFile& file : record.files) {
    if (IsOnServer(file.path)) {
      ++count.onServers;
      continue;
    }
    ++count.all;
    if (DigestOf(file.path) == file.after) ++count.stamped;
  }
  return count;
}

}  // namespace qx
