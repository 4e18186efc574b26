#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Posix.h"
#include "platform/files/Paths.h"
#include "platform/files/RandomAccessFile.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using system::Descriptor;

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw Exception("Cannot read " + path + ": " + reason);
}

Descriptor Open(const std::string& path) {
  // Without blocking, or a pipe without a writer would hold us for ever.
  const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
  Descriptor file(open(path.c_str(), flags));
  if (file.IsOpen() || errno != ENOENT) return file;
  const std::string found = FindExisting(path);
  errno = ENOENT;
  return found.empty() ? std::move(file) : Descriptor(open(found.c_str(), flags));
}

}  // namespace

RandomAccessFile::RandomAccessFile(const std::string& path) {
  Descriptor file = Open(path);
  struct stat status {};
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0) Fail(path, system::LastError());
  if (S_ISDIR(status.st_mode)) Fail(path, "it is a folder");
  if (!S_ISREG(status.st_mode)) Fail(path, "it is not a regular file");
  file_ = file.Release();
  size_ = static_cast<std::uint64_t>(status.st_size);
}

RandomAccessFile::~RandomAccessFile() { const Descriptor closing(static_cast<int>(file_)); }

std::size_t RandomAccessFile::Read(std::uint64_t offset, std::span<char> into) const {
  std::size_t used = 0;
  while (used < into.size()) {
    const ssize_t count = pread(static_cast<int>(file_), into.data() + used, into.size() - used,
                                static_cast<off_t>(offset + used));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Exception(system::LastError());
    if (count == 0) break;
    used += static_cast<std::size_t>(count);
  }
  return used;
}

}  // namespace qx
