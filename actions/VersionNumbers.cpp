#include "actions/VersionNumbers.h"

#include "platform/Texts.h"
#include "plugin/Qxstrings.h"

namespace qx {
namespace {

constexpr char kBar = '|';

}  // namespace

std::vector<std::string_view> PartsOfVersion(std::string_view whole) {
  std::vector<std::string_view> parts;
  while (parts.size() < 4) {
    const std::size_t bar = whole.find(kBar);
    parts.push_back(whole.substr(0, bar));
    if (bar == std::string_view::npos) break;
    whole.remove_prefix(bar + 1);
  }
  return parts;
}

VersionParts SplitVersion(std::string_view whole) {
  std::vector<std::string_view> parts = PartsOfVersion(whole);
  parts.resize(4);
  return {std::string(parts[0]), std::string(parts[1]), std::string(parts[2]), std::string(parts[3])};
}

std::string JoinVersion(const VersionParts& parts) {
  return parts.major + kBar + parts.minor + kBar + parts.build + kBar + parts.revision;
}

std::string NextNumber(std::string_view part, std::int32_t otherwise) {
  return std::to_string(std::int64_t{ToInteger(part).value_or(otherwise)} + 1);
}

std::int32_t NextNumber(std::int32_t number) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number) + 1u);
}

std::size_t LastPartOf(std::string_view whole) {
  const std::size_t bar = whole.rfind(kBar);
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
