// Rewriting files and keeping a backup beside each, one at a time or many together, as steps that can be broken
// off anywhere: at every moment a file is the old one or the new one, whole, and the backup is whole or absent;
// a file that is new has its backup. Reads each file once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files/FilesSystem.h"

namespace qx {

enum class BackupRule {
  EveryTime,  // an older backup is removed first
  FirstTime,  // an older backup stays and no other is made
};

class FileRewrite {
 public:
  // Finds the file and reads it. Raises "Cannot read FILE: REASON"; for a file that may not be written,
  // "Cannot write FILE: REASON". Nothing is written yet.
  explicit FileRewrite(const std::string& path);
  // The same for a file that stands under exactly this name and may be written, with no search for it; none
  // where that is not so.
  static std::optional<FileRewrite> OpenAsNamed(const std::string& path);

  // The file as it was read.
  const std::string& Bytes() const { return bytes_; }

  // Why Commit cannot write, as far as the system tells beforehand: no new file can be made beside this one.
  // Empty when it can.
  std::string WhyNotWritable() const;

  // Puts `backup` beside the file, under its name and `suffix`, then `bytes` in its place; both are joined
  // from pieces, which may point into Bytes(). The file's mode is kept, a link is followed to its target, and
  // a file that holds these bytes already is left alone while its backup is made all the same. Raises "Cannot
  // write FILE: REASON"; the file is then as it was. A reason is also that another program has written to it
  // since it was read. While a WriteCapture is alive both are only recorded; while a RewritesTogether is,
  // they are its to carry out. The rewrite is used up.
  void Commit(std::string_view suffix, BackupRule rule, std::span<const std::string_view> backup,
              std::span<const std::string_view> bytes);

 private:
  friend class RewritesTogether;
  friend struct Rewriting;
  FileRewrite() = default;
  static std::optional<FileRewrite> Open(const std::string& path, const std::string& target,
                                         std::string& reason);

  std::string path_;    // as it was given
  std::string target_;  // on disk
  std::string bytes_;
  std::optional<system::FileFacts> facts_;  // absent: writes are captured
};

// While one is alive, what its thread commits is gathered and then carried out together: the disk is waited for
// once. A file that is opened again meanwhile is placed first, and so is what grows too large to be kept.
class RewritesTogether {
 public:
  // Raises Exception when this thread gathers already.
  RewritesTogether();
  // What was not placed is not written.
  ~RewritesTogether();
  RewritesTogether(const RewritesTogether&) = delete;
  RewritesTogether& operator=(const RewritesTogether&) = delete;

  // Carries out what was committed, in that order. Raises as FileRewrite::Commit: what comes before the failure is
  // written then, and nothing from it on.
  void Place();
  // How many commits have been carried out: the index of the one that failed, when one did.
  std::size_t PlacedCount() const { return placed_; }

 private:
  friend class FileRewrite;
  struct Pending {
    FileRewrite rewrite;
    std::string suffix;
    BackupRule rule;
    std::optional<std::string> backup;  // none: the file's bytes as they were read
    std::string bytes;
  };
  bool Holds(const system::FileFacts& facts) const;
  void Take(FileRewrite&& rewrite, std::string_view suffix, BackupRule rule,
            std::span<const std::string_view> backup, std::span<const std::string_view> bytes);

  std::vector<Pending> pending_;
  std::set<std::pair<std::uint64_t, std::uint64_t>> files_;  // by device and number
  std::size_t size_ = 0;
  std::size_t placed_ = 0;
};

}  // namespace qx
