#include "platform/Files.h"

#include <atomic>
#include <map>
#include <mutex>

#include "platform/FilesSystem.h"
#include "platform/Paths.h"
#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// What the capture that is alive has recorded. The flag spares ordinary runs the lock and the look-up.
struct Captured {
  std::mutex lock;
  std::vector<WriteCapture::Change> changes;
  std::map<std::string, std::size_t> index;  // by path on disk
};
std::atomic<bool> capturing{false};

Captured& TheCaptured() {
  static Captured captured;
  return captured;
}

// Where the system passes over letter case, so does the look-up.
std::string IndexKey(const std::string& target) {
  return NativeDelimiter() == '\\' ? FoldCase(target) : target;
}

void Record(const std::string& target, std::optional<std::string> bytes) {
  Captured& captured = TheCaptured();
  const std::lock_guard guard(captured.lock);
  const auto [place, isNew] = captured.index.try_emplace(IndexKey(target), captured.changes.size());
  if (isNew) captured.changes.push_back({target, {}});
  captured.changes[place->second].bytes = std::move(bytes);
}

// What was recorded about a path; none when nothing was.
std::optional<WriteCapture::Change> Recorded(const std::string& path) {
  if (!capturing) return std::nullopt;
  const std::string target = system::WriteTarget(path);
  Captured& captured = TheCaptured();
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
  if (TryReadFile(target, old) && old == bytes) return;
  if (capturing) return Record(target, std::string(bytes));
  if (!system::Replace(target, {&bytes, 1}, model, reason)) Fail("Cannot write ", path, reason);
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

bool WritesAreCaptured() { return capturing; }

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
  if (capturing) return Record(system::WriteTarget(path), std::nullopt);
  std::string reason;
  if (!system::Remove(found, reason)) Fail("Cannot remove ", path, reason);
}

WriteCapture::WriteCapture() {
  if (capturing.exchange(true)) throw Exception("Writes are being captured already");
}

WriteCapture::~WriteCapture() {
  capturing = false;
  Captured& captured = TheCaptured();
  const std::lock_guard guard(captured.lock);
  captured.changes.clear();
  captured.index.clear();
}

std::vector<WriteCapture::Change> WriteCapture::Changes() const {
  Captured& captured = TheCaptured();
  const std::lock_guard guard(captured.lock);
  return captured.changes;
}

}  // namespace qx
