// Finds the name that somebody probably meant, for the advice in complaints.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// The candidate that is near the name, letter case aside: the only one that begins with it, else the one with
// the fewest slips (insert, delete, replace, swap of neighbours), of which it may have one, or two when no
// other candidate has as few. Empty when none is near.
std::string_view NearestName(std::string_view name, std::span<const std::string_view> candidates);
std::string NearestName(std::string_view name, const std::vector<std::string>& candidates);

// What a complaint about an unknown name says of the valid ones: a short list of them whole, and which of them
// is near. "; supported: red, green (nearest: green)"; empty where there is nothing to say.
std::string NameAdvice(std::string_view name, std::span<const std::string_view> candidates);
std::string NameAdvice(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace qx
