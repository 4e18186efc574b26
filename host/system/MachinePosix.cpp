// A private folder and the name of this computer.
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>

#include "host/system/TemporaryFolder.h"
#include "platform/Environment.h"
#include "platform/Posix.h"
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
    throw Exception("Cannot make a temporary folder in " + shared + ": " + system::LastError());
  }
  return folder;
}

std::string MachineName() {
  utsname names{};
  if (uname(&names) != 0) throw Exception("This computer's name cannot be read");
  return names.nodename;
}

}  // namespace qx
