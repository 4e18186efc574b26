#include "host/system/SecretWords.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "host/system/LockedText.h"

namespace qx {
namespace {

struct Words {
  std::mutex mutex;
  std::vector<LockedText> all;
};

// Output is cut on threads that know no log: what may not be divided is known to the process.
Words& TheWords() {
  static Words words;
  return words;
}

// Where a word begins that the cut divides; the cut where there is none.
std::size_t BeginOfDivided(std::string_view text, std::size_t cut, std::string_view word) {
  if (word.size() < 2) return cut;
  const std::size_t from = cut - std::min(cut, word.size() - 1);
  const std::string_view around = text.substr(0, std::min(text.size(), cut + word.size() - 1));
  const std::size_t found = around.find(word, from);
  return found == std::string_view::npos ? cut : std::min(found, cut);
}

}  // namespace

void NeverDivide(std::string_view secret) {
  Words& words = TheWords();
  const std::lock_guard guard(words.mutex);
  const auto is = [&](const LockedText& one) { return one.View() == secret; };
  if (std::none_of(words.all.begin(), words.all.end(), is)) words.all.emplace_back(secret);
}

std::size_t LongestSecret() {
  Words& words = TheWords();
  const std::lock_guard guard(words.mutex);
  std::size_t longest = 0;
  for (const LockedText& word : words.all) longest = std::max(longest, word.View().size());
  return longest;
}

std::size_t CutBetweenSecrets(std::string_view text, std::size_t cut) {
  Words& words = TheWords();
  const std::lock_guard guard(words.mutex);
  for (std::size_t before = cut + 1; before != cut;) {
    before = cut;
    for (const LockedText& word : words.all) cut = std::min(cut, BeginOfDivided(text, cut, word.View()));
  }
  return cut;
}

}  // namespace qx
