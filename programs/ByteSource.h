// The bytes of a program and the small records in them: parts are fetched where they are needed, and nothing
// is read outside them. What is not there, or does not fit, raises Exception with the reason alone; who knows
// the file's name puts it in front.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "platform/files/RandomAccessFile.h"

namespace qx {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual std::uint64_t Size() const = 0;
  // The bytes from `offset` on, at most `size` of them: fewer where the source ends. They stay as long as the source.
  virtual std::string_view UpTo(std::uint64_t offset, std::size_t size) = 0;

  // Exactly these bytes. Raises "it is cut off: WHAT lies behind its end".
  std::string_view Part(std::uint64_t offset, std::size_t size, const char* what);
};

// A file, of which only what is asked for is read.
class FileBytes final : public ByteSource {
 public:
  // Raises "Cannot read FILE: REASON".
  explicit FileBytes(const std::string& path) : file_(path) {}
  std::uint64_t Size() const override { return file_.Size(); }
  std::string_view UpTo(std::uint64_t offset, std::size_t size) override;

 private:
  struct Window {
    std::uint64_t offset;
    std::string bytes;
  };
  RandomAccessFile file_;
  std::deque<Window> windows_;  // a few; they never move
};

// Bytes in memory, which the caller keeps.
class MemoryBytes final : public ByteSource {
 public:
  explicit MemoryBytes(std::string_view bytes) : bytes_(bytes) {}
  std::uint64_t Size() const override { return bytes_.size(); }
  std::string_view UpTo(std::uint64_t offset, std::size_t size) override {
    return offset > bytes_.size() ? std::string_view() : bytes_.substr(offset, size);
  }

 private:
  std::string_view bytes_;
};

// Little-endian numbers of a record. An offset outside it raises "it is damaged: a record ends too early".
class Fields {
 public:
  explicit Fields(std::string_view bytes) : bytes_(bytes) {}
  std::uint8_t U8(std::size_t at) const { return Get<std::uint8_t>(at); }
  std::uint16_t U16(std::size_t at) const { return Get<std::uint16_t>(at); }
  std::uint32_t U32(std::size_t at) const { return Get<std::uint32_t>(at); }
  std::uint64_t U64(std::size_t at) const { return Get<std::uint64_t>(at); }

 private:
  template <class Number>
  Number Get(std::size_t at) const {
    if (at > bytes_.size() || bytes_.size() - at < sizeof(Number)) RaiseTooShort();
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
      value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes_[at + i])) << (8 * i);
    }
    return static_cast<Number>(value);
  }
  [[noreturn]] static void RaiseTooShort();
  std::string_view bytes_;
};

}  // namespace qx
