// Version numbers as the build action keeps them: whole versions "Major|Minor|Build|Revision" and their
// parts, increments, and the "FileVersion" line among the version resource's keys. Pure: texts in, texts out.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxversions.h"

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

// The decimal text of one more than the part, of any size; a part that is no decimal integer counts as
// `otherwise`.
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

// What a part may be at most: in an assembly's identity, and in the version resource of any file.
inline constexpr std::int32_t kLargestAssemblyPart = 65534;
inline constexpr std::int32_t kLargestFilePart = 65535;

// "2.1.0.0" as its four numbers. Raises Exception for a text that is none, or a part above `largest`.
std::array<std::int32_t, 4> ReadDottedVersion(std::string_view text, std::int32_t largest);

// The parts with one of them raised by one and those behind it at 0; empty parts and "*" count as 0. Raises
// Exception, led by `name`, for a part that is no number from 0 on or would come above `largest`.
VersionParts BumpedVersion(const VersionParts& parts, VersionPart part, std::int32_t largest,
                           std::string_view name);

// Why the part of that index, 0 to 3, is none: it is no number up to `largest`, nor, from the third part on and where
// `takesStar`, a "*". Empty when nothing is wrong.
std::string WhyNoPart(std::string_view part, std::size_t index, std::int32_t largest, bool takesStar);

// Why a version as it goes into a file, "1.2.0.7", is none: a part that is no number up to `largest`, or more than
// four of them. Where `takesStar`, a "*" may end it from the third part on. Empty when nothing is wrong.
std::string WhyNoVersion(std::string_view dotted, std::int32_t largest, bool takesStar);

// Whether a whole version has points and no bar, so that all of it counts as the major part; those in the names
// of variables do not count.
bool IsDottedWithoutBars(std::string_view whole);

// With points for the bars, as it goes into files; empty where every part is.
std::string DottedVersion(std::string_view whole);

// The lines "key=value" with "FileVersion" set to the numbers: its line replaced in place or a line appended.
// Every line of the result ends in CR LF.
std::string WithFileVersion(const std::string& keys, const VersionNumbers& numbers);

}  // namespace qx
