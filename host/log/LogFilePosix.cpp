// The log's stream as a file descriptor.
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "host/log/LogStream.h"
#include "host/system/Stopping.h"
#include "platform/Posix.h"

namespace qx {
namespace {

using std::chrono::milliseconds;

// How often somebody who may read a named pipe is looked for.
constexpr milliseconds kLookAgain{50};

bool IsPipeOrDevice(const struct stat& status) { return S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode); }

// A pipe or terminal of the host's own once more, by a description that only this process has and whose writes
// never block: on the shared one that would hold for every program that has it. None where it cannot be had.
system::Descriptor OpenAgain(int stream) {
  const std::string name = "/proc/self/fd/" + std::to_string(stream);
  return system::Descriptor(open(name.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

// Nobody reads a named pipe yet: until somebody does, or a stop is asked for.
system::Descriptor OpenForWriting(const std::string& path) {
  for (;;) {
    system::Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
    if (file.IsOpen()) return file;
    if (errno != ENXIO) throw Exception("Cannot write " + path + ": " + system::LastError());
    if (WaitForStop(kLookAgain)) throw Exception("Cannot write " + path + ": nobody reads it");
  }
}

// Until the stream takes more. False: a stop was asked for, and its patience is over.
bool WaitForRoom(int descriptor) {
  for (;;) {
    const auto asked = StopMoment();
    int left = -1;
    if (asked) {
      const auto end = *asked + LogFile::kPatienceAfterStop;
      const auto rest = std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now());
      left = static_cast<int>(std::clamp<long long>(rest.count(), 0, INT_MAX));
    }
    pollfd waited[] = {{descriptor, POLLOUT, 0}, {asked ? -1 : static_cast<int>(StopHandle()), POLLIN, 0}};
    const int ready = poll(waited, std::size(waited), left);
    if (ready > 0 && waited[0].revents != 0) return true;
    if (ready == 0 && asked) return false;
  }
}

}  // namespace

LogFile LogFile::Own(std::string name, int stream) {
  const bool terminal = isatty(stream) == 1;
  struct stat status {};
  if (fstat(stream, &status) != 0) return LogFile(std::move(name), stream, terminal, false, Way::Whole);
  if (S_ISSOCK(status.st_mode)) return LogFile(std::move(name), stream, terminal, false, Way::Socket);
  if (!IsPipeOrDevice(status)) return LogFile(std::move(name), stream, terminal, false, Way::Whole);
  system::Descriptor again = OpenAgain(stream);
  if (again.IsOpen()) return LogFile(std::move(name), again.Release(), terminal, true, Way::Whole);
  return LogFile(std::move(name), stream, terminal, false, Way::Parts);
}

LogFile LogFile::StandardOutput() { return Own("standard output", STDOUT_FILENO); }
LogFile LogFile::StandardError() { return Own("standard error", STDERR_FILENO); }

LogFile LogFile::Create(const std::string& path) {
  const int descriptor = OpenForWriting(path).Release();
  return LogFile(path, descriptor, isatty(descriptor) == 1, true, Way::Whole);
}

LogFile::~LogFile() {
  if (owned_) close(static_cast<int>(native_));
}

std::string LogFile::Write(std::string_view bytes) {
  const int descriptor = static_cast<int>(native_);
  while (!bytes.empty()) {
    if (way_ == Way::Parts && !WaitForRoom(descriptor)) return "nobody reads it";
    // One that blocks takes this much whole once there is room for anything.
    const std::size_t size =
        way_ == Way::Parts ? std::min<std::size_t>(bytes.size(), PIPE_BUF) : bytes.size();
    const ssize_t written = way_ == Way::Socket ? send(descriptor, bytes.data(), size, MSG_DONTWAIT)
                                                : write(descriptor, bytes.data(), size);
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    if (errno == EINTR) continue;
    if (errno != EAGAIN) return system::LastError();
    if (!WaitForRoom(descriptor)) return "nobody reads it";
  }
  return {};
}

}  // namespace qx
