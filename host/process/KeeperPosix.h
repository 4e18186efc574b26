// The process that stands between the host and one child, outside Windows. It adopts whatever the child's
// processes leave behind (it is their "subreaper"), so none of them can leave the tree, by whatever forks, sessions
// and environments; and it ends them all when it is told to, or when the host is gone, however that ended.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <optional>

#include "platform/Posix.h"

namespace qx {

// What the keeper starts, as posix_spawnp takes it.
struct KeptProgram {
  const char* program;
  char* const* arguments;
  char* const* environment;
  const system::SpawnOrders& orders;
};

// Used on one thread.
class Keeper {
 public:
  // Starts the keeper and, through it, the program: an errno, 0 when it runs. Once.
  int Start(const KeptProgram& what);

  // 0 before the start.
  pid_t Pid() const { return pid_; }
  // Polls as readable when there is something to Look at.
  int Channel() const { return channel_.Number(); }
  // Takes in what the keeper told. True when the program has ended, or nobody will ever tell whether it has.
  bool Look();
  // As waitpid gives it; nothing when the keeper was killed before it could tell.
  std::optional<int> Status() const { return status_; }
  // Somebody killed the keeper.
  bool IsLost() const { return closed_ && !status_; }

  // Makes it end everything it keeps, and itself when nothing is left.
  void KillAll();
  // Lets what is left of the tree live on; waits for the keeper's end.
  void Release();
  // True when the keeper has ended and was waited for.
  bool IsGone();

 private:
  void Tell(char order);

  pid_t pid_ = 0;
  system::Descriptor channel_;
  std::optional<int> status_;
  bool closed_ = false;
  bool gone_ = false;
};

}  // namespace qx
