// The log's stream as a file descriptor.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "host/log/LogStream.h"
#include "platform/Posix.h"

namespace qx {

LogFile LogFile::StandardOutput() {
  return LogFile("standard output", STDOUT_FILENO, isatty(STDOUT_FILENO) == 1, false);
}

LogFile LogFile::Create(const std::string& path) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (descriptor < 0) throw Exception("Cannot write " + path + ": " + system::LastError());
  return LogFile(path, descriptor, isatty(descriptor) == 1, true);
}

LogFile::~LogFile() {
  if (owned_) close(static_cast<int>(native_));
}

std::string LogFile::Write(std::string_view bytes) {
  const int descriptor = static_cast<int>(native_);
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    if (errno == EINTR) continue;
    if (errno != EAGAIN) return system::LastError();
    // Somebody made our output non-blocking: wait until it takes more.
    pollfd waited{descriptor, POLLOUT, 0};
    poll(&waited, 1, -1);
  }
  return {};
}

}  // namespace qx
