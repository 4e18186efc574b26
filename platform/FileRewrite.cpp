#include "platform/FileRewrite.h"

#include "platform/Files.h"
#include "platform/FilesSystem.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Pieces = std::span<const std::string_view>;

[[noreturn]] void FailToWrite(const std::string& path, const std::string& reason) {
  throw Exception("Cannot write " + path + ": " + reason);
}

bool Equal(Pieces pieces, std::string_view bytes) {
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  if (size != bytes.size()) return false;
  for (const std::string_view piece : pieces) {
    const std::string_view same = bytes.substr(0, piece.size());
    // Pieces of the text itself need no look at their bytes.
    if (piece.data() != same.data() && piece != same) return false;
    bytes.remove_prefix(piece.size());
  }
  return true;
}

std::string Joined(Pieces pieces) {
  std::string bytes;
  for (const std::string_view piece : pieces) bytes += piece;
  return bytes;
}

}  // namespace

FileRewrite::FileRewrite(const std::string& path) : path_(path) {
  const bool asNamed = !WritesAreCaptured() && system::IsRegularFile(path);
  target_ = asNamed ? path : system::WriteTarget(path);
  bytes_ = ReadFile(path);
  if (const std::string reason = system::WhyNotWritable(target_); !reason.empty()) FailToWrite(path, reason);
}

void FileRewrite::Commit(std::string_view suffix, BackupRule rule, Pieces backup, Pieces bytes) {
  const std::string name = path_ + std::string(suffix);
  if (WritesAreCaptured()) {
    if (rule == BackupRule::kEveryTime || !FileExists(name)) ReplaceFile(name, Joined(backup));
    ReplaceFile(path_, Joined(bytes));
    return;
  }
  const bool changes = !Equal(bytes, bytes_);
  const bool linked = BackUp(name, rule, backup, changes && Equal(backup, bytes_));
  if (!changes) return;
  std::string reason;
  if (system::Replace(target_, bytes, "", reason)) return;
  // The second name may not outlive the failure: what is written to the file would be written to its backup.
  std::string ignored;
  if (linked) system::Remove(name, ignored);
  FailToWrite(path_, reason);
}

// Gives whether the backup is a second name of the file, which `mayLink` allows.
bool FileRewrite::BackUp(const std::string& name, BackupRule rule, Pieces backup, bool mayLink) {
  std::string reason;
  if (rule == BackupRule::kFirstTime && FileExists(name)) return false;
  if (rule == BackupRule::kEveryTime && !system::Remove(name, reason)) FailToWrite(name, reason);
  if (mayLink && system::AddName(target_, name)) return true;
  if (!system::Replace(name, backup, target_, reason)) FailToWrite(name, reason);
  return false;
}

}  // namespace qx
