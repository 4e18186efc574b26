#include "platform/files/Files.h"

#include <map>
#include <mutex>
#include <thread>

#include "platform/Texts.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/Paths.h"
#include "platform/files/StagedFile.h"
#include "platform/files/WriteObserver.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct system::CapturedWrites {
  std::mutex lock;
  std::vector<WriteCapture::Change> changes;
  std::map<std::string, std::size_t> index;  // by path on disk
};

namespace {

// Where this thread's writes go; null: to the disk. Packages write through plain functions that take no host,
// so the thread has to say for whom it works.
constinit thread_local system::CapturedWrites* capturing = nullptr;

// Where the system passes over letter case, so does the look-up.
std::string IndexKey(const std::string& target) {
  return SystemPassesOverSpelling() ? FoldCase(target) : target;
}

void Record(const std::string& target, std::optional<std::string> bytes) {
  system::CapturedWrites& captured = *capturing;
  const std::lock_guard guard(captured.lock);
  const auto [place, isNew] = captured.index.try_emplace(IndexKey(target), captured.changes.size());
  if (isNew) captured.changes.push_back({target, {}});
  captured.changes[place->second].bytes = std::move(bytes);
}

// What was recorded about a path; none when nothing was.
std::optional<WriteCapture::Change> Recorded(const std::string& path) {
  if (capturing == nullptr) return std::nullopt;
  const std::string target = system::WriteTarget(path);
  system::CapturedWrites& captured = *capturing;
  const std::lock_guard guard(captured.lock);
  const auto found = captured.index.find(IndexKey(target));
  if (found == captured.index.end()) return std::nullopt;
  return captured.changes[found->second];
}

[[noreturn]] void Fail(const char* what, const std::string& path, const std::string& reason) {
  throw Exception(what + path + ": " + reason);
}

void Replace(const std::string& path, std::string_view bytes, const std::string& model) {
  const std::string target = system::WriteTarget(path);
  std::string reason = system::WhyNotWritable(target);
  if (!reason.empty()) Fail("Cannot write ", path, reason);
  std::string old;
  const bool exists = TryReadFile(target, old);
  if (exists && old == bytes) return;
  if (WritesAreCaptured()) return Record(target, std::string(bytes));
  PlannedWrite planned{target, std::nullopt, std::span(&bytes, 1)};
  if (exists) planned.before = old;
  TellObserver({&planned, 1});
  const auto facts = system::FactsOf(model.empty() ? target : model);
  if (!system::Replace(target, {&bytes, 1}, facts ? &*facts : nullptr, !model.empty(), reason))
    Fail("Cannot write ", path, reason);
}

bool MakeFolders(const std::string& path, std::string& reason) {
  if (FolderExists(path)) return true;
  const std::string folder = path.substr(0, path.size() - (IsDelimiter(path.back()) ? 1 : 0));
  const std::string parent = FolderPart(folder);
  if (parent.size() < folder.size() && !MakeFolders(parent, reason)) return false;
  const std::string existing = FindExisting(parent);  // under the name it has on disk
  return system::MakeFolder(existing.empty() ? folder : WithTrailingDelimiter(existing) + FilePart(folder),
                            reason);
}

}  // namespace

bool WritesAreCaptured() { return capturing != nullptr; }

bool TryReadFile(const std::string& path, std::string& bytes, std::string* reason) {
  std::string ignored;
  std::string& why = reason != nullptr ? *reason : ignored;
  const auto recorded = Recorded(path);
  if (!recorded) return system::Read(path, bytes, why);
  if (!recorded->bytes) {
    why = "the file was removed";
    return false;
  }
  bytes = *recorded->bytes;
  return true;
}

bool TryReadParts(const std::string& path, std::string& buffer, const TakePart& take) {
  if (!Recorded(path)) return system::ReadParts(path, buffer, take);
  if (!TryReadFile(path, buffer)) return false;
  take(buffer);
  return true;
}

std::string ReadFile(const std::string& path) {
  std::string bytes, reason;
  if (TryReadFile(path, bytes, &reason)) return bytes;
  std::string found = path;
  if (!PathFinder().FindFile(found) || found == path || !TryReadFile(found, bytes, &reason)) {
    Fail("Cannot read ", path, reason);
  }
  return bytes;
}

bool FileExists(const std::string& path) {
  if (const auto recorded = Recorded(path)) return recorded->bytes.has_value();
  std::string found = path;
  return PathFinder().FindFile(found);
}

bool FolderExists(const std::string& path) {
  const std::string found = FindExisting(path);
  return !found.empty() && system::IsFolder(found);
}

std::optional<std::int64_t> TimeWritten(const std::string& path) {
  std::string found = path;
  if (!PathFinder().FindFile(found)) return std::nullopt;
  return system::TimeWritten(found);
}

bool AreSameFile(const std::string& one, const std::string& other) {
  const auto first = system::FactsOf(RealPath(one)), second = system::FactsOf(RealPath(other));
  return first && second && first->device == second->device && first->number == second->number;
}

std::string RealPath(const std::string& path) { return system::WriteTarget(path); }

void CreateFolders(const std::string& path) {
  std::string reason;
  if (!path.empty() && !MakeFolders(ExpandPath("", path), reason))
    Fail("Cannot create folder ", path, reason);
}

void ReplaceFile(const std::string& path, std::string_view bytes) { Replace(path, bytes, ""); }

void CopyFileAside(const std::string& from, const std::string& to) {
  const std::string bytes = ReadFile(from);
  Replace(to, bytes, system::WriteTarget(from));
}

void RemoveFile(const std::string& path) {
  if (!FileExists(path)) return;
  const std::string found = FindExisting(path);
  if (WritesAreCaptured()) return Record(system::WriteTarget(path), std::nullopt);
  PlannedWrite planned{found, std::nullopt, std::nullopt};
  std::string old, reason;
  if (TryReadFile(found, old)) planned.before = old;
  TellObserver({&planned, 1});
  if (!system::Remove(found, reason)) Fail("Cannot remove ", path, reason);
}

void RemoveLeftover(const std::string& path) { system::RemoveLeftover(system::WriteTarget(path)); }

FileInUse::~FileInUse() = default;
FileNotLockable::~FileNotLockable() = default;

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience)
    : FileLock(path, patience, Words()) {}

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience, const Words& words) {
  const auto end = std::chrono::steady_clock::now() + patience;
  std::string holder;
  while ((held_ = system::TakeLock(path, words.note, holder)) == nullptr) {
    if (std::chrono::steady_clock::now() >= end)
      throw FileInUse((words.what.empty() ? path : words.what) + " is in use by process " + holder);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

FileLock::~FileLock() = default;

WriteCapture::WriteCapture() : captured_(std::make_unique<system::CapturedWrites>()) {
  if (WritesAreCaptured()) throw Exception("Writes are being captured already");
  capturing = captured_.get();
}

WriteCapture::~WriteCapture() { capturing = nullptr; }

WriteCapture::Joined::Joined(const WriteCapture& capture) {
  if (WritesAreCaptured()) throw Exception("Writes are being captured already");
  capturing = capture.captured_.get();
}

WriteCapture::Joined::~Joined() { capturing = nullptr; }

std::vector<WriteCapture::Change> WriteCapture::Changes() const {
  const std::lock_guard guard(captured_->lock);
  return captured_->changes;
}

}  // namespace qx
