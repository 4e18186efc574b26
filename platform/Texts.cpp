#include "platform/Texts.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace qx {
namespace {

bool IsBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }
char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }
bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Capital letters of a range and how far their small letters lie. A step of 2 marks ranges in which capital
// and small letters take turns: only every second code point from the first is a capital.
struct CaseRange {
  char32_t first, last;
  char32_t distance;
  char32_t step;
};
constexpr std::array kCapitals = {
    CaseRange{0xC0, 0xD6, 32, 1},   CaseRange{0xD8, 0xDE, 32, 1},    CaseRange{0x100, 0x12E, 1, 2},
    CaseRange{0x132, 0x136, 1, 2},  CaseRange{0x139, 0x147, 1, 2},   CaseRange{0x14A, 0x176, 1, 2},
    CaseRange{0x179, 0x17D, 1, 2},  CaseRange{0x386, 0x386, 38, 1},  CaseRange{0x388, 0x38A, 37, 1},
    CaseRange{0x38C, 0x38C, 64, 1}, CaseRange{0x38E, 0x38F, 63, 1},  CaseRange{0x391, 0x3A1, 32, 1},
    CaseRange{0x3A3, 0x3AB, 32, 1}, CaseRange{0x400, 0x40F, 80, 1},  CaseRange{0x410, 0x42F, 32, 1},
    CaseRange{0x460, 0x480, 1, 2},  CaseRange{0x48A, 0x4BE, 1, 2},   CaseRange{0x4C1, 0x4CD, 1, 2},
    CaseRange{0x4D0, 0x52E, 1, 2},  CaseRange{0x1E00, 0x1E94, 1, 2}, CaseRange{0x1EA0, 0x1EFE, 1, 2},
};

char32_t Fold(char32_t c) {
  if (c < 0x80) return static_cast<unsigned char>(LowerAscii(static_cast<char>(c)));
  if (c == 0x178) return 0xFF;
  for (const CaseRange& range : kCapitals) {
    if (c < range.first) break;
    if (c <= range.last && (c - range.first) % range.step == 0) return c + range.distance;
  }
  return c;
}

// False at the first byte that has no UTF-16 form, unless `lenient`.
bool AppendUtf16(std::string_view text, bool lenient, std::u16string& out) {
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCodePoint(text, at);
    if (c == kNoCodePoint) {
      if (!lenient) return false;
      out += u'\uFFFD';
    } else if (c >= 0x10000) {
      out += static_cast<char16_t>(0xD7C0 + (c >> 10));
      out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    } else {
      out += static_cast<char16_t>(c);
    }
  }
  return true;
}

std::string HexOf(std::uint32_t number, std::size_t digits, std::string_view alphabet) {
  std::string text;
  for (; number != 0 || text.size() < digits; number /= 16) text.insert(text.begin(), alphabet[number % 16]);
  return text;
}

}  // namespace

std::string_view TrimView(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string Trim(std::string_view text) { return std::string(TrimView(text)); }

std::string LowerCase(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), LowerAscii);
  return out;
}

std::string UpperCase(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), UpperAscii);
  return out;
}

std::string FoldCase(std::string_view text) {
  if (IsAscii(text) || !IsValidUtf8(text)) return LowerCase(text);
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) AppendUtf8(out, Fold(NextCodePoint(text, at)));
  return out;
}

bool SameText(std::string_view a, std::string_view b) {
  const auto same = [](char x, char y) { return LowerAscii(x) == LowerAscii(y); };
  if (std::equal(a.begin(), a.end(), b.begin(), b.end(), same)) return true;
  return !IsAscii(a) && !IsAscii(b) && FoldCase(a) == FoldCase(b);
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  lines.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  ForEachLine(text, [&lines](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

std::string JoinLines(std::span<const std::string> lines) {
  std::string out;
  for (const std::string& line : lines) out.append(line).append("\r\n");
  return out;
}

std::string Quoted(std::string_view text) {
  std::string quoted(1, '"');
  quoted += text;
  quoted += '"';
  return quoted;
}

std::vector<std::string> SplitCommaText(std::string_view text) {
  std::vector<std::string> items;
  std::size_t at = 0;
  const auto skipBlanks = [&] {
    while (at < text.size() && IsBlank(text[at])) ++at;
  };
  const auto quoted = [&] {
    std::string item;
    for (++at; at < text.size();) {
      const std::size_t quote = std::min(text.find('"', at), text.size());
      item.append(text, at, quote - at);
      at = quote + 1;
      if (at >= text.size() || text[at] != '"') break;
      item += '"';
      ++at;
    }
    at = std::min(at, text.size());
    return item;
  };
  const auto plain = [&] {
    const std::size_t begin = at;
    while (at < text.size() && !IsBlank(text[at]) && text[at] != ',') ++at;
    return std::string(text.substr(begin, at - begin));
  };
  skipBlanks();
  while (at < text.size()) {
    items.push_back(text[at] == '"' ? quoted() : plain());
    skipBlanks();
    if (at == text.size() || text[at] != ',') continue;
    if (++at == text.size()) items.emplace_back();  // a comma at the very end opens one more, empty item
    skipBlanks();
  }
  return items;
}

std::string JoinCommaText(std::span<const std::string> items) {
  const auto tears = [](char c) { return IsBlank(c) || c == ',' || c == '"'; };
  std::string out;
  for (const std::string& item : items) {
    if (&item != items.data()) out += ',';
    // An only, empty item has to show that it is there.
    const bool quote = std::any_of(item.begin(), item.end(), tears) || (item.empty() && items.size() == 1);
    if (!quote) {
      out += item;
      continue;
    }
    out += '"';
    for (const char c : item) out.append(c == '"' ? 2 : 1, c);
    out += '"';
  }
  return out;
}

std::optional<std::int32_t> ToInteger(std::string_view text) {
  if (!text.empty() && text[0] == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text[0] == '-') return std::nullopt;
  }
  std::int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string UpperHex(std::uint32_t number, std::size_t digits) {
  return HexOf(number, digits, "0123456789ABCDEF");
}

std::string LowerHex(std::uint32_t number, std::size_t digits) {
  return HexOf(number, digits, "0123456789abcdef");
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = LowerAscii(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

void AppendUtf8(std::string& out, char32_t c) {
  const auto put = [&out](char32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (c < 0x80) return put(c);
  if (c < 0x800) {
    put(0xC0 | (c >> 6));
    return put(0x80 | (c & 0x3F));
  }
  if (c < 0x10000) {
    put(0xE0 | (c >> 12));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
  }
  put(0x80 | ((c >> 6) & 0x3F));
  put(0x80 | (c & 0x3F));
}

char32_t NextCodePoint(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) -> char32_t { return static_cast<unsigned char>(text[i]); };
  const char32_t lead = byte(at);
  const std::size_t begin = at++;
  if (lead < 0x80) return lead;
  const std::size_t size = lead >= 0xF0 && lead < 0xF8 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
  if (size == 0 || lead >= 0xF8 || begin + size > text.size()) return kNoCodePoint;
  char32_t c = lead & (0xFFu >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(begin + i) & 0xC0) != 0x80) return kNoCodePoint;
    c = (c << 6) | (byte(begin + i) & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (c < kLeast[size] || c > 0x10FFFF) return kNoCodePoint;
  at = begin + size;
  return c;
}

bool IsValidUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCodePoint(text, at);
    if (c == kNoCodePoint || IsSurrogate(c)) return false;
  }
  return true;
}

std::string AsValidUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCodePoint(text, at);
    AppendUtf8(out, c == kNoCodePoint || IsSurrogate(c) ? U'\uFFFD' : c);
  }
  return out;
}

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t c = text[at];
    const bool high = c >= 0xD800 && c <= 0xDBFF;
    if (high && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[++at] - 0xDC00u);
    }
    AppendUtf8(out, c);
  }
  return out;
}

std::optional<std::u16string> ToUtf16Strict(std::string_view text) {
  std::u16string out;
  if (!AppendUtf16(text, false, out)) return std::nullopt;
  return out;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string out;
  AppendUtf16(text, true, out);
  return out;
}

}  // namespace qx
