#include "engine/vc/OldLiterals.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace qx {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }
bool IsHexadecimal(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

struct Suffix {
  std::string_view old, now;
};
// In small letters; the longer ones first.
constexpr std::array kSuffixes = {Suffix{"ui64", "ULL"}, Suffix{"ui32", "U"}, Suffix{"ui16", "U"},
                                  Suffix{"ui8", "U"},    Suffix{"i64", "LL"}, Suffix{"i32", ""},
                                  Suffix{"i16", ""},     Suffix{"i8", ""}};

// The end of the string, character or comment that begins at `at`; `at` itself where none does.
std::size_t EndOfQuoted(std::string_view text, std::size_t at) {
  const char c = text[at];
  const char next = at + 1 < text.size() ? text[at + 1] : '\0';
  if (c == '/' && next == '/') return std::min(text.find('\n', at), text.size());
  if (c == '/' && next == '*') {
    const std::size_t end = text.find("*/", at + 2);
    return end == std::string_view::npos ? text.size() : end + 2;
  }
  if (c != '"' && c != '\'') return at;
  for (std::size_t end = at + 1; end < text.size() && text[end] != '\n'; ++end) {
    if (text[end] == c) return end + 1;
    if (text[end] == '\\') ++end;
  }
  return std::min(text.find('\n', at), text.size());
}

bool EndsIn(std::string_view word, std::string_view suffix) {
  if (word.size() <= suffix.size()) return false;
  for (std::size_t i = 0; i < suffix.size(); ++i) {
    const auto c = static_cast<unsigned char>(word[word.size() - suffix.size() + i]);
    if (std::tolower(c) != suffix[i]) return false;
  }
  return IsHexadecimal(word[word.size() - suffix.size() - 1]);
}

void AppendNumber(std::string& out, std::string_view word) {
  for (const Suffix& suffix : kSuffixes) {
    if (!EndsIn(word, suffix.old)) continue;
    (out += word.substr(0, word.size() - suffix.old.size())) += suffix.now;
    return;
  }
  out += word;
}

}  // namespace

bool MayHoldOldLiteral(std::string_view line) {
  for (std::size_t at = line.find("64"); at != std::string_view::npos; at = line.find("64", at + 1)) {
    if (at < 2 || (line[at - 1] != 'i' && line[at - 1] != 'I')) continue;
    const char before =
        line[at - 2] == 'u' || line[at - 2] == 'U' ? (at > 2 ? line[at - 3] : ' ') : line[at - 2];
    if (IsHexadecimal(before)) return true;
  }
  return false;
}

std::string WithNewLiterals(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = EndOfQuoted(text, at);
    if (end == at && IsWord(text[at])) {
      while (end < text.size() && IsWord(text[end])) ++end;
      const std::string_view word = text.substr(at, end - at);
      if (IsDigit(word[0])) {
        AppendNumber(out, word);
      } else {
        out += word;
      }
    } else {
      end = std::max(end, at + 1);
      out += text.substr(at, end - at);
    }
    at = end;
  }
  return out;
}

}  // namespace qx
