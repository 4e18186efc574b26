#include "platform/files/Files.h"

#include <windows.h>

#include <algorithm>

#include "platform/Texts.h"
#include "platform/WindowsText.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using system::Handle;
using system::kMostAtOnce;
using system::LastError;

constexpr DWORD kPartSize = 1 << 18;
constexpr std::size_t kMostOfANote = 4096;
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

// Under the name that the file has on disk, whoever spells it otherwise: replaced, it would take on the
// spelling of the path.
std::string InItsOwnLetters(const std::string& path) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW(WidePath(path).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return path;
  FindClose(search);
  const std::string name = FromWide(found.cFileName);
  return SameText(name, FilePart(path)) ? FolderPart(path) + name : path;
}

std::string WriteTarget(const std::string& path) {
  const std::string full = InItsOwnLetters(ExpandPath("", path));
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

std::uint64_t Whole(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

std::optional<FileFacts> FactsFrom(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION about;
  if (!GetFileInformationByHandle(file, &about)) return std::nullopt;
  FileFacts facts;
  facts.mode = about.dwFileAttributes;
  facts.mayBeWritten = (about.dwFileAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) == 0;
  facts.device = about.dwVolumeSerialNumber;
  facts.number = Whole(about.nFileIndexHigh, about.nFileIndexLow);
  facts.size = Whole(about.nFileSizeHigh, about.nFileSizeLow);
  facts.time = static_cast<std::int64_t>(
      Whole(about.ftLastWriteTime.dwHighDateTime, about.ftLastWriteTime.dwLowDateTime));
  return facts;
}

Handle OpenToRead(const std::string& path, DWORD rights) {
  return Handle(CreateFileW(WidePath(path).c_str(), rights, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

}  // namespace

std::optional<FileFacts> ReadWithFacts(const std::string& path, std::string& bytes, std::string& reason) {
  const Handle file = OpenToRead(path, GENERIC_READ);
  std::optional<FileFacts> facts;
  if (file.IsOpen()) facts = FactsFrom(file.Get());
  if (facts && ReadAll(file.Get(), static_cast<std::size_t>(facts->size), bytes)) {
    facts->isFresh = true;  // the system writes times late, and in steps that each file system has of its own
    return facts;
  }
  reason = IsFolder(path) ? "it is a folder" : LastError();
  return std::nullopt;
}

bool IsStill(const std::string& path, const FileFacts& facts, std::string_view bytes) {
  const auto now = FactsOf(path);
  if (!now || now->device != facts.device || now->number != facts.number || now->size != facts.size ||
      now->time != facts.time || now->size != bytes.size()) {
    return false;
  }
  std::string again, reason;
  return !facts.isFresh || (Read(path, again, reason) && again == bytes);
}

std::optional<FileFacts> FactsOf(const std::string& path) {
  const Handle file = OpenToRead(path, FILE_READ_ATTRIBUTES);
  return file.IsOpen() ? FactsFrom(file.Get()) : std::nullopt;
}

bool Remove(const std::string& target, std::string& reason) {
  if (DeleteFileW(WidePath(target).c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND) return true;
  reason = LastError();
  return false;
}

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

std::unique_ptr<HeldLock> TakeLock(const std::string& path, const std::string& note, std::string& holder) {
  const std::wstring name = WidePath(WriteTarget(path) + ".lock");
  Handle file(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                          FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  if (!file.IsOpen()) {
    const DWORD error = GetLastError();
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
      throw FileNotLockable("Cannot lock " + path + ": " + ErrorText(error));
    const Handle held(CreateFileW(name.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!held.IsOpen() || !ReadAll(held.Get(), kMostOfANote, holder) || holder.empty()) holder = "unknown";
    return nullptr;
  }
  if (!WriteAll(file, std::to_string(GetCurrentProcessId()) + note))
    throw FileNotLockable("Cannot lock " + path + ": " + LastError());
  return std::make_unique<Lock>(file.Release());
}

}  // namespace system
}  // namespace qx
