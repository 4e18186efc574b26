#include "platform/VisibleText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "platform/Texts.h"

namespace qx {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};
constexpr Range kHidden[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C},
                             {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};

// The bytes by which the hidden characters begin; few texts have any.
constexpr std::array<bool, 256> kMayBegin = [] {
  std::array<bool, 256> may{};
  for (std::size_t c = 0; c < 0x20; ++c) may[c] = c != '\n' && c != '\t';
  for (const std::size_t c : {0x7F, 0xC2, 0xD8, 0xE2}) may[c] = true;
  return may;
}();

// Eight bytes at once: false says for sure that each is from 0x20 to 0x7E. A build's output runs through here.
constexpr std::size_t kPiece = 8;
bool MayHoldOthers(const char* piece) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, piece, kPiece);
  return ((bytes | (bytes - kOnes * 0x20) | (bytes + kOnes)) & (kOnes * 0x80)) != 0;
}

bool IsPlain(std::string_view text) {
  if (text.size() < kPiece)
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return kMayBegin[static_cast<unsigned char>(c)]; });
  const char* const last = text.data() + text.size() - kPiece;
  for (const char* piece = text.data(); piece < last; piece += kPiece) {
    if (MayHoldOthers(piece)) return false;
  }
  return !MayHoldOthers(last);
}

std::size_t NextSuspect(std::string_view text, std::size_t at) {
  while (at < text.size() && !kMayBegin[static_cast<unsigned char>(text[at])]) ++at;
  return at;
}

// How long the sequence at the text's begin is that only sets colours; 0: it is none.
std::size_t ColourLength(std::string_view text) {
  if (!text.starts_with("\x1b[")) return 0;
  const std::size_t end = text.find_first_not_of("0123456789;:", 2);
  return end != std::string_view::npos && text[end] == 'm' ? end + 1 : 0;
}

bool BeginsLineEnd(std::string_view text) { return text.starts_with("\r\n"); }

}  // namespace

bool IsHiddenCharacter(char32_t c) {
  if (c == '\n' || c == '\t') return false;
  return std::any_of(std::begin(kHidden), std::end(kHidden),
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

bool HasHiddenCharacters(std::string_view text) {
  if (IsPlain(text)) return false;
  for (std::size_t at = 0; (at = NextSuspect(text, at)) < text.size();) {
    const std::string_view rest = text.substr(at);
    if (IsHiddenCharacter(NextCodePoint(text, at)) && !BeginsLineEnd(rest)) return true;
  }
  return false;
}

std::string VisibleText(std::string_view text, ColourSequences colours) {
  std::string visible;
  visible.reserve(text.size());
  std::size_t kept = 0;
  for (std::size_t at = 0; (at = NextSuspect(text, at)) < text.size();) {
    const std::size_t begin = at;
    const std::size_t colour = colours == ColourSequences::Kept ? ColourLength(text.substr(at)) : 0;
    if (colour > 0) {
      at += colour;
      continue;
    }
    const char32_t c = NextCodePoint(text, at);
    if (!IsHiddenCharacter(c) || BeginsLineEnd(text.substr(begin))) continue;
    visible.append(text.substr(kept, begin - kept)).append("\\u").append(UpperHex(c, 4));
    kept = at;
  }
  return visible.append(text.substr(kept));
}

}  // namespace qx
