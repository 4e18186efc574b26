// How many compilers work at a time, whatever number of projects is being built: as many as there are turns. Every
// command that Ninja runs for the engine takes one first and gives it back when it has ended (NinjaFile::Rule).
#pragma once

#include "platform/Posix.h"

namespace qx {

// What the commands know of it: a variable that is set where there are turns to take, and the two ends of the pipe by
// the numbers that they have in every process that RunChild starts.
inline constexpr const char* kTurnsVariable = "QX_TURNS";
inline constexpr int kTakeTurn = 8;
inline constexpr int kGiveTurnBack = 9;

// A pipe that holds an empty line for each turn. Any thread.
class Turns {
 public:
  // 0: as many as Ninja would start by itself. Raises Exception where the system refuses.
  explicit Turns(int count);

  int Count() const { return count_; }
  int ReadEnd() const { return readEnd_.Number(); }
  int WriteEnd() const { return writeEnd_.Number(); }

 private:
  int count_;
  system::Descriptor readEnd_, writeEnd_;
};

}  // namespace qx
