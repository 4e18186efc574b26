#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>
#include <utility>

#include "platform/Posix.h"
#include "platform/files/Files.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::size_t kPartSize = 1 << 18;
constexpr std::size_t kMostOfANote = 4096;

using system::Descriptor;
using system::LastError;

int OpenToRead(const std::string& path) {
  // Without blocking, or a pipe without a writer would hold us for ever.
  return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

// A descriptor of a regular file, and the file's size; a negative one, and the reason, where there is none.
int OpenRegular(const std::string& path, std::size_t& size, std::string& reason) {
  Descriptor file(OpenToRead(path));
  struct stat status;
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
    reason = LastError();
    return -1;
  }
  if (!S_ISREG(status.st_mode)) {
    reason = S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file";
    return -1;
  }
  size = static_cast<std::size_t>(status.st_size);
  return file.Release();
}

// Reads to the end of the file, which may have grown or shrunk since its size was asked.
bool Drain(int number, std::size_t size, std::string& bytes, std::string& reason) {
  std::size_t used = 0;
  for (;;) {
    if (bytes.size() < used + 1 || used == 0) bytes.resize(used == 0 ? size + 1 : used * 2);
    const ssize_t count = read(number, bytes.data() + used, bytes.size() - used);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      reason = LastError();
      return false;
    }
    used += static_cast<std::size_t>(count);
    // One byte more than the size was asked for: a short answer is the end.
    if (count == 0 || used == size) break;
  }
  bytes.resize(used);
  return true;
}

std::string AbsolutePath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
  return real ? std::string(real.get()) : std::string();
}

}  // namespace

namespace system {

bool Read(const std::string& path, std::string& bytes, std::string& reason) {
  std::size_t size = 0;
  const Descriptor file(OpenRegular(path, size, reason));
  return file.IsOpen() && Drain(file.Number(), size, bytes, reason);
}

bool ReadParts(const std::string& path, std::string& buffer,
               const std::function<bool(std::string_view)>& take) {
  std::size_t size = 0;
  std::string ignored;
  const Descriptor file(OpenRegular(path, size, ignored));
  if (!file.IsOpen()) return false;
  // One byte more than the size was asked for: a short answer is the end.
  buffer.resize(std::min(size + 1, kPartSize));
  for (;;) {
    const ssize_t count = read(file.Number(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    const std::size_t got = static_cast<std::size_t>(count);
    if (got > 0 && take(std::string_view(buffer).substr(0, got))) return true;
    if (got < buffer.size()) return true;
  }
}

std::string WriteTarget(const std::string& path) {
  std::string name = FindExisting(path);
  for (int links = 0; links < 40; ++links) {
    if (name.empty()) {
      std::string full = ExpandPath("", path);
      const std::string folder = FindExisting(FolderPart(full));
      name = folder.empty() ? full : WithTrailingDelimiter(folder) + FilePart(full);
    }
    if (std::string real = AbsolutePath(name); !real.empty()) return real;
    // The file is not there; a link in its place says where it is to be made.
    char target[PATH_MAX];
    const ssize_t size = readlink(name.c_str(), target, sizeof target);
    if (size < 0) break;
    const std::string_view link(target, static_cast<std::size_t>(size));
    name = link.starts_with('/') ? std::string(link) : FolderPart(name) + std::string(link);
  }
  const std::string folder = AbsolutePath(FolderPart(name).empty() ? "." : FolderPart(name));
  return folder.empty() ? name : WithTrailingDelimiter(folder) + FilePart(name);
}

std::string WhyNotWritable(const std::string& target) {
  struct stat status;
  if (stat(target.c_str(), &status) != 0) return errno == ENOENT ? "" : LastError();
  if (S_ISDIR(status.st_mode)) return "it is a folder";
  if (!S_ISREG(status.st_mode)) return "it is not a regular file";
  // The superuser may write everything: what counts is what the file's owner said.
  const bool readOnly = (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
  return readOnly || access(target.c_str(), W_OK) != 0 ? "the file is read-only" : "";
}

std::string WhyNothingCanBeMadeIn(const std::string& folder) {
  return access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) == 0 ? "" : LastError();
}

namespace {

// The times of files go on in steps of some milliseconds: two writings within one step bear one time.
constexpr std::int64_t kStep = 100'000'000;

std::int64_t Nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileFacts FactsFrom(const struct stat& status) {
  FileFacts facts;
  facts.mode = status.st_mode & 07777;
  facts.owner = status.st_uid;
  facts.group = status.st_gid;
  facts.device = status.st_dev;
  facts.number = status.st_ino;
  facts.size = static_cast<std::uint64_t>(status.st_size);
  facts.time = Nanoseconds(status.st_mtim);
  return facts;
}

bool IsFresh(const FileFacts& facts) {
  timespec now;
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  const std::int64_t age = Nanoseconds(now) - facts.time;
  return age > -kStep && age < kStep;
}

}  // namespace

std::optional<FileFacts> ReadWithFacts(const std::string& path, std::string& bytes, std::string& reason) {
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  struct stat status;
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
    reason = LastError();
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    reason = S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file";
    return std::nullopt;
  }
  FileFacts facts = FactsFrom(status);
  facts.isFresh = IsFresh(facts);
  if (!Drain(file.Number(), static_cast<std::size_t>(status.st_size), bytes, reason)) return std::nullopt;
  const bool isOwn = geteuid() == 0 || (status.st_uid == geteuid() && (status.st_mode & S_IWUSR) != 0);
  facts.mayBeWritten =
      (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0 && (isOwn || access(path.c_str(), W_OK) == 0);
  return facts;
}

bool IsStill(const std::string& path, const FileFacts& facts, std::string_view bytes) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const FileFacts now = FactsFrom(status);
  if (now.device != facts.device || now.number != facts.number || now.size != facts.size ||
      now.time != facts.time || now.size != bytes.size()) {
    return false;
  }
  std::string again, reason;
  return !facts.isFresh || (Read(path, again, reason) && again == bytes);
}

std::optional<FileFacts> FactsOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return FactsFrom(status);
}

bool Remove(const std::string& target, std::string& reason) {
  if (unlink(target.c_str()) == 0 || errno == ENOENT) return true;
  reason = LastError();
  return false;
}

bool MakeFolder(const std::string& path, std::string& reason) {
  if (mkdir(path.c_str(), 0777) == 0 || (errno == EEXIST && IsFolder(path))) return true;
  reason = LastError();
  return false;
}

bool IsFolder(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::int64_t> TimeWritten(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return Nanoseconds(status.st_mtim);
}

namespace {

class Lock final : public HeldLock {
 public:
  Lock(int number, std::string name) : file_(number), name_(std::move(name)) {}
  ~Lock() override { unlink(name_.c_str()); }

 private:
  Descriptor file_;
  std::string name_;
};

[[noreturn]] void RefuseLock(const std::string& path) {
  throw FileNotLockable("Cannot lock " + path + ": " + LastError());
}

}  // namespace

std::unique_ptr<HeldLock> TakeLock(const std::string& path, const std::string& note, std::string& holder) {
  const std::string name = WriteTarget(path) + ".lock";
  for (;;) {
    Descriptor file(open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (!file.IsOpen()) RefuseLock(path);
    if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0) {
      if (errno != EWOULDBLOCK) RefuseLock(path);
      char who[kMostOfANote];
      const ssize_t size = pread(file.Number(), who, sizeof who, 0);
      holder = size > 0 ? std::string(who, static_cast<std::size_t>(size)) : "unknown";
      return nullptr;
    }
    // The last holder may have taken the name away between our opening and our locking.
    struct stat mine, named;
    const bool current = fstat(file.Number(), &mine) == 0 && stat(name.c_str(), &named) == 0 &&
                         mine.st_ino == named.st_ino && mine.st_dev == named.st_dev;
    if (!current) continue;
    if (ftruncate(file.Number(), 0) != 0 || !WriteAll(file.Number(), std::to_string(getpid()) + note))
      RefuseLock(path);
    return std::make_unique<Lock>(file.Release(), name);
  }
}

}  // namespace system
}  // namespace qx
