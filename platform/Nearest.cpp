// Edit distance over short names.
#include "platform/Nearest.h"

#include <algorithm>
#include <limits>

#include "platform/Texts.h"

namespace qx {
namespace {

// The restricted edit distance of Damerau and Levenshtein, over three rows.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replace = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({row[j - 1] + 1, last[j] + 1, replace});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    std::swap(before, last);
    std::swap(last, row);
  }
  return last[b.size()];
}

}  // namespace

std::string_view NearestName(std::string_view name, std::span<const std::string_view> candidates) {
  // Names are short; of a text that is none, the beginning decides.
  const std::string wanted = FoldCase(name.substr(0, 256));
  std::string_view nearest;
  std::size_t fewest = std::numeric_limits<std::size_t>::max();
  for (const std::string_view candidate : candidates) {
    const std::size_t distance = Distance(wanted, FoldCase(candidate));
    if (distance >= fewest) continue;
    fewest = distance;
    nearest = candidate;
  }
  return nearest;
}

std::string NearestName(std::string_view name, const std::vector<std::string>& candidates) {
  const std::vector<std::string_view> views(candidates.begin(), candidates.end());
  return std::string(NearestName(name, std::span<const std::string_view>(views)));
}

}  // namespace qx
