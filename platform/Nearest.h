// Finds the name that somebody probably meant, for the advice in complaints.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// The candidate with the fewest edits (insert, delete, replace, swap of neighbours; letter case aside) from
// the name, the first of equals; empty when there is no candidate.
std::string_view NearestName(std::string_view name, std::span<const std::string_view> candidates);
std::string NearestName(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace qx
