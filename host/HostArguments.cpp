#include "host/HostArguments.h"

#include "platform/files/Paths.h"

namespace qx::cli {

Host::Settings HostSettingsOf(const Invocation& invocation, std::string defaultPackage) {
  Host::Settings settings;
  settings.defaultPackage = std::move(defaultPackage);
  for (const std::string& file : invocation.Values(kPackageOption.name))
    settings.packageFiles.push_back(ExpandPath("", file));
  if (const auto file = invocation.Value(kOptionsOption.name)) settings.optionsFile = ExpandPath("", *file);
  return settings;
}

int ActionNumber(const Invocation& invocation) { return invocation.Number(kActionOption.name, 1); }

}  // namespace qx::cli
