// The temporary folder and the name of this computer.
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <system_error>

#include "host/runtime/Variables.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

// Where everybody's temporary files lie, without a trailing delimiter.
std::string SharedFolder() {
  std::string folder = ReadEnvironment("TMPDIR").value_or("");
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder.empty() || folder.front() != '/' ? "/tmp" : folder;
}

// A folder, no link, of this user's, that nobody else may enter.
bool IsPrivate(const std::string& folder) {
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & 077U) == 0;
}

}  // namespace

// The shared folder is open to all here, so files whose names are easily guessed go into a folder of the user's own
// below it. Somebody else may have taken its name: then one with a random name serves this process.
std::string GetTemporaryPath() {
  static std::mutex mutex;
  static std::string chosen;
  const std::lock_guard lock(mutex);
  const std::string shared = SharedFolder();
  if (chosen.starts_with(shared + "/qxhost-") && IsPrivate(chosen)) return chosen;
  chosen = shared + "/qxhost-" + std::to_string(geteuid());
  if ((mkdir(chosen.c_str(), 0700) == 0 || errno == EEXIST) && IsPrivate(chosen)) return chosen;
  chosen += "-XXXXXX";
  if (mkdtemp(chosen.data()) == nullptr) {
    throw Exception("Cannot make a temporary folder in " + shared + ": " + std::generic_category().message(errno));
  }
  return chosen;
}

std::string MachineName() {
  utsname names{};
  if (uname(&names) != 0) throw Exception("This computer's name cannot be read");
  return names.nodename;
}

}  // namespace qx
