// Programs made in memory for tests: a PE file with a version resource and CLI metadata, whose every byte a
// test may change. For tests of every room.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// Little-endian numbers behind one another.
class Bytes {
 public:
  Bytes& U8(unsigned value) { return Number(value, 1); }
  Bytes& U16(unsigned value) { return Number(value, 2); }
  Bytes& U32(std::uint64_t value) { return Number(value, 4); }
  Bytes& U64(std::uint64_t value) { return Number(value, 8); }
  Bytes& Raw(std::string_view bytes) {
    text_ += bytes;
    return *this;
  }
  // An ASCII text in UTF-16 and its zero.
  Bytes& Wide(std::string_view text) {
    for (const char c : text) U16(static_cast<unsigned char>(c));
    return U16(0);
  }
  Bytes& PadTo(std::size_t multiple) {
    while (text_.size() % multiple != 0) text_ += '\0';
    return *this;
  }
  Bytes& FillTo(std::size_t size) {
    if (text_.size() < size) text_.resize(size);
    return *this;
  }
  std::size_t Size() const { return text_.size(); }
  const std::string& Text() const { return text_; }

 private:
  Bytes& Number(std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) text_ += static_cast<char>(value >> (8 * i));
    return *this;
  }
  std::string text_;
};

// A node of a version resource: `value` stands behind the key, `children` behind the value.
inline std::string VersionNode(std::string_view key, unsigned valueLength, bool isText,
                               std::string_view value, const std::vector<std::string>& children = {}) {
  Bytes body;
  body.U16(0).U16(valueLength).U16(isText ? 1 : 0).Wide(key).PadTo(4).Raw(value);
  for (const std::string& child : children) body.PadTo(4).Raw(child);
  std::string node = body.Text();
  node[0] = static_cast<char>(node.size());
  node[1] = static_cast<char>(node.size() >> 8);
  return node;
}
inline std::string VersionText(std::string_view key, std::string_view text) {
  return VersionNode(key, static_cast<unsigned>(text.size()) + 1, true, Bytes().Wide(text).Text());
}
using Numbers = std::array<std::uint16_t, 4>;
inline std::string FixedBlock(const Numbers& file, const Numbers& product) {
  Bytes fixed;
  fixed.U32(0xFEEF04BD).U32(0x10000);
  for (const Numbers& n : {file, product}) fixed.U16(n[1]).U16(n[0]).U16(n[3]).U16(n[2]);
  return fixed.U32(0x3F).U32(2).U32(0x40004).U32(1).U32(0).U64(0).Text();
}
// A block as compilers write it: numbers, one table of strings, one translation.
inline std::string VersionBlock(const Numbers& file, const Numbers& product) {
  const std::string strings =
      VersionNode("StringFileInfo", 0, true, "",
                  {VersionNode("040904E4", 0, true, "",
                               {VersionText("CompanyName", "ACME"), VersionText("FileVersion", "1.2.3.4"),
                                VersionText("Empty", "")})});
  const std::string translation =
      VersionNode("VarFileInfo", 0, true, "",
                  {VersionNode("Translation", 4, false, Bytes().U16(0x409).U16(1252).Text())});
  return VersionNode("VS_VERSION_INFO", 52, false, FixedBlock(file, product), {strings, translation});
}

// The CLI metadata of an assembly of that name, with a few rows in front of the Assembly table. `wide`: all
// indexes into heaps take four bytes.
inline std::string MetadataOf(std::string_view name, const Numbers& version, std::string_view culture,
                              bool wide = false) {
  Bytes texts;
  texts.U8(0).Raw(name).U8(0);
  const std::size_t cultureAt = culture.empty() ? 0 : texts.Size();
  texts.Raw(culture).U8(0).PadTo(4);
  const auto index = [&](Bytes& row, std::size_t value) {
    wide ? row.U32(value) : row.U16(static_cast<unsigned>(value));
  };

  Bytes tables;
  tables.U32(0).U8(2).U8(0).U8(wide ? 7 : 0).U8(1).U64(1ull | 1ull << 2 | 1ull << 0x20 | 1ull << 0x23).U64(0);
  tables.U32(1).U32(2).U32(1).U32(0);
  tables.U16(0);  // Module
  for (int i = 0; i < 4; ++i) index(tables, 0);
  for (int i = 0; i < 2; ++i) {  // TypeDef
    tables.U32(0);
    index(tables, 1);
    index(tables, 0);
    tables.U16(0).U16(1).U16(1);
  }
  tables.U32(0x8004);
  for (const std::uint16_t number : version) tables.U16(number);
  tables.U32(0);
  index(tables, 0);
  index(tables, 1);
  index(tables, cultureAt);
  tables.PadTo(4);

  Bytes root;
  root.U32(0x424A5342).U16(1).U16(1).U32(0).U32(12).Raw(std::string_view("v2.0.50727\0\0", 12)).U16(0).U16(2);
  const std::size_t first = root.Size() + 12 + 20;
  root.U32(first).U32(tables.Size()).Raw(std::string_view("#~\0\0", 4));
  root.U32(first + tables.Size()).U32(texts.Size()).Raw(std::string_view("#Strings\0\0\0\0", 12));
  return root.Raw(tables.Text()).Raw(texts.Text()).Text();
}

struct FixtureProgram {
  std::uint16_t machine = 0x14C;
  bool is64 = false;
  std::optional<std::string> metadata;  // none: not managed
  std::optional<std::string> version;   // none: no version resource
};

// The file: one section at address 0x2000 and offset 0x200, which begins with the CLI header.
inline std::string MakeProgram(const FixtureProgram& program) {
  constexpr std::uint32_t kAddress = 0x2000, kCliHeader = 72;
  Bytes section;
  section.FillTo(kCliHeader);
  const std::size_t metadataAt = section.Size();
  section.Raw(program.metadata.value_or("")).PadTo(4);
  const std::size_t metadataSize = section.Size() - metadataAt, resourcesAt = section.Size();
  if (program.version) {
    const auto folder = [&](std::uint64_t name, std::uint64_t place) {
      section.U32(0).U32(0).U32(0).U16(0).U16(1).U32(name).U32(place);
    };
    folder(16, 0x80000000 | 24);
    folder(1, 0x80000000 | 48);
    folder(1033, 72);
    section.U32(kAddress + section.Size() + 16)
        .U32(program.version->size())
        .U32(0)
        .U32(0)
        .Raw(*program.version);
  }
  const std::size_t resourcesSize = section.Size() - resourcesAt;
  std::string content = section.PadTo(512).Text();
  if (program.metadata) {
    const std::string cli =
        Bytes().U32(72).U16(2).U16(5).U32(kAddress + metadataAt).U32(metadataSize).FillTo(72).Text();
    content.replace(0, kCliHeader, cli);
  }

  Bytes file;
  file.Raw("MZ").FillTo(60).U32(64).Raw(std::string_view("PE\0\0", 4));
  const unsigned optionalSize = program.is64 ? 240 : 224;
  file.U16(program.machine).U16(1).U32(0).U32(0).U32(0).U16(optionalSize).U16(0x2102);
  const std::size_t optional = file.Size();
  file.U16(program.is64 ? 0x20B : 0x10B)
      .FillTo(optional + 32)
      .U32(0x2000)
      .U32(512)
      .FillTo(optional + 60)
      .U32(512);
  file.FillTo(optional + (program.is64 ? 108 : 92)).U32(16);
  const std::size_t directories = file.Size();
  file.FillTo(directories + 2 * 8).U32(program.version ? kAddress + resourcesAt : 0).U32(resourcesSize);
  file.FillTo(directories + 14 * 8)
      .U32(program.metadata ? kAddress : 0)
      .U32(program.metadata ? kCliHeader : 0);
  file.FillTo(optional + optionalSize);
  file.Raw(std::string_view(".text\0\0\0", 8)).U32(content.size()).U32(kAddress).U32(content.size()).U32(512);
  return file.FillTo(512).Raw(content).Text();
}

}  // namespace qx
