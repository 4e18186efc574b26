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

// Names of which the only one that begins so is meant, from this length on.
constexpr std::size_t kShortestBeginning = 2;
// One slip in a name this short makes another name of it.
constexpr std::size_t kTooShortForTwoSlips = 4;
// Of more names a list says nothing.
constexpr std::size_t kShortList = 8;

std::string_view OnlyOneBeginning(std::string_view wanted, std::span<const std::string_view> candidates) {
  if (wanted.size() < kShortestBeginning) return {};
  std::string_view found;
  for (const std::string_view candidate : candidates) {
    if (!FoldCase(candidate).starts_with(wanted)) continue;
    if (!found.empty()) return {};
    found = candidate;
  }
  return found;
}

std::vector<std::string_view> ViewsOf(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

}  // namespace

std::string_view NearestName(std::string_view name, std::span<const std::string_view> candidates) {
  // Names are short; of a text that is none, the beginning decides.
  const std::string wanted = FoldCase(name.substr(0, 256));
  if (const std::string_view begun = OnlyOneBeginning(wanted, candidates); !begun.empty()) return begun;
  std::string_view nearest;
  std::size_t fewest = wanted.size() > kTooShortForTwoSlips ? 3 : 2;
  bool isAlone = true;
  for (const std::string_view candidate : candidates) {
    const std::size_t distance = Distance(wanted, FoldCase(candidate));
    if (distance > fewest || distance >= candidate.size()) continue;
    isAlone = distance < fewest;
    if (!isAlone) continue;
    fewest = distance;
    nearest = candidate;
  }
  return fewest == 2 && !isAlone ? std::string_view() : nearest;
}

std::string NearestName(std::string_view name, const std::vector<std::string>& candidates) {
  return std::string(NearestName(name, std::span<const std::string_view>(ViewsOf(candidates))));
}

std::string NameAdvice(std::string_view name, std::span<const std::string_view> candidates) {
  std::string advice;
  if (!candidates.empty() && candidates.size() <= kShortList)
    advice = "; supported: " + Join(candidates, ", ");
  const std::string_view nearest = NearestName(name, candidates);
  return nearest.empty() ? advice : advice + " (nearest: " + std::string(nearest) + ")";
}

std::string NameAdvice(std::string_view name, const std::vector<std::string>& candidates) {
  return NameAdvice(name, std::span<const std::string_view>(ViewsOf(candidates)));
}

}  // namespace qx
