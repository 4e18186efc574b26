#include <mutex>

#include "platform/files/Files.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryExport.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// Stands in for the machine's registry, of which a process sees one too. The host sets it with its settings
// (HostSettingsInUse) and takes it away again.
struct StandIn {
  std::mutex lock;
  std::optional<RegistryExport> file;
  void Take(std::optional<RegistryExport> taken);
};

StandIn& TheStandIn() {
  static StandIn standIn;
  return standIn;
}

void StandIn::Take(std::optional<RegistryExport> taken) {
  const std::lock_guard guard(lock);
  file = std::move(taken);
}

}  // namespace

std::optional<std::string> ReadMachineText(const std::string& key, const std::string& name) {
  StandIn& standIn = TheStandIn();
  const std::lock_guard guard(standIn.lock);
  return standIn.file ? standIn.file->MachineText(key, name) : std::nullopt;
}

void SetRegistryFile(const std::string& path) {
  std::optional<RegistryExport> file;
  if (!path.empty()) {
    file = RegistryExport::FromBytes(ReadFile(path));
    if (!file) throw Exception("Cannot read " + path + ": it is no registry export");
  }
  TheStandIn().Take(std::move(file));
}

void SetRegistryText(const std::string& text) { TheStandIn().Take(RegistryExport::FromBytes(text)); }

}  // namespace qx
