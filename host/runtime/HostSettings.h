// The host's own settings, kept in the options store beside the packages': the .NET framework table, where
// network shares are mounted, and the registry's stand-in.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/Qxtypes.h"

namespace qx {

struct HostSettings {
  // By version text in lower case ("v2.0"): the folder that holds MSBuild.exe.
  std::map<std::string, std::string> frameworks;
  // By "\\server\share" in lower case: where it is mounted. Used outside Windows.
  std::map<std::string, std::string> shares;
  // A .reg export; empty: none. Used outside Windows.
  std::string registryFile;
  // Seconds that a web server may keep silent before a transfer fails.
  int webDavTimeout = 60;

  // From the names and values of the store. An empty value is as good as none; unknown names are passed over,
  // for another version of the host may know them.
  static HostSettings From(std::span<const std::pair<std::string, std::string>> values);
};

// The name in the form in which it is stored ("Framework.v2.0", "Unc.\\server\share", "Registry",
// "WebDavTimeout"), its first part in any letter case. Raises Exception for any other name, which tells what
// names there are.
std::string CheckHostSettingName(std::string_view name);
// Whether the name is meant for the host, right or wrong: it is Registry or WebDavTimeout or begins with
// "Framework." or "Unc.".
bool IsHostSettingName(std::string_view name);

// "v" and digits with points between them: nothing that could lead into another folder.
bool IsFrameworkVersion(std::string_view text);

// From now on the framework table, the registry and the network shares of this process answer by these.
// Raises Exception when the registry's file cannot be read. Before the threads that ask.
void ApplyHostSettings(HostSettings settings);
const HostSettings& CurrentHostSettings();

}  // namespace qx
