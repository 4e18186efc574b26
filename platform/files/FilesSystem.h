// What platform/files/Files.cpp asks of the system, one source a system. A reason is the system's text, empty
// for success.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qx::system {

// Reads the regular file of exactly that name whole into a buffer that keeps its memory.
bool Read(const std::string& path, std::string& bytes, std::string& reason);

// The same in parts, which come through the buffer until `take` answers true.
bool ReadParts(const std::string& path, std::string& buffer,
               const std::function<bool(std::string_view)>& take);

// The path on disk that a write to `path` goes to: native, absolute, links followed; the file need not exist.
std::string WriteTarget(const std::string& path);

// Why a file at a write target may not be replaced: it is no regular file, or read-only. Empty when it may,
// or when there is none.
std::string WhyNotWritable(const std::string& target);

// Why nothing can be made in a folder; empty when it can, as far as the system tells beforehand.
std::string WhyNothingCanBeMadeIn(const std::string& folder);

// What is known of a file besides its bytes.
struct FileFacts {
  bool mayBeWritten = false;
  std::uint32_t mode = 0, owner = 0, group = 0;  // on Windows the mode is the file's attributes
  // By which it is told whether it is still the same file with the same bytes.
  std::uint64_t device = 0, number = 0, size = 0;
  std::int64_t time = 0;
  // It was written so shortly before it was read that its time might not tell of another writing.
  bool isFresh = false;
};
// Reads a regular file that stands under exactly this name, no link; the facts are of before the reading.
std::optional<FileFacts> ReadWithFacts(const std::string& path, std::string& bytes, std::string& reason);
// Whether the file is the one that was read, and nobody has written to it since.
bool IsStill(const std::string& path, const FileFacts& facts, std::string_view bytes);
// Of a file of that name, links followed; none where there is no such file.
std::optional<FileFacts> FactsOf(const std::string& path);

// True when there is no such file afterwards.
bool Remove(const std::string& target, std::string& reason);

// Makes one folder; true when it exists afterwards.
bool MakeFolder(const std::string& path, std::string& reason);

bool IsFolder(const std::string& path);

// Of a file of exactly that name.
std::optional<std::int64_t> TimeWritten(const std::string& path);

// The lock on a file for as long as it lives.
class HeldLock {
 public:
  virtual ~HeldLock() = default;
};
// Takes the lock on a file at once, with `note` for those who find it taken. Null when another holds it: `holder`
// is then its process identifier and its note, or "unknown". Raises FileNotLockable.
std::unique_ptr<HeldLock> TakeLock(const std::string& path, const std::string& note, std::string& holder);

}  // namespace qx::system
