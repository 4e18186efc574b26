// The VERSIONINFO block of a resource script: where it stands, what it says, and how a new one is written.
// Texts in, values out: no file and no host. Texts are in the script's own bytes, or UTF-8 where they were
// decoded. A malformed block raises Exception with one of its fixed texts ("Unexpected BEGIN"); a script
// that ends inside its block raises one that names the script.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

struct VersionFlags {
  bool isDebug = false;
  bool isPreRelease = false;
  bool isSpecial = false;
  bool isPrivate = false;
  friend bool operator==(const VersionFlags&, const VersionFlags&) = default;
};

// What a new block is made of.
struct VersionValues {
  std::array<std::int32_t, 4> numbers{};  // major, minor, release, build
  VersionFlags flags;
  bool isDll = false;
  std::int32_t locale = 0;
  std::int32_t codePage = 0;
  std::vector<std::string> keys;  // "Key=Value" lines, values before the host's expansion
};

// What a script's first block said. What it did not mention is absent.
struct VersionReading {
  bool hasBlock = false;
  std::optional<std::array<std::int32_t, 4>> numbers;
  // What stands behind FILEVERSION: "1,2,0,0", or names of macros; empty: nothing.
  std::string writtenNumbers;
  std::optional<VersionFlags> flags;
  std::optional<bool> isDll;
  std::optional<std::int32_t> locale;
  std::optional<std::int32_t> codePage;
  std::vector<std::string> keys;  // "Key=Value" lines in the order of the script
};

// `fileName` appears in messages only.
VersionReading ReadVersionBlock(std::string_view script, std::string_view fileName);

// The lines of the first block, header line to final END, line ends included; both offsets are the script's
// size when it has no block.
struct VersionBlockPlace {
  std::size_t begin = 0;
  std::size_t end = 0;
};
VersionBlockPlace FindVersionBlock(std::string_view script, std::string_view fileName);

// The N of the script's last line `#pragma code_page(N)`; none when it has no such line, or the N is no number.
std::optional<std::uint32_t> NamedCodePage(std::string_view script);

// One VALUE line of the string block.
struct VersionString {
  std::string key;
  std::string text;
  friend bool operator==(const VersionString&, const VersionString&) = default;
};
using Expander = std::function<std::string(const std::string&)>;

// The strings that the values' block holds, in the order of its lines.
std::vector<VersionString> BlockStrings(const VersionValues& values, const Expander& expand);

// Puts "Compile Date=TEXT" among the keys: over the line of that name, else behind the last.
void SetCompileDate(std::vector<std::string>& keys, std::string_view date);

// The whole block; every line ends in CR LF.
std::string WriteVersionBlock(const VersionValues& values, const std::vector<VersionString>& strings);

}  // namespace qx
