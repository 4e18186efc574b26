#include "host/report/Markup.h"

#include "platform/MarkupEntity.h"
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
    const std::string_view entity = c < 0x80 ? MarkupEntity(static_cast<char>(c)) : "";
    const bool endsLine = c == '\r' && at < text.size() && text[at] == '\n';
    if (endsLine) continue;  // with the line feed behind it one line end
    if (!entity.empty()) {
      out += entity;
    } else if (c == '\'') {
      out += "&#39;";
    } else if (Shown(c) == c) {
      out += text.substr(begin, at - begin);
    } else {
      AppendUtf8(out, Shown(c));
    }
  }
  return out;
}

}  // namespace qx
