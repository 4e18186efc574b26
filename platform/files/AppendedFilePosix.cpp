#include "platform/files/AppendedFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Posix.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct AppendedFile::State {
  std::string path;
  system::Descriptor file;
  [[noreturn]] void Fail() const { throw Exception("Cannot write " + path + ": " + system::LastError()); }
};

AppendedFile::AppendedFile(const std::string& path)
    : state_(new State{path, system::Descriptor(open(
                                 path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0600))}) {
  if (!state_->file.IsOpen()) state_->Fail();
}

AppendedFile::~AppendedFile() = default;

void AppendedFile::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(state_->file.Number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) state_->Fail();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void AppendedFile::Flush() {
  if (fsync(state_->file.Number()) != 0) state_->Fail();
}

}  // namespace qx
