// What platform/files/Files.cpp asks of the system, one source a system. A reason is the system's text, empty
// for success.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
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

// Writes beside the target, flushes, renames. The mode is taken from the file `model`, with leave to write;
// from the old file when `model` is empty. The bytes come in pieces, so that a large file need not be joined.
bool Replace(const std::string& target, std::span<const std::string_view> pieces, const std::string& model,
             std::string& reason);

// What reading a file told about its replacement, so that nothing is asked of the system twice.
struct FileFacts {
  bool mayBeWritten = false;
  bool hasOneName = false;
  std::uint32_t mode = 0, owner = 0, group = 0;
};
// Reads a regular file that stands under exactly this name, no link. None where that is not so, or not known
// to be.
std::optional<FileFacts> ReadWithFacts(const std::string& path, std::string& bytes);
// As Replace, for a file that was read so; `leaveToWrite` adds that to the mode.
bool ReplaceByFacts(const std::string& target, std::span<const std::string_view> pieces,
                    const FileFacts& facts, bool leaveToWrite, std::string& reason);

// True when there is no such file afterwards.
bool Remove(const std::string& target, std::string& reason);

// Gives the file a second name, at which nothing may be yet: the cheapest copy of a file that is about to be
// replaced. False, and nothing is done, where the system cannot.
bool AddName(const std::string& file, const std::string& name);

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
// Takes the lock on a file at once. Null when another holds it: `holder` is then its process identifier, or
// "unknown". Raises FileNotLockable.
std::unique_ptr<HeldLock> TakeLock(const std::string& path, std::string& holder);

}  // namespace qx::system
