// Rewriting a file and keeping a backup beside it, as one step that can be broken off anywhere: at every moment
// the file is the old one or the new one, whole, and the backup is whole or absent. Reads the file once.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

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
  // write FILE: REASON"; the file is then as it was. While a WriteCapture is alive both are only recorded.
  void Commit(std::string_view suffix, BackupRule rule, std::span<const std::string_view> backup,
              std::span<const std::string_view> bytes);

 private:
  FileRewrite() = default;
  bool BackUp(const std::string& name, BackupRule rule, std::span<const std::string_view> backup,
              bool linked);

  std::string path_;    // as it was given
  std::string target_;  // on disk
  std::string bytes_;
  std::optional<system::FileFacts> facts_;  // absent: the file was reached the long way
};

}  // namespace qx
