// Finds every process that came from one child, outside Windows. A process belongs to the tree when one of
// these holds: it is the child; its parent belongs; it is in the session that the child leads; it was started
// with the tree's mark among its environment variables. The first three lose a grandchild that made its own
// session and whose parent has ended (a daemon); the mark is inherited by that one too. Only a process that
// leaves its session, its parents and its environment behind escapes.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace qx {

// The environment variable that carries the marks; a child of a child of ours carries both.
inline constexpr char kTreeMarkVariable[] = "QXHOST_PROCESS_TREE";

// A mark that no other tree on this machine has.
std::string MakeTreeMark();

// The members of the tree that still run; those that have ended and only wait to be reaped do not count.
// Looked up in /proc, empty where there is none. `root` must not have been reaped, so that its number still
// means it.
std::vector<pid_t> LivingTree(pid_t root, const std::string& mark);

}  // namespace qx
