#include "programs/PeImage.h"

#include <algorithm>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::size_t kDosHeader = 64;
constexpr std::size_t kFileHeader = 24;  // the signature included
constexpr std::size_t kSectionHeader = 40;
// The loader takes the places of sections in whole sectors, unless sections lie closer than that.
constexpr std::uint32_t kSector = 512;

// The forms of the optional header, by its first number.
struct HeaderForm {
  std::uint16_t magic;
  std::size_t directoryCount, directories;  // offsets
};
constexpr HeaderForm kForms[] = {{0x10B, 92, 96}, {0x20B, 108, 112}};

struct MachineRow {
  std::uint16_t machine;
  const char* name;
};
constexpr MachineRow kMachines[] = {{0x014C, "x86"}, {0x8664, "x64"},   {0x01C0, "arm"}, {0x01C2, "arm"},
                                    {0x01C4, "arm"}, {0xAA64, "arm64"}, {0x0200, "ia64"}};

// Where the PE header stands. Older kinds of programs begin in the same way: they are told apart by name.
std::uint64_t FindHeader(ByteSource& source) {
  if (source.Size() == 0) throw Exception("it is empty");
  const std::string_view start = source.UpTo(0, kDosHeader);
  if (!start.starts_with("MZ")) throw Exception("it is no Windows program: it does not begin with MZ");
  if (start.size() < kDosHeader) throw Exception("it is cut off: its first header lies behind its end");
  const std::uint64_t offset = Fields(start).U32(60);
  const std::string_view mark = source.UpTo(offset, 4);
  if (mark.size() < 4)
    throw Exception("it is cut off, or a DOS program: its PE header would lie behind its end");
  if (mark.starts_with("NE")) throw Exception("it is a program for 16-bit Windows");
  if (mark != std::string_view("PE\0\0", 4)) throw Exception("it is no Windows program: it has no PE header");
  return offset;
}

}  // namespace

PeImage::PeImage(ByteSource& source) : source_(source) {
  const std::uint64_t offset = FindHeader(source);
  const Fields header(source.Part(offset, kFileHeader, "its file header"));
  machine_ = header.U16(4);
  const std::uint16_t sections = header.U16(6);
  const std::uint16_t optionalSize = header.U16(20);
  ReadOptionalHeader(source.Part(offset + kFileHeader, optionalSize, "its optional header"));
  ReadSections(offset + kFileHeader + optionalSize, sections, fileAlignment_ >= kSector);
}

void PeImage::ReadOptionalHeader(std::string_view header) {
  const Fields fields(header);
  const std::uint16_t magic = fields.U16(0);
  const auto form = std::find_if(std::begin(kForms), std::end(kForms),
                                 [&](const HeaderForm& known) { return known.magic == magic; });
  if (form == std::end(kForms)) throw Exception("it is damaged: its optional header is of no known form");
  fileAlignment_ = fields.U32(36);
  headersSize_ = fields.U32(60);
  const std::size_t room = header.size() < form->directories ? 0 : (header.size() - form->directories) / 8;
  const std::size_t count =
      std::min({directories_.size(), room, std::size_t{fields.U32(form->directoryCount)}});
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = form->directories + i * 8;
    directories_[i] = {fields.U32(at), fields.U32(at + 4)};
  }
}

void PeImage::ReadSections(std::uint64_t offset, unsigned count, bool alignsToDisk) {
  const Fields table(source_.Part(offset, count * kSectionHeader, "its section table"));
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = i * kSectionHeader;
    const std::uint32_t loaded = table.U32(at + 8), inFile = table.U32(at + 16);
    std::uint32_t place = table.U32(at + 20);
    if (alignsToDisk) place -= place % kSector;
    sections_.push_back({table.U32(at + 12), std::max(loaded, inFile), place, inFile});
  }
}

PeImage::Place PeImage::PlaceOf(std::uint64_t address, const char* what) const {
  for (const Section& section : sections_) {
    if (address < section.address || address - section.address >= section.size) continue;
    const std::uint64_t within = address - section.address;
    return {section.offset + within, section.bytesInFile - std::min(within, section.bytesInFile)};
  }
  // The headers are loaded too; tiny programs keep more there.
  if (address < headersSize_) return {address, headersSize_ - address};
  throw Exception(std::string("it is damaged: ") + what + " lies outside its sections");
}

std::string_view PeImage::UpTo(std::uint64_t address, std::size_t size, const char* what) const {
  const Place place = PlaceOf(address, what);
  return source_.UpTo(place.offset, static_cast<std::size_t>(std::min<std::uint64_t>(size, place.left)));
}

std::string_view PeImage::At(std::uint64_t address, std::size_t size, const char* what) const {
  const Place place = PlaceOf(address, what);
  if (place.left < size)
    throw Exception(std::string("it is damaged: ") + what + " lies outside its sections");
  return source_.Part(place.offset, size, what);
}

std::string MachineName(std::uint16_t machine) {
  const auto row = std::find_if(std::begin(kMachines), std::end(kMachines),
                                [&](const MachineRow& known) { return known.machine == machine; });
  if (row != std::end(kMachines)) return row->name;
  return "0x" + UpperHex(machine, 4);
}

}  // namespace qx
