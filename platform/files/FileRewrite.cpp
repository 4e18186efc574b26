#include "platform/files/FileRewrite.h"

#include "platform/files/Files.h"
#include "platform/files/Paths.h"
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

// The same name in its folder as that is called on disk: a share and the other delimiter mean nothing to the
// system. The file itself may be a link, and its backup stands beside the link.
std::string NameOnDisk(const std::string& path) {
  const std::string folder = SystemPassesOverSpelling() ? "" : FindExisting(FolderPart(path));
  return folder.empty() ? path : WithTrailingDelimiter(folder) + FilePart(path);
}

}  // namespace

std::optional<FileRewrite> FileRewrite::OpenAsNamed(const std::string& path) {
  FileRewrite rewrite;
  if (!WritesAreCaptured()) rewrite.facts_ = system::ReadWithFacts(path, rewrite.bytes_);
  if (!rewrite.facts_ || !rewrite.facts_->mayBeWritten) return std::nullopt;
  rewrite.path_ = rewrite.target_ = path;
  return rewrite;
}

FileRewrite::FileRewrite(const std::string& path) {
  if (auto named = OpenAsNamed(path)) {
    *this = std::move(*named);
    return;
  }
  path_ = path;
  target_ = system::WriteTarget(path);
  bytes_ = ReadFile(path);
  if (const std::string reason = system::WhyNotWritable(target_); !reason.empty()) FailToWrite(path, reason);
}

std::string FileRewrite::WhyNotWritable() const {
  const std::string reason = system::WhyNothingCanBeMadeIn(FolderPart(target_));
  return reason.empty() ? "" : "Cannot write " + path_ + ": in its folder nothing can be made: " + reason;
}

void FileRewrite::Commit(std::string_view suffix, BackupRule rule, Pieces backup, Pieces bytes) {
  const std::string name = path_ + std::string(suffix);
  if (WritesAreCaptured()) {
    if (rule == BackupRule::EveryTime || !FileExists(name)) ReplaceFile(name, Joined(backup));
    ReplaceFile(path_, Joined(bytes));
    return;
  }
  const bool changes = !Equal(bytes, bytes_);
  const bool mayLink = changes && facts_ && facts_->hasOneName && Equal(backup, bytes_);
  const std::string nameOnDisk = facts_ ? name : NameOnDisk(name);
  const bool linked = BackUp(nameOnDisk, rule, backup, mayLink);
  if (!changes) return;
  std::string reason;
  if (facts_ ? system::ReplaceByFacts(target_, bytes, *facts_, false, reason)
             : system::Replace(target_, bytes, "", reason)) {
    return;
  }
  // The second name may not outlive the failure: what is written to the file would be written to its backup.
  std::string ignored;
  if (linked) system::Remove(nameOnDisk, ignored);
  FailToWrite(path_, reason);
}

// Gives whether the backup is a second name of the file, which `mayLink` allows.
bool FileRewrite::BackUp(const std::string& name, BackupRule rule, Pieces backup, bool mayLink) {
  std::string reason;
  if (rule == BackupRule::FirstTime && FileExists(name)) return false;
  if (mayLink && system::AddName(target_, name)) return true;
  if (rule == BackupRule::EveryTime && !system::Remove(name, reason)) FailToWrite(name, reason);
  if (mayLink && system::AddName(target_, name)) return true;
  if (facts_ ? system::ReplaceByFacts(name, backup, *facts_, true, reason)
             : system::Replace(name, backup, target_, reason)) {
    return false;
  }
  FailToWrite(name, reason);
}

}  // namespace qx
