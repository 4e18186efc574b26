#include "host/system/TemporaryFolder.h"

#include <filesystem>
#include <mutex>
#include <system_error>

#include "platform/Texts.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

class TemporaryFolder {
 public:
  ~TemporaryFolder() { Remove(); }
  std::string Path() {
    const std::lock_guard guard(mutex_);
    std::error_code error;
    if (path_.empty() || !std::filesystem::is_directory(OnDisk(), error)) path_ = MakePrivateFolder();
    return path_;
  }
  void Remove() {
    const std::lock_guard guard(mutex_);
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove_all(OnDisk(), error);
    path_.clear();
  }

 private:
  std::filesystem::path OnDisk() const { return ToUtf16(path_); }

  std::mutex mutex_;
  std::string path_;
};

// Packages ask for it by a function that takes no host; and it has to go even when a program leaves by
// exit(), where only what is static is destroyed.
TemporaryFolder& TheFolder() {
  static TemporaryFolder folder;
  return folder;
}

}  // namespace

std::string GetTemporaryPath() { return TheFolder().Path(); }
void RemoveTemporaryFolder() { TheFolder().Remove(); }

}  // namespace qx
