#include "programs/CliMetadata.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr const char* kWhat = "its CLI metadata";
constexpr std::size_t kAssemblyTable = 0x20;
// Names in the metadata are shorter, by the rules of the format.
constexpr std::size_t kLongestName = 1024;
// Six kinds are known.
constexpr unsigned kMostStreams = 64;

using RowCounts = std::array<std::uint32_t, 64>;
struct Sizes {
  std::size_t text, guid, blob;  // bytes of an index into these heaps
  RowCounts rows;
};

// The columns of the tables that stand in front of the Assembly table, so that its place can be worked out: a
// number of two or four bytes, an index into a heap, into one table, or into one of several (some bits say which).
enum class Kind : std::uint8_t { None, Two, Four, Text, Guid, Blob, Index, Coded };
struct Column {
  Kind kind = Kind::None;
  std::uint8_t which = 0;  // Index: the table; Coded: the row of kCoded
};
constexpr Column k2{Kind::Two}, k4{Kind::Four}, kS{Kind::Text}, kG{Kind::Guid}, kB{Kind::Blob};
constexpr Column Table(std::uint8_t table) { return {Kind::Index, table}; }

struct CodedIndex {
  int bits;
  std::array<std::uint8_t, 22> tables;
  std::size_t count;
};
constexpr CodedIndex Choice(int bits, std::initializer_list<std::uint8_t> tables) {
  CodedIndex index{bits, {}, tables.size()};
  std::copy(tables.begin(), tables.end(), index.tables.begin());
  return index;
}
enum Choices : std::uint8_t {
  TypeDefOrRef,
  HasConstant,
  HasAttribute,
  HasMarshal,
  HasSecurity,
  MemberParent,
  HasSemantics,
  MethodOrMember,
  Forwarded,
  AttributeType,
  ResolutionScope
};
constexpr CodedIndex kCoded[] = {
    Choice(2, {0x02, 0x01, 0x1B}),
    Choice(2, {0x04, 0x08, 0x17}),
    Choice(5, {0x06, 0x04, 0x01, 0x02, 0x08, 0x09, 0x0A, 0x00, 0x0E, 0x17, 0x14,
               0x11, 0x1A, 0x1B, 0x20, 0x23, 0x26, 0x27, 0x28, 0x2A, 0x2C, 0x2B}),
    Choice(1, {0x04, 0x08}),
    Choice(2, {0x02, 0x06, 0x20}),
    Choice(3, {0x02, 0x01, 0x1A, 0x06, 0x1B}),
    Choice(1, {0x14, 0x17}),
    Choice(1, {0x06, 0x0A}),
    Choice(1, {0x04, 0x06}),
    Choice(3, {0x06, 0x0A}),
    Choice(2, {0x00, 0x1A, 0x23, 0x01})};
constexpr Column One(Choices choice) { return {Kind::Coded, choice}; }

constexpr Column kTables[kAssemblyTable][6] = {
    {k2, kS, kG, kG, kG},                                       // 00 Module
    {One(ResolutionScope), kS, kS},                             // 01 TypeRef
    {k4, kS, kS, One(TypeDefOrRef), Table(0x04), Table(0x06)},  // 02 TypeDef
    {Table(0x04)},                                              // 03 FieldPtr
    {k2, kS, kB},                                               // 04 Field
    {Table(0x06)},                                              // 05 MethodPtr
    {k4, k2, k2, kS, kB, Table(0x08)},                          // 06 MethodDef
    {Table(0x08)},                                              // 07 ParamPtr
    {k2, k2, kS},                                               // 08 Param
    {Table(0x02), One(TypeDefOrRef)},                           // 09 InterfaceImpl
    {One(MemberParent), kS, kB},                                // 0A MemberRef
    {k2, One(HasConstant), kB},                                 // 0B Constant
    {One(HasAttribute), One(AttributeType), kB},                // 0C CustomAttribute
    {One(HasMarshal), kB},                                      // 0D FieldMarshal
    {k2, One(HasSecurity), kB},                                 // 0E DeclSecurity
    {k2, k4, Table(0x02)},                                      // 0F ClassLayout
    {k4, Table(0x04)},                                          // 10 FieldLayout
    {kB},                                                       // 11 StandAloneSig
    {Table(0x02), Table(0x14)},                                 // 12 EventMap
    {Table(0x14)},                                              // 13 EventPtr
    {k2, kS, One(TypeDefOrRef)},                                // 14 Event
    {Table(0x02), Table(0x17)},                                 // 15 PropertyMap
    {Table(0x17)},                                              // 16 PropertyPtr
    {k2, kS, kB},                                               // 17 Property
    {k2, Table(0x06), One(HasSemantics)},                       // 18 MethodSemantics
    {Table(0x02), One(MethodOrMember), One(MethodOrMember)},    // 19 MethodImpl
    {kS},                                                       // 1A ModuleRef
    {kB},                                                       // 1B TypeSpec
    {k2, One(Forwarded), kS, Table(0x1A)},                      // 1C ImplMap
    {k4, Table(0x04)},                                          // 1D FieldRVA
    {k4, k4},                                                   // 1E EncLog
    {k4},                                                       // 1F EncMap
};

std::size_t SizeOf(const Column& column, const Sizes& sizes) {
  switch (column.kind) {
    case Kind::None:
      return 0;
    case Kind::Two:
      return 2;
    case Kind::Four:
      return 4;
    case Kind::Text:
      return sizes.text;
    case Kind::Guid:
      return sizes.guid;
    case Kind::Blob:
      return sizes.blob;
    case Kind::Index:
      return sizes.rows[column.which] < 0x10000 ? 2 : 4;
    case Kind::Coded:
      break;
  }
  const CodedIndex& coded = kCoded[column.which];
  const bool isSmall =
      std::all_of(coded.tables.begin(), coded.tables.begin() + coded.count,
                  [&](std::uint8_t table) { return sizes.rows[table] < 0x10000u >> coded.bits; });
  return isSmall ? 2 : 4;
}

// Where the Assembly table begins behind the first table.
std::uint64_t AssemblyOffset(const Sizes& sizes) {
  std::uint64_t offset = 0;
  for (std::size_t table = 0; table < kAssemblyTable; ++table) {
    if (sizes.rows[table] == 0) continue;
    std::uint64_t row = 0;
    for (const Column& column : kTables[table]) row += SizeOf(column, sizes);
    offset += row * sizes.rows[table];
  }
  return offset;
}

// The streams of the metadata that are wanted, by address; size 0: not there.
struct Streams {
  PeDirectory tables, texts;
};

Streams FindStreams(const PeImage& image, std::uint32_t root) {
  const Fields start(image.At(root, 16, kWhat));
  if (start.U32(0) != 0x424A5342)
    throw Exception("it is damaged: its CLI metadata begins with the wrong mark");
  std::uint64_t at = std::uint64_t{root} + 16 + ((std::uint64_t{start.U32(12)} + 3) & ~std::uint64_t{3});
  const std::uint16_t count = Fields(image.At(at, 4, kWhat)).U16(2);
  if (count > kMostStreams) throw Exception("it is damaged: its CLI metadata has too many streams");
  at += 4;
  Streams streams;
  for (unsigned i = 0; i < count; ++i) {
    const std::string_view header = image.UpTo(at, 8 + 32, kWhat);
    const Fields fields(header);
    const PeDirectory place{root + fields.U32(0), fields.U32(4)};
    const std::string_view rest = header.substr(8);
    const std::string_view name = rest.substr(0, rest.find('\0'));
    if (name == "#~" || name == "#-") streams.tables = place;
    if (name == "#Strings" && streams.texts.size == 0) streams.texts = place;
    at += 8 + ((name.size() + 4) & ~std::size_t{3});
  }
  return streams;
}

std::string TextAt(const PeImage& image, PeDirectory texts, std::uint32_t index) {
  if (index == 0) return "";
  if (index >= texts.size) throw Exception("it is damaged: a name lies outside its CLI metadata");
  const std::size_t most = std::min<std::size_t>(kLongestName, texts.size - index);
  const std::string_view text = image.UpTo(std::uint64_t{texts.address} + index, most, kWhat);
  return std::string(text.substr(0, text.find('\0')));
}

}  // namespace

bool IsManaged(const PeImage& image) { return image.CliHeader().address != 0 && image.CliHeader().size != 0; }

std::optional<AssemblyName> ReadAssemblyName(const PeImage& image) {
  if (!IsManaged(image)) return std::nullopt;
  const Fields cli(image.At(image.CliHeader().address, 16, "its CLI header"));
  const Streams streams = FindStreams(image, cli.U32(8));
  if (streams.tables.size == 0) throw Exception("it is damaged: its CLI metadata has no tables");

  const std::uint64_t tables = streams.tables.address;
  const Fields header(image.At(tables, 24, kWhat));
  const std::uint8_t heaps = header.U8(6);
  const std::uint64_t present = header.U64(8);
  if ((present >> kAssemblyTable & 1) == 0) return std::nullopt;
  const std::size_t counts = static_cast<std::size_t>(std::popcount(present)) * 4;
  const Fields rowCounts(image.At(tables + 24, counts, kWhat));
  const auto width = [&](int bit) { return std::size_t{(heaps >> bit & 1) != 0 ? 4u : 2u}; };
  Sizes sizes{width(0), width(1), width(2), {}};
  for (std::size_t table = 0, seen = 0; table < sizes.rows.size(); ++table) {
    if ((present >> table & 1) != 0) sizes.rows[table] = rowCounts.U32(seen++ * 4);
  }
  if (sizes.rows[kAssemblyTable] == 0) return std::nullopt;

  // Behind the counts some writers put four bytes of their own, and say so.
  const std::uint64_t first = tables + 24 + counts + ((heaps & 0x40) != 0 ? 4 : 0);
  const std::size_t name = 16 + sizes.blob;
  const Fields row(image.At(first + AssemblyOffset(sizes), name + 2 * sizes.text, "its assembly's name"));
  const auto text = [&](std::size_t at) {
    return TextAt(image, streams.texts, sizes.text == 4 ? row.U32(at) : row.U16(at));
  };
  return AssemblyName{text(name), {row.U16(4), row.U16(6), row.U16(8), row.U16(10)}, text(name + sizes.text)};
}

}  // namespace qx
