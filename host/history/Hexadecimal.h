// Bytes in hexadecimal digits, as digests are written. Header-only; nothing else belongs here.
#pragma once

#include <span>
#include <string>

namespace qx {

inline std::string InHexadecimal(std::span<const unsigned char> bytes) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const unsigned char byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace qx
