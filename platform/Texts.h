// Small work on 8-bit texts: letter case, lines, joining, comma-text, numbers, UTF-8, and the way to UTF-16
// and back. Texts are UTF-8 where they say so and plain bytes otherwise; nothing here depends on the system's locale.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Lines.h"

namespace qx {

// Without the blanks and control characters (everything up to the blank) around it.
std::string_view TrimView(std::string_view text);
std::string Trim(std::string_view text);

// ASCII letters only; every other byte stays.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

// The text in the form by which texts that differ in letter case only are equal: ASCII letters in lower case
// and, when the text is UTF-8, Latin, Greek and Cyrillic letters too.
std::string FoldCase(std::string_view text);
bool SameText(std::string_view a, std::string_view b);

// The lines as platform/Lines.h divides them.
std::vector<std::string> SplitLines(std::string_view text);
// Every line followed by CR LF, the last one too.
std::string JoinLines(std::span<const std::string> lines);

// The texts (anything that holds strings or views) with the separator between them.
template <class Texts>
std::string Join(const Texts& texts, std::string_view separator);
// Between double quotes; nothing inside is escaped.
std::string Quoted(std::string_view text);

// Items separated by commas or by blanks outside double quotes; a quoted item may hold both, and a doubled
// double quote inside it stands for one. A quote that is never closed holds the rest.
std::vector<std::string> SplitCommaText(std::string_view text);
// The other way; items are quoted where splitting would otherwise tear them.
std::string JoinCommaText(std::span<const std::string> items);

// A decimal number with an optional sign and nothing around it, from -2147483648 to 2147483647.
std::optional<std::int32_t> ToInteger(std::string_view text);

// A number in hexadecimal digits, with zeros before it where it has fewer than `digits`.
std::string UpperHex(std::uint32_t number, std::size_t digits);
std::string LowerHex(std::uint32_t number, std::size_t digits);
// What a hexadecimal digit of either letter case stands for; -1 for any other character.
int HexDigit(char c);

// The code point at a place in UTF-8, which is moved past it; kNoCodePoint, and the place moved by one byte,
// where none stands. Surrogates pass in their three-byte form: the caller says whether it takes them.
// Precondition: at < text.size().
char32_t NextCodePoint(std::string_view text, std::size_t& at);
inline constexpr char32_t kNoCodePoint = 0xFFFFFFFF;
constexpr bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }
void AppendUtf8(std::string& out, char32_t c);
// Whether a byte of UTF-8 is the first of a character's: a text may be cut before it.
constexpr bool BeginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

bool IsValidUtf8(std::string_view text);
// With U+FFFD in the place of every byte that is not part of UTF-8 (of every lone surrogate, too).
std::string AsValidUtf8(std::string_view text);
// UTF-16 to 8-bit: UTF-8, a lone surrogate in its three-byte form, so that every text comes back.
std::string ToUtf8(std::u16string_view text);
// The way back. `strict` gives nothing for bytes that are neither UTF-8 nor such a surrogate; the lenient
// form puts U+FFFD in the place of each.
std::optional<std::u16string> ToUtf16Strict(std::string_view text);
std::u16string ToUtf16(std::string_view text);

template <class Texts>
std::string Join(const Texts& texts, std::string_view separator) {
  std::string joined;
  bool isFirst = true;
  for (const std::string_view text : texts) {
    if (!isFirst) joined += separator;
    joined += text;
    isFirst = false;
  }
  return joined;
}

}  // namespace qx
