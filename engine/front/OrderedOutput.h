// What projects print that are built at the same time: whole and in the order of building. Lines of the first one that
// has not ended are printed as they come, those of the others are kept until it is their turn.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Console.h"

namespace qx {

// Any thread; each part on one thread at a time.
class OrderedOutput {
 public:
  OrderedOutput(Console& target, std::size_t projects);

  // What a project prints through; its counts are the project's own.
  Console& Of(std::size_t project) { return parts_[project]; }
  // It prints no more.
  void End(std::size_t project);

 private:
  struct Part final : Console {
    Part(OrderedOutput& theOwner, std::size_t theNumber) : owner(theOwner), number(theNumber) {}
    void Write(std::string_view line) override { owner.Write(*this, line); }

    OrderedOutput& owner;
    const std::size_t number;
    std::vector<std::string> kept;
    bool hasEnded = false;
  };
  void Write(Part& part, std::string_view line);

  Console& target_;
  std::mutex mutex_;
  std::deque<Part> parts_;  // they stay where they are
  std::size_t first_ = 0;   // that has not ended
};

}  // namespace qx
