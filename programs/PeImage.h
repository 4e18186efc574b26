// The outer form of a Windows program or library (PE, 32 and 64 bits): machine, sections, and where its
// resources and its CLI metadata stand. Raises Exception with the reason alone, as ByteSource.h says.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "programs/ByteSource.h"

namespace qx {

// A part of the loaded program, by its address relative to the image's beginning; size 0: it has none.
struct PeDirectory {
  std::uint32_t address = 0;
  std::uint32_t size = 0;
};

class PeImage {
 public:
  // Reads the headers. The source must stay as long as the image.
  explicit PeImage(ByteSource& source);

  std::uint16_t Machine() const { return machine_; }
  PeDirectory Resources() const { return directories_[2]; }
  PeDirectory CliHeader() const { return directories_[14]; }

  // The file's bytes that are loaded to that address, exactly `size` of them. Raises "it is damaged: WHAT
  // lies outside its sections", "it is cut off: WHAT lies behind its end".
  std::string_view At(std::uint64_t address, std::size_t size, const char* what) const;
  // The same, fewer where the section or the file ends.
  std::string_view UpTo(std::uint64_t address, std::size_t size, const char* what) const;

 private:
  struct Section {
    std::uint64_t address, size;        // loaded
    std::uint64_t offset, bytesInFile;  // in the file
  };
  struct Place {
    std::uint64_t offset;
    std::uint64_t left;  // how many bytes of the file the section has from there on
  };
  Place PlaceOf(std::uint64_t address, const char* what) const;
  void ReadOptionalHeader(std::string_view header);
  void ReadSections(std::uint64_t offset, unsigned count, bool alignsToDisk);

  ByteSource& source_;
  std::uint16_t machine_ = 0;
  std::uint32_t headersSize_ = 0;
  std::uint32_t fileAlignment_ = 0;
  std::array<PeDirectory, 16> directories_{};
  std::vector<Section> sections_;
};

// "x86", "x64", "arm", "arm64", "ia64"; "0x01F0" for one that has no such name.
std::string MachineName(std::uint16_t machine);

}  // namespace qx
