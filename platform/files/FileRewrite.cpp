#include "platform/files/FileRewrite.h"

#include <algorithm>
#include <memory>

#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/StagedFile.h"
#include "platform/files/WriteObserver.h"
#include "plugin/Qxtypes.h"

namespace qx {

using Pieces = std::span<const std::string_view>;

// One rewrite on its way to the disk.
struct Rewriting {
  const FileRewrite* file = nullptr;
  std::string_view suffix;
  BackupRule rule = BackupRule::EveryTime;
  Pieces backup, bytes;

  std::string backupName;                    // on disk
  std::unique_ptr<system::StagedFile> kept;  // null: no backup is made
  std::unique_ptr<system::StagedFile> made;  // null: the file holds these bytes already

  const std::string& Target() const { return file->target_; }
  const std::string& Path() const { return file->path_; }
  std::string BackupPath() const { return Path() + std::string(suffix); }
  bool Changes() const;
  void Stage();
  void Place();
  void Drop() { kept.reset(), made.reset(); }
};

namespace {

// As many as are staged at a time hold two descriptors each.
constexpr std::size_t kMostStaged = 128;
// Texts that wait to be placed; a larger file does not wait.
constexpr std::size_t kMostKept = std::size_t{4} << 20;

// Whose commits this thread gathers. Packages write through plain functions that take no host.
constinit thread_local RewritesTogether* together = nullptr;

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
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  std::string bytes;
  bytes.reserve(size);
  for (const std::string_view piece : pieces) bytes += piece;
  return bytes;
}

// The same name in its folder as that is called on disk: a share and the other delimiter mean nothing to the
// system. The file itself may be a link, and its backup stands beside the link.
std::string NameOnDisk(const std::string& path) {
  const std::string folder = SystemPassesOverSpelling() ? "" : FindExisting(FolderPart(path));
  return folder.empty() ? path : WithTrailingDelimiter(folder) + FilePart(path);
}

// Flushes what the rewrites have staged, up to the first that fails, which is told when those before it stand
// in their places.
void PlaceStaged(std::span<Rewriting> rewrites, std::size_t& placed) {
  std::vector<system::StagedFile*> staged;
  std::vector<std::pair<Rewriting*, std::string>> owners;  // and the names for complaints
  for (Rewriting& rewrite : rewrites) {
    for (const auto* file : {&rewrite.kept, &rewrite.made}) {
      if (*file == nullptr) continue;
      staged.push_back(file->get());
      owners.emplace_back(&rewrite, file == &rewrite.kept ? rewrite.BackupPath() : rewrite.Path());
    }
  }
  std::size_t failed = 0;
  std::string reason;
  const bool flushed = system::FlushAll(staged, failed, reason);
  for (Rewriting& rewrite : rewrites) {
    if (!flushed && &rewrite == owners[failed].first) FailToWrite(owners[failed].second, reason);
    rewrite.Place();
    ++placed;
  }
}

void CarryOut(std::span<Rewriting> all, std::size_t& placed) {
  std::vector<PlannedWrite> planned;
  for (const Rewriting& rewrite : all) {
    if (rewrite.Changes()) planned.push_back({rewrite.Target(), rewrite.file->Bytes(), rewrite.bytes});
  }
  TellObserver(planned);
  while (!all.empty()) {
    const std::span<Rewriting> some = all.first(std::min(all.size(), kMostStaged));
    std::size_t staged = 0;
    std::optional<Exception> failure;
    try {
      for (; staged < some.size(); ++staged) some[staged].Stage();
    } catch (const Exception& error) {
      failure = error;
    }
    PlaceStaged(some.first(staged), placed);
    if (failure) throw *failure;
    // What has been placed holds descriptors no longer.
    for (Rewriting& rewrite : some) rewrite.Drop();
    all = all.subspan(some.size());
  }
}

}  // namespace

bool Rewriting::Changes() const { return !Equal(bytes, file->Bytes()); }

void Rewriting::Stage() {
  std::string reason;
  const std::string name = BackupPath();
  if (rule == BackupRule::EveryTime || !FileExists(name)) {
    backupName = Path() == Target() ? name : NameOnDisk(name);
    kept = system::Stage(backupName, backup, &*file->facts_, true, reason);
    if (kept == nullptr) FailToWrite(name, reason);
  }
  if (!Changes()) return;
  made = system::Stage(Target(), bytes, &*file->facts_, false, reason);
  if (made == nullptr) FailToWrite(Path(), reason);
}

void Rewriting::Place() {
  std::string reason;
  if (!system::IsStill(Target(), *file->facts_, file->Bytes()))
    FailToWrite(Path(), "another program has written to it meanwhile");
  if (kept != nullptr && !(system::Remove(backupName, reason) && kept->PlaceNew(reason)))
    FailToWrite(BackupPath(), reason);
  if (made != nullptr && !made->Place(reason)) FailToWrite(Path(), reason);
}

std::optional<FileRewrite> FileRewrite::Open(const std::string& path, const std::string& target,
                                             std::string& reason) {
  FileRewrite rewrite;
  rewrite.facts_ = system::ReadWithFacts(target, rewrite.bytes_, reason);
  if (!rewrite.facts_) return std::nullopt;
  if (together != nullptr && together->Holds(*rewrite.facts_)) {
    together->Place();
    rewrite.facts_ = system::ReadWithFacts(target, rewrite.bytes_, reason);
    if (!rewrite.facts_) return std::nullopt;
  }
  rewrite.path_ = path;
  rewrite.target_ = target;
  return rewrite;
}

std::optional<FileRewrite> FileRewrite::OpenAsNamed(const std::string& path) {
  // Where the system passes over spelling, the name is not known to be the file's own.
  if (WritesAreCaptured() || SystemPassesOverSpelling()) return std::nullopt;
  std::string ignored;
  auto rewrite = Open(path, path, ignored);
  if (!rewrite || !rewrite->facts_->mayBeWritten) return std::nullopt;
  return rewrite;
}

FileRewrite::FileRewrite(const std::string& path) {
  if (auto named = OpenAsNamed(path)) {
    *this = std::move(*named);
    return;
  }
  const std::string target = system::WriteTarget(path);
  std::string reason;
  if (WritesAreCaptured()) {
    bytes_ = ReadFile(path);
  } else if (auto found = Open(path, target, reason)) {
    *this = std::move(*found);
  } else {
    throw Exception("Cannot read " + path + ": " + reason);
  }
  path_ = path;
  target_ = target;
  if (reason = system::WhyNotWritable(target_); !reason.empty()) FailToWrite(path, reason);
}

std::string FileRewrite::WhyNotWritable() const {
  const std::string reason = system::WhyNothingCanBeMadeIn(FolderPart(target_));
  return reason.empty() ? "" : "Cannot write " + path_ + ": in its folder nothing can be made: " + reason;
}

void FileRewrite::Commit(std::string_view suffix, BackupRule rule, Pieces backup, Pieces bytes) {
  if (WritesAreCaptured()) {
    const std::string name = path_ + std::string(suffix);
    if (rule == BackupRule::EveryTime || !FileExists(name)) ReplaceFile(name, Joined(backup));
    ReplaceFile(path_, Joined(bytes));
    return;
  }
  if (together != nullptr && bytes_.size() < kMostKept) {
    together->Take(std::move(*this), suffix, rule, backup, bytes);
    return;
  }
  if (together != nullptr) together->Place();
  Rewriting alone{this, suffix, rule, backup, bytes, {}, {}, {}};
  std::size_t placed = 0;
  CarryOut({&alone, 1}, together != nullptr ? together->placed_ : placed);
}

RewritesTogether::RewritesTogether() {
  if (together != nullptr) throw Exception("Rewrites are being gathered already");
  together = this;
}

RewritesTogether::~RewritesTogether() { together = nullptr; }

bool RewritesTogether::Holds(const system::FileFacts& facts) const {
  return files_.contains({facts.device, facts.number});
}

void RewritesTogether::Take(FileRewrite&& rewrite, std::string_view suffix, BackupRule rule, Pieces backup,
                            Pieces bytes) {
  // The pieces may point into the rewrite: they are joined before it moves.
  Pending one{FileRewrite(), std::string(suffix), rule, std::nullopt, Joined(bytes)};
  if (!Equal(backup, rewrite.bytes_)) one.backup = Joined(backup);
  files_.emplace(rewrite.facts_->device, rewrite.facts_->number);
  size_ += rewrite.bytes_.size() + one.bytes.size() + (one.backup ? one.backup->size() : 0);
  one.rewrite = std::move(rewrite);
  pending_.push_back(std::move(one));
  if (size_ > kMostKept) Place();
}

void RewritesTogether::Place() {
  const std::vector<Pending> pending = std::exchange(pending_, {});
  files_.clear();
  size_ = 0;
  std::vector<std::string_view> texts;
  texts.reserve(pending.size() * 2);
  std::vector<Rewriting> rewrites;
  for (const Pending& one : pending) {
    texts.push_back(one.backup ? *one.backup : one.rewrite.Bytes());
    texts.push_back(one.bytes);
    const Pieces pieces(&texts[texts.size() - 2], 2);
    rewrites.push_back({&one.rewrite, one.suffix, one.rule, pieces.first(1), pieces.last(1), {}, {}, {}});
  }
  CarryOut(rewrites, placed_);
}

}  // namespace qx
