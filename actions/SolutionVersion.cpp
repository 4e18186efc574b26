#include "actions/SolutionVersion.h"

#include "platform/files/Files.h"
#include "platform/files/TextFile.h"

namespace qx {

std::optional<TVSDotNetVersion> VersionOfFormat(SolutionFormat format) {
  switch (format) {
    case SolutionFormat::Vs2002:
      return TVSDotNetVersion::vs2002;
    case SolutionFormat::Vs2003:
      return TVSDotNetVersion::vs2003;
    case SolutionFormat::Vs2005:
      return TVSDotNetVersion::vs2005;
    case SolutionFormat::Unknown:
      return {};
  }
  return {};
}

SolutionVersion VersionOfSolution(const std::string& file) {
  const std::string bytes = ReadFile(file);
  std::string decoded;
  const std::string_view text = DecodeText(bytes, decoded);
  return {FormatNumberOf(text), VersionOfFormat(FormatOfSolution(text))};
}

}  // namespace qx
