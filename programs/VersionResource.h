// The version resource of a program: its numbers, its strings in each language, its translations. The block's
// bytes in, values out; where the block stands in the program is found here too. Raises Exception with the
// reason alone.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "programs/PeImage.h"

namespace qx {

using BinaryVersion = std::array<std::uint16_t, 4>;

// "1.2.1.0"
std::string DottedVersion(const BinaryVersion& numbers);

// The part of the block that is numbers.
struct FixedVersion {
  BinaryVersion file{}, product{};
  std::uint32_t flagsMask = 0, flags = 0, system = 0, type = 0, subtype = 0;
};

struct Translation {
  std::uint16_t language = 0, codePage = 0;
  friend bool operator==(const Translation&, const Translation&) = default;
};

struct StringTable {
  std::string key;                         // as it stands: "040904E4"
  std::optional<Translation> translation;  // what the key says; none when it is not eight hexadecimal digits
  std::vector<std::pair<std::string, std::string>> strings;  // UTF-8, in the order of the block
};

struct VersionResource {
  std::optional<FixedVersion> fixed;
  std::vector<StringTable> tables;
  std::vector<Translation> translations;
};

// A block as it stands in the program.
VersionResource ReadVersionResource(std::string_view block);

// The bytes of the first version resource in the order of the program's directory; none when it has none.
std::optional<std::string_view> FindVersionResource(const PeImage& image);

}  // namespace qx
