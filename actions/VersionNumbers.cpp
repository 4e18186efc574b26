#include "actions/VersionNumbers.h"

#include "platform/Texts.h"
#include "plugin/Qxstrings.h"

namespace qx {

VersionParts SplitVersion(std::string_view whole) {
  VersionParts parts;
  for (std::string* part : {&parts.major, &parts.minor, &parts.build, &parts.revision}) {
    const std::size_t bar = whole.find('|');
    *part = whole.substr(0, bar);
    if (bar == std::string_view::npos) break;
    whole.remove_prefix(bar + 1);
  }
  return parts;
}

std::string JoinVersion(const VersionParts& parts) {
  return parts.major + "|" + parts.minor + "|" + parts.build + "|" + parts.revision;
}

std::string NextNumber(std::string_view part, std::int32_t otherwise) {
  return std::to_string(std::int64_t{ToInteger(part).value_or(otherwise)} + 1);
}

std::int32_t NextNumber(std::int32_t number) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number) + 1u);
}

std::size_t LastPartOf(std::string_view whole) {
  const std::size_t bar = whole.rfind('|');
  return bar == std::string_view::npos ? 0 : bar + 1;
}

std::string DottedVersion(const VersionNumbers& numbers) {
  return std::to_string(numbers.major) + "." + std::to_string(numbers.minor) + "." +
         std::to_string(numbers.release) + "." + std::to_string(numbers.build);
}

std::string WithFileVersion(const std::string& keys, const VersionNumbers& numbers) {
  TStringList lines;
  lines.SetText(keys);
  lines.SetValue("FileVersion", DottedVersion(numbers));
  return lines.Text();
}

}  // namespace qx
