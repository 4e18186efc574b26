#include "platform/files/TextSearch.h"

#include <algorithm>

#include "platform/files/TextFile.h"

namespace qx {

TextSearch::TextSearch(std::string_view word) : word_(word) {}

// The longest mark that changes how the word is written has two bytes.
void TextSearch::Begin() {
  const TextEncoding encoding = EncodingOf(tail_);
  hasBegun_ = true;
  isWide_ = encoding == TextEncoding::Utf16LittleEnd || encoding == TextEncoding::Utf16BigEnd;
  if (!isWide_) return;
  std::string wide;
  for (const char c : word_) {
    wide += encoding == TextEncoding::Utf16BigEnd ? std::string{'\0', c} : std::string{c, '\0'};
  }
  word_ = std::move(wide);
}

bool TextSearch::Find(std::string_view bytes, std::size_t offset) {
  for (std::size_t at = bytes.find(word_); at != std::string_view::npos; at = bytes.find(word_, at + 1)) {
    if (!isWide_ || (offset + at) % 2 == 0) return true;
  }
  return false;
}

bool TextSearch::Take(std::string_view part) {
  if (found_) return true;
  if (!hasBegun_) {
    const std::size_t missing = std::min(part.size(), std::max<std::size_t>(tail_.size(), 2) - tail_.size());
    tail_ += part.substr(0, missing);
    part.remove_prefix(missing);
    if (tail_.size() < 2) return false;
    Begin();
  }
  // A word that began in the tail ends within the part's first bytes; any other lies in the part.
  const std::size_t overlap = word_.size() - 1;
  const std::string seam = tail_ + std::string(part.substr(0, overlap));
  found_ = Find(seam, taken_) || Find(part, taken_ + tail_.size());
  const std::string_view rest = part.size() < overlap ? std::string_view(seam) : part;
  const std::size_t kept = std::min(rest.size(), overlap);
  taken_ += tail_.size() + part.size() - kept;
  tail_ = rest.substr(rest.size() - kept);
  return found_;
}

}  // namespace qx
