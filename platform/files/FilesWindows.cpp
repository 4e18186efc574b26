#include "platform/files/Files.h"

#include <windows.h>

#include <atomic>

#include "platform/WindowsText.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using system::Handle;
using system::LastError;

// Calls of the system move at most 4 GB at once; 64 MB leaves no doubt.
constexpr std::size_t kMostAtOnce = 1 << 26;
constexpr DWORD kPartSize = 1 << 18;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool ReadAll(HANDLE file, std::size_t size, std::string& bytes) {
  bytes.resize(size);
  std::size_t used = 0;
  while (used < size) {
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(size - used, kMostAtOnce));
    if (!::ReadFile(file, bytes.data() + used, wanted, &count, nullptr)) return false;
    if (count == 0) break;  // it shrank meanwhile
    used += count;
  }
  bytes.resize(used);
  return true;
}

bool WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (!::WriteFile(file, bytes.data(), wanted, &count, nullptr)) return false;
    bytes.remove_prefix(count);
  }
  return true;
}

std::wstring BesideName(const std::string& target) {
  static std::atomic<unsigned> counter{0};  // no two names of this process are the same
  return system::WidePath(target + "." + std::to_string(GetCurrentProcessId()) + "-" +
                          std::to_string(counter++) + ".tmp");
}

}  // namespace

namespace system {

bool Read(const std::string& path, std::string& bytes, std::string& reason) {
  const Handle file(CreateFileW(WidePath(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size;
  if (file.IsOpen() && GetFileSizeEx(file.Get(), &size) &&
      ReadAll(file.Get(), static_cast<std::size_t>(size.QuadPart), bytes)) {
    return true;
  }
  reason = IsFolder(path) ? "it is a folder" : LastError();
  return false;
}

bool ReadParts(const std::string& path, std::string& buffer,
               const std::function<bool(std::string_view)>& take) {
  const Handle file(CreateFileW(WidePath(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  buffer.resize(kPartSize);
  DWORD count = 0;
  while (file.IsOpen() && ::ReadFile(file.Get(), buffer.data(), kPartSize, &count, nullptr)) {
    if (count == 0 || take(std::string_view(buffer).substr(0, count))) return true;
  }
  return false;
}

std::string WriteTarget(const std::string& path) {
  const std::string full = ExpandPath("", path);
  const DWORD attributes = GetFileAttributesW(WidePath(full).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return full;
  const Handle file(CreateFileW(WidePath(full).c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  std::wstring real(32768, L'\0');
  if (!file.IsOpen()) return full;
  real.resize(GetFinalPathNameByHandleW(file.Get(), real.data(), static_cast<DWORD>(real.size()), 0));
  return real.empty() ? full : FromWide(real);
}

std::string WhyNotWritable(const std::string& target) {
  const DWORD attributes = GetFileAttributesW(WidePath(target).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return "";
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return "it is a folder";
  return (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? "the file is read-only" : "";
}

// Leave to make files is a matter of access lists that only the attempt answers.
std::string WhyNothingCanBeMadeIn(const std::string&) { return ""; }

namespace {

// Whether another program keeps the file from being replaced; asked first, because a replacement that breaks
// off may leave a file of the system's own behind.
bool IsHeld(const std::wstring& name) {
  const Handle file(
      CreateFileW(name.c_str(), GENERIC_READ | DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  return !file.IsOpen() && GetLastError() == ERROR_SHARING_VIOLATION;
}

}  // namespace

bool Replace(const std::string& target, std::span<const std::string_view> pieces, const std::string& model,
             std::string& reason) {
  const std::wstring name = BesideName(target);
  const std::wstring wide = WidePath(target);
  const DWORD old = GetFileAttributesW((model.empty() ? wide : WidePath(model)).c_str());
  const DWORD kept = old == INVALID_FILE_ATTRIBUTES
                         ? FILE_ATTRIBUTE_NORMAL
                         : old & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE);
  if (IsHeld(wide)) {
    reason = ErrorText(ERROR_SHARING_VIOLATION);
    return false;
  }
  Handle file(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, kept, nullptr));
  if (!file.IsOpen()) {
    reason = LastError();
    return false;
  }
  bool done = true;
  for (const std::string_view piece : pieces) done = done && WriteAll(file.Get(), piece);
  done = done && FlushFileBuffers(file.Get()) && file.Close();
  if (done) {
    // The first keeps the old file's access list; it does not make new files.
    const bool exists = GetFileAttributesW(wide.c_str()) != INVALID_FILE_ATTRIBUTES;
    done = (exists && ReplaceFileW(wide.c_str(), name.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                                   nullptr, nullptr)) ||
           MoveFileExW(name.c_str(), wide.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  }
  if (done) return true;
  reason = LastError();
  file.Close();
  DeleteFileW(name.c_str());
  return false;
}

bool Remove(const std::string& target, std::string& reason) {
  if (DeleteFileW(WidePath(target).c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND) return true;
  reason = LastError();
  return false;
}

std::optional<FileFacts> ReadWithFacts(const std::string&, std::string&) { return std::nullopt; }
bool ReplaceByFacts(const std::string& target, std::span<const std::string_view> pieces, const FileFacts&,
                    bool, std::string& reason) {
  return Replace(target, pieces, "", reason);
}

// ReplaceFileW carries the old file's identity over to the new one: a second name would show the new bytes.
bool AddName(const std::string&, const std::string&) { return false; }

bool MakeFolder(const std::string& path, std::string& reason) {
  if (CreateDirectoryW(WidePath(path).c_str(), nullptr) || IsFolder(path)) return true;
  reason = LastError();
  return false;
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(WidePath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::optional<std::int64_t> TimeWritten(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(WidePath(path).c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
  ULARGE_INTEGER time;
  time.LowPart = data.ftLastWriteTime.dwLowDateTime;
  time.HighPart = data.ftLastWriteTime.dwHighDateTime;
  return static_cast<std::int64_t>(time.QuadPart);
}

namespace {

class Lock final : public HeldLock {
 public:
  explicit Lock(HANDLE handle) : file_(handle) {}

 private:
  Handle file_;
};

}  // namespace

std::unique_ptr<HeldLock> TakeLock(const std::string& path, std::string& holder) {
  const std::wstring name = WidePath(WriteTarget(path) + ".lock");
  Handle file(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                          FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  if (!file.IsOpen()) {
    const DWORD error = GetLastError();
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
      throw FileNotLockable("Cannot lock " + path + ": " + ErrorText(error));
    const Handle held(CreateFileW(name.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!held.IsOpen() || !ReadAll(held.Get(), 32, holder) || holder.empty()) holder = "unknown";
    return nullptr;
  }
  if (!WriteAll(file.Get(), std::to_string(GetCurrentProcessId())))
    throw FileNotLockable("Cannot lock " + path + ": " + LastError());
  return std::make_unique<Lock>(file.Release());
}

}  // namespace system
}  // namespace qx
