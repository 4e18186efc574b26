// Puts projects into an order in which each comes after all that it needs. For solutions of any size.
#pragma once

#include <cstddef>
#include <vector>

namespace qx {

struct BuildOrder {
  // Every project once; those that need nothing of each other as they were given.
  std::vector<std::size_t> order;
  // Each circle once, as the projects along it; its last need (from the last to the first) was passed over.
  std::vector<std::vector<std::size_t>> circles;
};

// `needs[i]` lists the projects that project i needs; numbers that are no project, and i itself, do not count.
BuildOrder OrderByNeeds(const std::vector<std::vector<std::size_t>>& needs);

}  // namespace qx
