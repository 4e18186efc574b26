#include "engine/Turns.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <thread>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// Ninja's own guess: a few more than there are processors, for now and then one waits for a disk.
int UsualCount() {
  const int processors = static_cast<int>(std::thread::hardware_concurrency());
  return processors < 2 ? 2 : processors + (processors == 2 ? 1 : 2);
}

// Out of the way of the numbers that the ends have in a child.
system::Descriptor Moved(int number) {
  const system::Descriptor old(number);
  system::Descriptor moved(fcntl(number, F_DUPFD_CLOEXEC, kGiveTurnBack + 1));
  if (!moved.IsOpen()) throw Exception("cannot make a pipe: " + system::LastError());
  return moved;
}

}  // namespace

Turns::Turns(int count) : count_(count > 0 ? count : UsualCount()) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw Exception("cannot make a pipe: " + system::LastError());
  readEnd_ = Moved(ends[0]);
  writeEnd_ = Moved(ends[1]);
  const std::string lines(static_cast<std::size_t>(count_), '\n');
  if (write(WriteEnd(), lines.data(), lines.size()) != static_cast<ssize_t>(lines.size())) {
    throw Exception("cannot write into a pipe: " + system::LastError());
  }
}

}  // namespace qx
