// A file of which only some parts are wanted, wherever they stand: headers and resources of a large program.
// Parts are read rather than mapped: for a few small ones that is twice as fast (no page tables to make and
// to drop), and a file that somebody cuts short meanwhile gives a short answer instead of ending the process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace qx {

class RandomAccessFile {
 public:
  // Opens a regular file, found as Paths.h says. Raises "Cannot read FILE: REASON".
  explicit RandomAccessFile(const std::string& path);
  ~RandomAccessFile();
  RandomAccessFile(const RandomAccessFile&) = delete;
  RandomAccessFile& operator=(const RandomAccessFile&) = delete;

  // Bytes, as they were when the file was opened.
  std::uint64_t Size() const { return size_; }
  // Fills `into` from that offset on; how many bytes there were: fewer only where the file ends. Raises the
  // system's reason alone: the caller knows what it was reading.
  std::size_t Read(std::uint64_t offset, std::span<char> into) const;

 private:
  std::intptr_t file_ = -1;  // the system's own number or handle
  std::uint64_t size_ = 0;
};

}  // namespace qx
