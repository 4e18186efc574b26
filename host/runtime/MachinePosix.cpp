// A private folder and the name of this computer.
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/runtime/TemporaryFolder.h"
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

}  // namespace

// The system picks a name that does not exist yet and gives the folder to its owner alone (mode 0700).
std::string MakePrivateFolder() {
  const std::string shared = SharedFolder();
  std::string folder = shared + "/qxhost-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) {
    throw Exception("Cannot make a temporary folder in " + shared + ": " +
                    std::generic_category().message(errno));
  }
  return folder;
}

std::string MachineName() {
  utsname names{};
  if (uname(&names) != 0) throw Exception("This computer's name cannot be read");
  return names.nodename;
}

}  // namespace qx
