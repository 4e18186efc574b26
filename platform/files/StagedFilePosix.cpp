// Where the file system can, the bytes go into a file without a name, of which a killed process leaves nothing;
// it has a name beside the target only from the moment before it takes the target's place. A name that is found
// there belongs to nobody when nobody holds a lock on its file.
#include "platform/files/StagedFile.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>
#include <thread>
#include <utility>

#include "platform/Posix.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/Paths.h"

namespace qx::system {
namespace {

constexpr int kAttempts = 200;
constexpr std::chrono::milliseconds kPause{1};
constexpr std::size_t kMostDirty = 128 * 1024;  // kilobytes

// Beside the target, and so that nobody takes it for a source file.
std::string HiddenName(const std::string& target) {
  return FolderPart(target) + "." + FilePart(target) + ".tmp";
}

// Only the superuser can give a file a name by its number alone; others go through /proc.
bool MayNameLater() {
  static const bool may = geteuid() == 0 || access("/proc/self/fd", X_OK) == 0;
  return may;
}

bool GiveName(int number, const std::string& name) {
  if (linkat(number, "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0) return true;
  if (errno == EEXIST) return false;
  const std::string own = "/proc/self/fd/" + std::to_string(number);
  return linkat(AT_FDCWD, own.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// Does `take` until it succeeds, and takes away what nobody owns while the name is not free.
template <class Take>
bool TakeHiddenName(const std::string& target, Take take) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (take()) return true;
    if (errno != EEXIST) return false;
    RemoveLeftover(target);
    // Another process writes this very file: its name is gone in a moment.
    if (attempt > 0) std::this_thread::sleep_for(kPause);
  }
  errno = EBUSY;
  return false;
}

class PosixFile final : public StagedFile {
 public:
  // `name`: the hidden one, where the file has it already.
  PosixFile(Descriptor file, const std::string& target, std::string name)
      : file_(std::move(file)), target_(target), name_(std::move(name)) {}
  ~PosixFile() override {
    if (!name_.empty()) unlink(name_.c_str());
  }
  int Number() const { return file_.Number(); }

  bool Flush(std::string& reason) override {
    if (fsync(file_.Number()) == 0) return true;
    reason = LastError();
    return false;
  }

  bool Place(std::string& reason) override {
    if (name_.empty()) {
      flock(file_.Number(), LOCK_EX | LOCK_NB);
      std::string hidden = HiddenName(target_);
      if (!TakeHiddenName(target_, [&] { return GiveName(file_.Number(), hidden); })) {
        reason = LastError();
        return false;
      }
      name_ = std::move(hidden);
    }
    if (rename(name_.c_str(), target_.c_str()) != 0) {
      reason = LastError();
      return false;
    }
    name_.clear();
    return true;
  }
  bool PlaceNew(std::string& reason) override {
    return (name_.empty() && GiveName(file_.Number(), target_)) || Place(reason);
  }

 private:
  Descriptor file_;
  std::string target_, name_;
};

std::unique_ptr<PosixFile> Create(const std::string& target) {
  if (MayNameLater()) {
    const std::string folder = FolderPart(target);
    Descriptor file(open(folder.empty() ? "." : folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666));
    if (file.IsOpen()) return std::make_unique<PosixFile>(std::move(file), target, "");
  }
  std::string hidden = HiddenName(target);
  Descriptor file;
  const auto create = [&] {
    file = Descriptor(open(hidden.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return file.IsOpen();
  };
  if (!TakeHiddenName(target, create)) return nullptr;
  flock(file.Number(), LOCK_EX | LOCK_NB);
  return std::make_unique<PosixFile>(std::move(file), target, std::move(hidden));
}

bool TakeOver(int number, const FileFacts& model, bool leaveToWrite) {
  struct stat made;
  if (fstat(number, &made) != 0) return false;
  // Only the superuser can give files away: a file that cannot be given stays the writer's.
  const bool isTheirs = made.st_uid != model.owner || made.st_gid != model.group;
  if (isTheirs && fchown(number, model.owner, model.group) != 0) errno = 0;
  const mode_t mode = leaveToWrite ? model.mode | S_IWUSR : model.mode;
  return (made.st_mode & 07777) == mode || fchmod(number, mode) == 0;
}

// What waits in memory to be written to any disk; as much as can be where the system does not tell.
std::size_t DirtyKilobytes() {
  const Descriptor file(open("/proc/meminfo", O_RDONLY | O_CLOEXEC));
  char bytes[4096];
  const ssize_t size = read(file.Number(), bytes, sizeof bytes);
  const std::string_view text(bytes, size > 0 ? static_cast<std::size_t>(size) : 0);
  constexpr std::string_view kName = "\nDirty:";
  std::size_t at = text.find(kName);
  std::size_t kilobytes = SIZE_MAX;
  if (at == std::string_view::npos) return kilobytes;
  at = text.find_first_not_of(' ', at + kName.size());
  if (at != std::string_view::npos) std::from_chars(text.data() + at, text.data() + text.size(), kilobytes);
  return kilobytes;
}

// Others (FUSE) may answer without having written anything.
bool HasWholeFlush(int number) {
  constexpr std::array<unsigned long, 3> kKnown{EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC};
  struct statfs status;
  return fstatfs(number, &status) == 0 &&
         std::find(kKnown.begin(), kKnown.end(), static_cast<unsigned long>(status.f_type)) != kKnown.end();
}

}  // namespace

std::unique_ptr<StagedFile> Stage(const std::string& target, std::span<const std::string_view> pieces,
                                  const FileFacts* model, bool leaveToWrite, std::string& reason) {
  std::unique_ptr<PosixFile> file = Create(target);
  bool done = file != nullptr && (model == nullptr || TakeOver(file->Number(), *model, leaveToWrite));
  for (const std::string_view piece : pieces) done = done && WriteAll(file->Number(), piece);
  if (done) return file;
  reason = LastError();
  return nullptr;
}

// One call writes back the whole file system and waits for the disk once; what others have written there lately goes
// along, so that it pays only while that is little.
bool FlushTogether(std::span<StagedFile* const> files) {
  std::optional<dev_t> device;
  for (const StagedFile* file : files) {
    struct stat status;
    if (fstat(static_cast<const PosixFile*>(file)->Number(), &status) != 0) return false;
    if (device.value_or(status.st_dev) != status.st_dev) return false;
    device = status.st_dev;
  }
  if (files.empty() || DirtyKilobytes() > kMostDirty) return false;
  const int first = static_cast<const PosixFile*>(files.front())->Number();
  if (!HasWholeFlush(first) || syncfs(first) != 0) return false;
  // Systems before Linux 5.8 tell of a fault of the disk with the file only.
  return std::all_of(files.begin(), files.end(), [](const StagedFile* file) {
    return sync_file_range(static_cast<const PosixFile*>(file)->Number(), 0, 0,
                           SYNC_FILE_RANGE_WAIT_BEFORE) == 0;
  });
}

// Whoever holds the lock on the file may take its name away, and nobody else: it is the same file then.
void RemoveLeftover(const std::string& target) {
  const std::string name = HiddenName(target);
  const Descriptor file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!file.IsOpen() || flock(file.Number(), LOCK_EX | LOCK_NB) != 0) return;
  struct stat mine, named;
  const bool isIt = fstat(file.Number(), &mine) == 0 && lstat(name.c_str(), &named) == 0 &&
                    mine.st_ino == named.st_ino && mine.st_dev == named.st_dev;
  if (isIt && S_ISREG(mine.st_mode)) unlink(name.c_str());
}

}  // namespace qx::system
