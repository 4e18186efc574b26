#include "programs/VersionResource.h"

#include <algorithm>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::uint32_t kVersionType = 16;
constexpr std::uint32_t kSubfolder = 0x80000000;
constexpr std::uint32_t kFixedMark = 0xFEEF04BD;
constexpr std::size_t kFixedSize = 52;

constexpr std::size_t Aligned(std::size_t at) { return (at + 3) & ~std::size_t{3}; }

// A text that ends in a zero or where its place ends; `next` is the offset behind both.
std::string TextAt(std::string_view block, std::size_t at, std::size_t end, std::size_t& next) {
  const Fields fields(block);
  std::size_t stop = at;
  bool isAscii = true;
  for (; stop + 2 <= end; stop += 2) {
    const std::uint16_t unit = fields.U16(stop);
    if (unit == 0) break;
    isAscii = isAscii && unit < 0x80;
  }
  next = stop + 2 <= end ? stop + 2 : stop;
  if (isAscii) {
    std::string text((stop - at) / 2, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = block[at + 2 * i];
    return text;
  }
  std::u16string text;
  for (; at < stop; at += 2) text += static_cast<char16_t>(fields.U16(at));
  return ToUtf8(text);
}

// A node of the block: a length, a key, a value, and nodes below it. All begin at offsets that four divides.
struct Node {
  std::string key;
  // Of texts some writers count characters and some bytes: to be trusted for numbers only.
  std::size_t valueSize = 0;
  std::size_t value = 0, end = 0;
};

Node ReadNode(std::string_view block, std::size_t at, std::size_t end) {
  const Fields fields(block);
  const std::size_t size = fields.U16(at);
  if (size < 6 || size > end - at)
    throw Exception("it is damaged: a part of its version resource is too long");
  Node node;
  node.valueSize = fields.U16(at + 2);
  node.end = at + size;
  node.key = TextAt(block, at + 6, node.end, node.value);
  node.value = std::min(Aligned(node.value), node.end);
  return node;
}

// Calls visit(node) for each node between the two offsets. A length of zero is filling.
template <class Visitor>
void ForEachNode(std::string_view block, std::size_t at, std::size_t end, Visitor&& visit) {
  for (at = Aligned(at); at + 6 <= end; at = Aligned(at)) {
    if (Fields(block).U16(at) == 0) return;
    const Node node = ReadNode(block, at, end);
    visit(node);
    at = node.end;
  }
}

std::optional<Translation> TranslationOf(std::string_view key) {
  const auto isDigit = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  };
  if (key.size() != 8 || !std::all_of(key.begin(), key.end(), isDigit)) return std::nullopt;
  const auto number = static_cast<std::uint32_t>(std::stoul(std::string(key), nullptr, 16));
  return Translation{static_cast<std::uint16_t>(number >> 16), static_cast<std::uint16_t>(number)};
}

BinaryVersion NumbersAt(const Fields& fields, std::size_t at) {
  return {fields.U16(at + 2), fields.U16(at), fields.U16(at + 6), fields.U16(at + 4)};
}

std::optional<FixedVersion> ReadFixed(std::string_view block, const Node& root) {
  const Fields fields(block.substr(0, root.end));
  if (root.valueSize < kFixedSize || fields.U32(root.value) != kFixedMark) return std::nullopt;
  const std::size_t at = root.value;
  return FixedVersion{NumbersAt(fields, at + 8), NumbersAt(fields, at + 16), fields.U32(at + 24),
                      fields.U32(at + 28),       fields.U32(at + 32),        fields.U32(at + 36),
                      fields.U32(at + 40)};
}

StringTable ReadTable(std::string_view block, const Node& node) {
  StringTable table{node.key, TranslationOf(node.key), {}};
  ForEachNode(block, node.value, node.end, [&](const Node& string) {
    std::size_t behind = 0;
    std::string text = string.valueSize == 0 ? "" : TextAt(block, string.value, string.end, behind);
    table.strings.emplace_back(string.key, std::move(text));
  });
  return table;
}

void ReadTranslations(std::string_view block, const Node& node, std::vector<Translation>& translations) {
  const Fields fields(block);
  const std::size_t end = std::min(node.end, node.value + node.valueSize);
  for (std::size_t at = node.value; at + 4 <= end; at += 4) {
    translations.push_back({fields.U16(at), fields.U16(at + 2)});
  }
}

// The entries of a folder of resources: pairs of name or number, and place.
struct Entry {
  std::uint32_t name, place;
};
std::vector<Entry> EntriesAt(const PeImage& image, std::uint64_t address) {
  constexpr const char* kWhat = "a folder of its resources";
  const Fields header(image.At(address, 16, kWhat));
  const std::size_t count = std::size_t{header.U16(12)} + header.U16(14);
  const Fields table(image.At(address + 16, count * 8, kWhat));
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < count; ++i) entries.push_back({table.U32(i * 8), table.U32(i * 8 + 4)});
  return entries;
}

}  // namespace

std::string DottedVersion(const BinaryVersion& numbers) {
  std::string text;
  for (const std::uint16_t number : numbers) text += (text.empty() ? "" : ".") + std::to_string(number);
  return text;
}

VersionResource ReadVersionResource(std::string_view block) {
  VersionResource version;
  const Node root = ReadNode(block, 0, block.size());
  version.fixed = ReadFixed(block, root);
  ForEachNode(block, root.value + root.valueSize, root.end, [&](const Node& part) {
    const bool hasStrings = part.key == "StringFileInfo", hasTranslations = part.key == "VarFileInfo";
    ForEachNode(block, part.value, part.end, [&](const Node& node) {
      if (hasStrings) version.tables.push_back(ReadTable(block, node));
      if (hasTranslations && node.key == "Translation") ReadTranslations(block, node, version.translations);
    });
  });
  return version;
}

std::optional<std::string_view> FindVersionResource(const PeImage& image) {
  const PeDirectory resources = image.Resources();
  if (resources.address == 0 || resources.size == 0) return std::nullopt;
  const std::vector<Entry> types = EntriesAt(image, resources.address);
  const auto type =
      std::find_if(types.begin(), types.end(), [](const Entry& entry) { return entry.name == kVersionType; });
  if (type == types.end()) return std::nullopt;
  // Below a type stand names, below a name languages, and a language is the resource itself. Three steps, so
  // that a folder which holds itself leads nowhere.
  std::uint32_t place = type->place;
  for (int step = 0; step < 2; ++step) {
    if ((place & kSubfolder) == 0) throw Exception("it is damaged: its version resource stands in no folder");
    const std::vector<Entry> entries =
        EntriesAt(image, std::uint64_t{resources.address} + (place & ~kSubfolder));
    if (entries.empty()) return std::nullopt;
    place = entries.front().place;
  }
  if ((place & kSubfolder) != 0) throw Exception("it is damaged: its version resource is a folder");
  const Fields data(
      image.At(std::uint64_t{resources.address} + place, 16, "the entry of its version resource"));
  return image.At(data.U32(0), data.U32(4), "its version resource");
}

}  // namespace qx
