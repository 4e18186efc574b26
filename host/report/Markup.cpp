#include "host/report/Markup.h"

#include "platform/Texts.h"
#include "platform/VisibleText.h"

namespace qx {
namespace {

constexpr char32_t kPictures = 0x2400;
constexpr char32_t kPictureOfDelete = 0x2421;

// The character in the place of one that XML or HTML does not take.
char32_t Shown(char32_t c) {
  if (c == '\n' || c == '\t') return c;
  if (c < 0x20) return kPictures + c;
  if (c == 0x7F) return kPictureOfDelete;
  // A text that turns its neighbours round would show another file's name than it holds.
  const bool isRefused =
      IsHiddenCharacter(c) || c == kNoCodePoint || IsSurrogate(c) || (c & 0xFFFE) == 0xFFFE;
  return isRefused ? 0xFFFD : c;
}

}  // namespace

std::string MarkupText(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const char32_t c = NextCodePoint(text, at);
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      case '\r':  // with the line feed behind it one line end
        if (at < text.size() && text[at] == '\n') break;
        [[fallthrough]];
      default:
        if (Shown(c) == c) {
          out += text.substr(begin, at - begin);
        } else {
          AppendUtf8(out, Shown(c));
        }
    }
  }
  return out;
}

}  // namespace qx
