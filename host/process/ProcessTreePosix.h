// Finds processes by their descent, outside Windows. A child's processes cannot leave the descent of its keeper
// (KeeperPosix.h); should that be killed, they come to the host, in other sessions than the host's own.
#pragma once

#include <sys/types.h>

#include <vector>

namespace qx {

// The processes below one, to any depth, that still run; those that have ended and only wait to be reaped do not
// count. Looked up in /proc, empty where there is none.
std::vector<pid_t> Descendants(pid_t root);

// Processes below this one that came from a child whose keeper is gone: a child begins with a session of its own,
// and no session can be entered again. What others start here stays in the host's session.
std::vector<pid_t> Strays();

}  // namespace qx
