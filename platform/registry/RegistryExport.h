// A .reg file as the registry editor exports it (REGEDIT4, or version 5.00 in UTF-16), for reading values by
// key and name without regard to letter case.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

class RegistryExport {
 public:
  // None when the first line is not that of an export; lines that say nothing known are passed over.
  static std::optional<RegistryExport> FromBytes(std::string_view bytes);

  // As the registry's 32-bit view answers: the key below "Wow6432Node" first, then the key itself. `key` is
  // below HKEY_LOCAL_MACHINE.
  std::optional<std::string> MachineText(std::string_view key, std::string_view name) const;

 private:
  using Values = std::map<std::string, std::string, std::less<>>;
  std::map<std::string, Values, std::less<>> keys_;  // names in folded case
};

}  // namespace qx
