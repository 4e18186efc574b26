#include "actions/VersionNumbers.h"

#include <algorithm>

#include "platform/Texts.h"
#include "plugin/Qxstrings.h"

namespace qx {
namespace {

constexpr char kBar = '|';

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Digits of any number, as nothing says how many a part may have.
std::string OneMore(std::string_view digits) {
  std::string text(digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1)));
  std::size_t at = text.size();
  while (at > 0 && text[at - 1] == '9') text[--at] = '0';
  if (at == 0) return "1" + text;
  ++text[at - 1];
  return text;
}

// The number of a part of at most `largest`, -1 for any other text.
std::int32_t NumberUpTo(std::string_view text, std::int32_t largest) {
  const std::int32_t number = IsDigits(text) ? ToInteger(text).value_or(-1) : -1;
  return number > largest ? -1 : number;
}

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
  if (IsDigits(part)) return OneMore(part);
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

std::array<std::int32_t, 4> ReadDottedVersion(std::string_view text, std::int32_t largest) {
  std::array<std::int32_t, 4> numbers{};
  const std::string whole = Quoted(text);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t dot = text.find('.');
    if ((dot == std::string_view::npos) != (i + 1 == numbers.size()))
      throw Exception(whole + " is no version of four parts, like 2.1.0.0");
    const std::string_view part = text.substr(0, dot);
    numbers[i] = NumberUpTo(part, largest);
    if (numbers[i] < 0)
      throw Exception(whole + ": the part " + Quoted(part) + " is no number from 0 to " +
                      std::to_string(largest));
    text.remove_prefix(std::min(dot, text.size() - 1) + 1);
  }
  return numbers;
}

VersionParts BumpedVersion(const VersionParts& parts, VersionPart part, std::int32_t largest,
                           std::string_view name) {
  VersionParts bumped = parts;
  std::string* const all[] = {&bumped.major, &bumped.minor, &bumped.build, &bumped.revision};
  for (std::string* text : all) {
    if (text->empty() || *text == "*") *text = "0";
  }
  const auto at = static_cast<std::size_t>(part);
  const std::int32_t number = NumberUpTo(*all[at], largest);
  if (number < 0)
    throw Exception(std::string(name) + ": the part " + Quoted(*all[at]) + " is no number from 0 to " +
                    std::to_string(largest) + "; give the version as a whole");
  if (number == largest)
    throw Exception(std::string(name) + ": the part " + *all[at] + " is the largest there is already");
  *all[at] = std::to_string(number + 1);
  std::for_each(std::begin(all) + at + 1, std::end(all), [](std::string* text) { *text = "0"; });
  return bumped;
}

std::string WhyNoPart(std::string_view part, std::size_t index, std::int32_t largest, bool takesStar) {
  static constexpr std::string_view kNames[] = {"major", "minor", "build", "revision"};
  if (takesStar && part == "*" && index >= 2) return {};
  if (NumberUpTo(part, largest) >= 0) return {};
  return "the " + std::string(kNames[index]) + " part " + Quoted(part) + " is no number from 0 to " +
         std::to_string(largest);
}

std::string WhyNoVersion(std::string_view dotted, std::int32_t largest, bool takesStar) {
  if (dotted.find_first_not_of('.') == std::string_view::npos) return "no part of it is set";
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t dot = dotted.find('.');
    const std::string_view part = dotted.substr(0, dot);
    const bool isLast = dot == std::string_view::npos;
    std::string fault = WhyNoPart(part, i, largest, takesStar && isLast);
    if (!fault.empty() || isLast) return fault;
    dotted.remove_prefix(dot + 1);
  }
  return "it has more than four parts";
}

bool IsDottedWithoutBars(std::string_view whole) {
  bool isInName = false, hasPoint = false;
  for (const char c : whole) {
    if (c == kBar) return false;
    if (c == '%') isInName = !isInName;
    if (c == '.' && !isInName) hasPoint = true;
  }
  return hasPoint;
}

std::string DottedVersion(std::string_view whole) {
  if (whole.find_first_not_of(kBar) == std::string_view::npos) return {};
  std::string dotted(whole);
  std::replace(dotted.begin(), dotted.end(), kBar, '.');
  return dotted;
}

std::string WithFileVersion(const std::string& keys, const VersionNumbers& numbers) {
  TStringList lines;
  lines.SetText(keys);
  lines.SetValue("FileVersion", DottedVersion(numbers));
  return lines.Text();
}

}  // namespace qx
