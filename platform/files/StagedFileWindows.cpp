// The bytes go into a file beside the target that nobody else can open; a name that can be taken away belongs to
// nobody.
#include "platform/files/StagedFile.h"

#include <windows.h>

#include <atomic>
#include <utility>

#include "platform/WindowsText.h"
#include "platform/files/FilesSystem.h"
#include "platform/files/Paths.h"

namespace qx::system {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kKeptAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

std::wstring HiddenName(const std::string& target) {
  return WidePath(FolderPart(target) + "." + FilePart(target) + ".tmp");
}

// For a target that another process writes to at this moment.
std::wstring OwnName(const std::string& target) {
  static std::atomic<unsigned> counter{0};  // no two names of this process are the same
  return WidePath(target + "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(counter++) +
                  ".tmp");
}

// Whether another program keeps the file from being replaced; asked first, because a replacement that breaks
// off may leave a file of the system's own behind.
bool IsHeld(const std::wstring& name) {
  const Handle file(
      CreateFileW(name.c_str(), GENERIC_READ | DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  return !file.IsOpen() && GetLastError() == ERROR_SHARING_VIOLATION;
}

class WindowsFile final : public StagedFile {
 public:
  WindowsFile(Handle file, std::wstring name, std::wstring target)
      : file_(std::move(file)), name_(std::move(name)), target_(std::move(target)) {}
  ~WindowsFile() override {
    file_.Close();
    if (!name_.empty()) DeleteFileW(name_.c_str());
  }
  const Handle& Get() const { return file_; }

  bool Flush(std::string& reason) override {
    if (FlushFileBuffers(file_.Get())) return true;
    reason = LastError();
    return false;
  }

  bool Place(std::string& reason) override {
    if (IsHeld(target_)) {
      reason = ErrorText(ERROR_SHARING_VIOLATION);
      return false;
    }
    // The first keeps the old file's access list; it does not make new files.
    const bool exists = GetFileAttributesW(target_.c_str()) != INVALID_FILE_ATTRIBUTES;
    const bool done =
        file_.Close() &&
        ((exists && ReplaceFileW(target_.c_str(), name_.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                                 nullptr, nullptr)) ||
         MoveFileExW(name_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
    if (done)
      name_.clear();
    else
      reason = LastError();
    return done;
  }

 private:
  Handle file_;
  std::wstring name_, target_;
};

}  // namespace

std::unique_ptr<StagedFile> Stage(const std::string& target, std::span<const std::string_view> pieces,
                                  const FileFacts* model, bool, std::string& reason) {
  RemoveLeftover(target);
  const DWORD kept = model == nullptr ? FILE_ATTRIBUTE_NORMAL : model->mode & kKeptAttributes;
  std::wstring name = HiddenName(target);
  Handle made(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, kept, nullptr));
  if (!made.IsOpen() && (GetLastError() == ERROR_FILE_EXISTS || GetLastError() == ERROR_ACCESS_DENIED)) {
    name = OwnName(target);
    made = Handle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, kept, nullptr));
  }
  if (!made.IsOpen()) {
    reason = LastError();
    return nullptr;
  }
  auto file = std::make_unique<WindowsFile>(std::move(made), std::move(name), WidePath(target));
  for (const std::string_view piece : pieces) {
    if (WriteAll(file->Get(), piece)) continue;
    reason = LastError();
    return nullptr;
  }
  return file;
}

// It takes an administrator to flush a volume.
bool FlushTogether(std::span<StagedFile* const>) { return false; }

void RemoveLeftover(const std::string& target) { DeleteFileW(HiddenName(target).c_str()); }

}  // namespace qx::system
