// Small work on 8-bit texts: trimming, letter case, lines, comma-text, numbers, and the way to UTF-16 and
// back. Texts are UTF-8 where they say so and plain bytes otherwise; nothing here depends on the system's
// locale.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

// Splits at CR LF, CR or LF; a text that ends in a line end gives no further empty line.
std::vector<std::string> SplitLines(std::string_view text);
// Calls line(std::string_view) for each such line without copying it.
template <class Receiver>
void ForEachLine(std::string_view text, Receiver&& line);
// Every line followed by CR LF, the last one too.
std::string JoinLines(std::span<const std::string> lines);

// Items separated by commas or by blanks outside double quotes; a quoted item may hold both, and a doubled
// double quote inside it stands for one. A quote that is never closed holds the rest.
std::vector<std::string> SplitCommaText(std::string_view text);
// The other way; items are quoted where splitting would otherwise tear them.
std::string JoinCommaText(std::span<const std::string> items);

// A decimal number with an optional sign and nothing around it, from -2147483648 to 2147483647.
std::optional<std::int32_t> ToInteger(std::string_view text);

bool IsValidUtf8(std::string_view text);
// With U+FFFD in the place of every byte that is not part of UTF-8 (of every lone surrogate, too).
std::string AsValidUtf8(std::string_view text);
// UTF-16 to 8-bit: UTF-8, a lone surrogate in its three-byte form, so that every text comes back.
std::string ToUtf8(std::u16string_view text);
// The way back. `strict` gives nothing for bytes that are neither UTF-8 nor such a surrogate; the lenient
// form puts U+FFFD in the place of each.
std::optional<std::u16string> ToUtf16Strict(std::string_view text);
std::u16string ToUtf16(std::string_view text);

template <class Receiver>
void ForEachLine(std::string_view text, Receiver&& line) {
  constexpr std::size_t kUnknown = std::string_view::npos - 1;
  std::size_t lf = kUnknown;  // the next LF; asked for once a line, however many CR stand before it
  for (std::size_t begin = 0; begin < text.size();) {
    if (lf == kUnknown || lf < begin) lf = std::min(text.find('\n', begin), text.size());
    const std::size_t end = std::min(text.substr(0, lf).find('\r', begin), lf);
    line(text.substr(begin, end - begin));
    begin = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
  }
}

}  // namespace qx
