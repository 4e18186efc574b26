// Being told of what a thread is about to write, before any of it is written: for keeping what will be gone,
// and for what has to stand on the disk first. Writes through Files.h and FileRewrite.h are told of, copies
// kept beside a file (backups) are not.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace qx {

struct PlannedWrite {
  std::string_view path;                                   // on disk, links followed
  std::optional<std::string_view> before;                  // its bytes; none: there is no such file
  std::optional<std::span<const std::string_view>> after;  // in pieces; none: it is removed
};

class WriteObserver {
 public:
  // On the thread that writes. An exception from here goes to whoever writes, and none of it is written. What
  // the observer itself writes is not told of.
  virtual void BeforeWrites(std::span<const PlannedWrite> writes) = 0;

 protected:
  ~WriteObserver() = default;
};

// While one is alive, the observer is told of the writes of the thread that made it. One at a time.
class WritesObserved {
 public:
  explicit WritesObserved(WriteObserver& observer);
  ~WritesObserved();
  WritesObserved(const WritesObserved&) = delete;
  WritesObserved& operator=(const WritesObserved&) = delete;
};

// For whoever writes: tells this thread's observer, where there is one.
void TellObserver(std::span<const PlannedWrite> writes);

}  // namespace qx
