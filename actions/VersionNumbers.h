// Version numbers as the build action keeps them: whole versions "Major|Minor|Build|Revision" and their
// parts, increments, and the "FileVersion" line among the version resource's keys. Pure: texts in, texts out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// A part may hold any text: a number, "*", a host expression.
struct VersionParts {
  std::string major;
  std::string minor;
  std::string build;
  std::string revision;
  friend bool operator==(const VersionParts&, const VersionParts&) = default;
};

// The parts that the text has, at most four; at least one, which may be empty.
std::vector<std::string_view> PartsOfVersion(std::string_view whole);

// The first four parts of the text; missing ones are empty, a fifth and later ones are dropped. A dotted
// version has no bar and is the major part whole.
VersionParts SplitVersion(std::string_view whole);

// The four parts with three bars between them.
std::string JoinVersion(const VersionParts& parts);

// The decimal text of one more than the part; a part that is no decimal integer of 32 bits counts as
// `otherwise`. 2147483647 is followed by 2147483648, which no version of a file can hold.
std::string NextNumber(std::string_view part, std::int32_t otherwise);

// One more than a 32-bit number; the largest is followed by the smallest.
std::int32_t NextNumber(std::int32_t number);

// Where the last part of a whole version begins: behind its last bar, at 0 without one.
std::size_t LastPartOf(std::string_view whole);

struct VersionNumbers {
  std::int32_t major = 0;
  std::int32_t minor = 0;
  std::int32_t release = 0;
  std::int32_t build = 0;
};

// The four numbers in decimal, joined by dots.
std::string DottedVersion(const VersionNumbers& numbers);

// The lines "key=value" with "FileVersion" set to the numbers: its line replaced in place or a line appended.
// Every line of the result ends in CR LF.
std::string WithFileVersion(const std::string& keys, const VersionNumbers& numbers);

}  // namespace qx
