// The encodings that XML files of old tools declare and XML parsers do not know: found in a file's first line
// and turned into UTF-8, of which the declaration then speaks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qx {

// One encoding: the name in declarations, in lower case, the one by which the C library converts it, and the
// number by which Windows does.
struct LegacyEncoding {
  std::string_view name;
  const char* libraryName;
  unsigned codePage;
};

// What an XML file's declaration names, as written; empty when it names none, something that cannot be an encoding's
// name, or the file begins with a mark.
std::string_view DeclaredEncoding(std::string_view bytes);

// Turns a file that declares a legacy encoding into UTF-8 and has its declaration name that; leaves others alone.
// Raises Exception when the system does not know the encoding.
void DecodeDeclaredLegacy(std::string& bytes);

// None for UTF-8, UTF-16 and names that nobody knows. Letter case does not count.
const LegacyEncoding* FindLegacyEncoding(std::string_view name);

bool IsAscii(std::string_view text);

namespace system {

// What cannot be decoded becomes U+FFFD. Raises Exception when the system does not know the encoding.
std::string DecodeLegacy(const LegacyEncoding& encoding, std::string_view bytes);

}  // namespace system
}  // namespace qx
