#include <mutex>

#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/RegistryExport.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

struct StandIn {
  std::mutex lock;
  std::optional<RegistryExport> file;
};

StandIn& TheStandIn() {
  static StandIn stand_in;
  return stand_in;
}

}  // namespace

std::optional<std::string> ReadMachineText(const std::string& key, const std::string& name) {
  StandIn& stand_in = TheStandIn();
  const std::lock_guard guard(stand_in.lock);
  return stand_in.file ? stand_in.file->MachineText(key, name) : std::nullopt;
}

void SetRegistryFile(const std::string& path) {
  std::optional<RegistryExport> file;
  if (!path.empty()) {
    file = RegistryExport::FromBytes(ReadFile(path));
    if (!file) throw Exception("Cannot read " + path + ": it is no registry export");
  }
  StandIn& stand_in = TheStandIn();
  const std::lock_guard guard(stand_in.lock);
  stand_in.file = std::move(file);
}

}  // namespace qx
