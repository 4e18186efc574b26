#include "platform/registry/RegistryExport.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "platform/Texts.h"
#include "platform/files/TextFile.h"

namespace qx {
namespace {

constexpr std::string_view kVersion4 = "REGEDIT4";
constexpr std::string_view kVersion5 = "Windows Registry Editor Version 5.00";

// A value that is too long for its line goes on behind a backslash at the line's end.
std::vector<std::string> WholeLines(std::string_view text) {
  std::vector<std::string> whole;
  bool goesOn = false;
  ForEachLine(text, [&](std::string_view line) {
    line = TrimView(line);
    const bool more = line.ends_with('\\');
    if (more) line.remove_suffix(1);
    if (goesOn) {
      whole.back() += line;
    } else {
      whole.emplace_back(line);
    }
    goesOn = more;
  });
  return whole;
}

// Takes a text in double quotes off the front of a line, backslashes before quotes and backslashes dropped;
// none when it is not closed.
std::optional<std::string> TakeQuoted(std::string_view& line) {
  std::string text;
  for (std::size_t at = 1; at < line.size(); ++at) {
    if (line[at] == '"') {
      line.remove_prefix(at + 1);
      return text;
    }
    if (line[at] == '\\' && at + 1 < line.size()) ++at;
    text += line[at];
  }
  return std::nullopt;
}

// "41,00,42,00": UTF-16 in version 5 exports, 8-bit in version 4; the closing zero is not part of the text.
std::optional<std::string> HexText(std::string_view list, bool wide) {
  std::string bytes;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string_view item = TrimView(list.substr(0, comma));
    list.remove_prefix(std::min(comma + 1, list.size()));
    unsigned char byte = 0;
    const auto [end, error] = std::from_chars(item.data(), item.data() + item.size(), byte, 16);
    if (error != std::errc() || end != item.data() + item.size()) return std::nullopt;
    bytes += static_cast<char>(byte);
  }
  std::string scratch;
  const std::string marked = "\xFF\xFE" + bytes;
  const std::string_view text = wide ? DecodeText(marked, scratch) : std::string_view(bytes);
  return std::string(text.substr(0, text.find('\0')));
}

// The text a value's right side stands for; none when it is another kind of value.
std::optional<std::string> ValueText(std::string_view data, bool wide) {
  if (data.starts_with('"')) return TakeQuoted(data);
  for (const std::string_view kind : {"hex(1):", "hex(2):"}) {  // text, text with %VARIABLES%
    if (data.starts_with(kind)) return HexText(data.substr(kind.size()), wide);
  }
  return std::nullopt;
}

}  // namespace

std::optional<RegistryExport> RegistryExport::FromBytes(std::string_view bytes) {
  std::string scratch;
  const std::vector<std::string> lines = WholeLines(DecodeText(bytes, scratch));
  if (lines.empty() || (lines[0] != kVersion4 && lines[0] != kVersion5)) return std::nullopt;
  const bool wide = lines[0] == kVersion5;

  RegistryExport result;
  Values* values = nullptr;
  for (std::string_view line : lines) {
    if (line.starts_with('[')) {
      const std::string key = FoldCase(line.substr(1, line.rfind(']') - 1));
      values = key.starts_with('-') ? nullptr : &result.keys_[key];
      continue;
    }
    if (values == nullptr || line.empty()) continue;
    std::optional<std::string> name;
    if (line[0] == '"') name = TakeQuoted(line);
    if (line[0] == '@') {
      name.emplace();
      line.remove_prefix(1);
    }
    line = TrimView(line);
    if (!name || !line.starts_with('=')) continue;
    if (auto text = ValueText(TrimView(line.substr(1)), wide)) (*values)[FoldCase(*name)] = *text;
  }
  return result;
}

std::optional<std::string> RegistryExport::MachineText(std::string_view key, std::string_view name) const {
  constexpr std::string_view kSoftware = "software\\";
  std::string folded = FoldCase(key);
  if (folded.starts_with('\\')) folded.erase(0, 1);
  std::vector<std::string> places;
  if (folded.starts_with(kSoftware)) {
    places.push_back("software\\wow6432node\\" + folded.substr(kSoftware.size()));
  }
  places.push_back(folded);
  for (const std::string& place : places) {
    const auto values = keys_.find("hkey_local_machine\\" + place);
    if (values == keys_.end()) continue;
    const auto value = values->second.find(FoldCase(name));
    if (value != values->second.end()) return value->second;
  }
  return std::nullopt;
}

}  // namespace qx
