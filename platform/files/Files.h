// Reading, replacing and locking files, so that no file is ever left half-written. Paths are UTF-8 with either
// delimiter (Paths.h says how they are found); bytes that are not UTF-8 are taken in the system's code page on
// Windows and as they stand elsewhere. Failures raise Exception with the file's name and the system's reason.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxtypes.h"

// Where the system's own header came first and made a macro of the name.
#ifdef ReplaceFile
#undef ReplaceFile
#endif

namespace qx {
namespace system {
class HeldLock;
struct CapturedWrites;
}  // namespace system

// The whole file. Raises "Cannot read FILE: REASON".
std::string ReadFile(const std::string& path);
// For many files at once: reads the file of exactly that name, in native delimiters, into a buffer that keeps
// its memory; false, with the reason in `*reason` when that is given, where it cannot.
bool TryReadFile(const std::string& path, std::string& bytes, std::string* reason = nullptr);

// For a look into large files: hands the bytes of such a file over part by part, through a buffer that keeps
// its memory, until `take` answers true or the file ends; false where it cannot.
using TakePart = std::function<bool(std::string_view part)>;
bool TryReadParts(const std::string& path, std::string& buffer, const TakePart& take);

// False for a folder, and for what cannot be looked at.
bool FileExists(const std::string& path);
bool FolderExists(const std::string& path);
// When the file was last written, on the system's own scale: to be compared with other files' times. None where
// it cannot be looked at.
std::optional<std::int64_t> TimeWritten(const std::string& path);
// Whether both names lead to one and the same file, through links and in whatever spelling. False where either
// is not there.
bool AreSameFile(const std::string& one, const std::string& other);
// The path on disk with links followed, of a file or folder that is there; else as far as it is.
std::string RealPath(const std::string& path);
// Makes the folder and those above it. Raises "Cannot create folder FOLDER: REASON".
void CreateFolders(const std::string& path);

// Puts a file of these bytes in the place of the old one, or makes it: written beside it, flushed to the
// disk, renamed over it. The old one's mode is kept and a link is followed to its target. A file that holds
// these bytes already is left alone, its time too. Raises "Cannot write FILE: REASON"; a read-only file is
// such a reason.
void ReplaceFile(const std::string& path, std::string_view bytes);
// A copy of the file under another name, whole or not at all, over what was there before, with the mode of
// the original. Raises as ReadFile and ReplaceFile do.
void CopyFileAside(const std::string& from, const std::string& to);
// Raises "Cannot remove FILE: REASON"; a file that is not there is no error.
void RemoveFile(const std::string& path);

// Takes away what a killed process left beside the file while it wrote to it.
void RemoveLeftover(const std::string& path);

// "FILE is in use by process N": another holds the lock. Trying again may help.
class QX_API FileInUse final : public Exception {
 public:
  using Exception::Exception;
  ~FileInUse() override;
};

// "Cannot lock FILE: REASON": nobody can have the lock, where nothing may be written for example.
class QX_API FileNotLockable final : public Exception {
 public:
  using Exception::Exception;
  ~FileNotLockable() override;
};

// Holds the right to change a file against other processes and other locks of this one, through a file named
// FILE.lock beside it that goes away with the lock, on Windows with the process too; elsewhere what a killed
// process left is the next one's.
class FileLock {
 public:
  // How a lock is spoken of.
  struct Words {
    std::string what;  // in complaints, in the place of the file; empty: the file
    std::string note;  // behind the process's number in the complaints of others
  };
  // Waits for another holder for as long as `patience`. Raises FileInUse when it still holds the lock then,
  // FileNotLockable when the lock cannot be had at all.
  explicit FileLock(const std::string& path, std::chrono::milliseconds patience = {});
  FileLock(const std::string& path, std::chrono::milliseconds patience, const Words& words);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  std::unique_ptr<system::HeldLock> held_;
};

// While one is alive, ReplaceFile, CopyFileAside and RemoveFile change nothing on disk on the thread that
// made it: they record here, and ReadFile and FileExists see what was recorded. For dry runs. Whatever other
// threads write goes to the disk as ever, unless they join.
class WriteCapture {
 public:
  // One file that would have changed, by its path on disk.
  struct Change {
    std::string path;
    std::optional<std::string> bytes;  // none: removed
  };

  // Raises Exception when this thread's writes are captured already. Ends on the same thread.
  WriteCapture();
  ~WriteCapture();
  WriteCapture(const WriteCapture&) = delete;
  WriteCapture& operator=(const WriteCapture&) = delete;

  // While one is alive, its thread's writes are recorded by the capture too, which outlives it.
  class Joined {
   public:
    explicit Joined(const WriteCapture& capture);
    ~Joined();
    Joined(const Joined&) = delete;
    Joined& operator=(const Joined&) = delete;
  };

  // The last state of each file that was touched, in the order of first touch. Any thread.
  std::vector<Change> Changes() const;

 private:
  std::unique_ptr<system::CapturedWrites> captured_;
};

// Whether this thread's writes are captured.
bool WritesAreCaptured();

}  // namespace qx
