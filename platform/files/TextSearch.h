// Looks for a word in a text file that comes in parts, so that a large file is read only as far as the word.
// Takes the file's encoding from its mark, as DecodeText does.
#pragma once

#include <string>
#include <string_view>

namespace qx {

class TextSearch {
 public:
  // The word: ASCII, not empty.
  explicit TextSearch(std::string_view word);

  // Takes the file's next bytes; whether the word has been seen by now.
  bool Take(std::string_view part);
  bool Found() const { return found_; }

 private:
  void Begin();
  bool Find(std::string_view bytes, std::size_t offset);

  std::string word_;       // as it stands in the file
  bool isWide_ = false;    // UTF-16: words begin at even offsets
  bool hasBegun_ = false;  // the mark has been looked for
  bool found_ = false;
  std::string tail_;       // the end of what was taken: too short for the word
  std::size_t taken_ = 0;  // bytes of the file before the tail
};

}  // namespace qx
