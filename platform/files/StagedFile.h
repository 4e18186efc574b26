// A file that is written whole before it shows: bytes beside their target, then the disk, then the name. What is
// never placed leaves nothing behind; what a killed process leaves is taken away by the next write to the
// same target. One source a system. A reason is the system's text.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace qx::system {

struct FileFacts;

class StagedFile {
 public:
  // Takes what was not placed away.
  virtual ~StagedFile() = default;
  // The bytes are on the disk. Any thread.
  virtual bool Flush(std::string& reason) = 0;
  // The file stands under its name, in the place of an old one.
  virtual bool Place(std::string& reason) = 0;
  // The same where no file of that name is expected, which may cost less.
  virtual bool PlaceNew(std::string& reason) { return Place(reason); }
};

// Writes the pieces for a target, a path as WriteTarget gives it. Owner and mode are the model's, where there
// is one; `leaveToWrite` adds that to the mode. Null, with the reason, where it cannot.
std::unique_ptr<StagedFile> Stage(const std::string& target, std::span<const std::string_view> pieces,
                                  const FileFacts* model, bool leaveToWrite, std::string& reason);

// Flushes all of them with one call of the system, where that is known to do what Flush does and costs less. False:
// not known to be on the disk, each is to be flushed.
bool FlushTogether(std::span<StagedFile* const> files);
// Flushes all of them, together or on several threads where the disk is slow. False, with the first that failed.
bool FlushAll(std::span<StagedFile* const> files, std::size_t& failed, std::string& reason);

// Stage, Flush and Place.
bool Replace(const std::string& target, std::span<const std::string_view> pieces, const FileFacts* model,
             bool leaveToWrite, std::string& reason);

// Takes away what a killed process left while it wrote to the target; a living one's is left alone.
void RemoveLeftover(const std::string& target);

}  // namespace qx::system
