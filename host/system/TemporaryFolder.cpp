#include "host/system/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <vector>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

class TemporaryFolder {
 public:
  ~TemporaryFolder() { Remove(); }
  std::string Path() {
    const std::lock_guard guard(mutex_);
    std::error_code error;
    if (path_.empty() || !std::filesystem::is_directory(OnDisk(), error)) Make();
    return path_;
  }
  bool Holds(std::string_view path) {
    const std::lock_guard guard(mutex_);
    return std::any_of(made_.begin(), made_.end(), [&](const std::string& one) {
      return SystemPassesOverSpelling() ? SameText(path.substr(0, one.size()), one) : path.starts_with(one);
    });
  }
  void Remove() {
    const std::lock_guard guard(mutex_);
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove_all(OnDisk(), error);
    path_.clear();
  }

 private:
  void Make() {
    path_ = MakePrivateFolder();
    made_.push_back(WithTrailingDelimiter(RealPath(path_)));
  }
  std::filesystem::path OnDisk() const { return ToUtf16(path_); }

  std::mutex mutex_;
  std::string path_;
  std::vector<std::string> made_;  // all that there were, by their real paths
};

// Packages ask for it by a function that takes no host; and it has to go even when a program leaves by
// exit(), where only what is static is destroyed.
TemporaryFolder& TheFolder() {
  static TemporaryFolder folder;
  return folder;
}

}  // namespace

std::string GetTemporaryPath() { return TheFolder().Path(); }
bool IsTemporaryFile(std::string_view path) { return TheFolder().Holds(path); }
void RemoveTemporaryFolder() { TheFolder().Remove(); }

}  // namespace qx
