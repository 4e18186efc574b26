// The encodings that XML files of old tools declare and XML parsers do not know: found in a file's first line
// and turned into UTF-8.
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

// What an XML file's declaration says of its encoding.
struct XmlDeclaration {
  std::string_view encoding;  // as written; empty when none is declared, or the file begins with a mark
  std::size_t size = 0;       // the whole declaration's length
};
XmlDeclaration ReadXmlDeclaration(std::string_view bytes);

// None for UTF-8, UTF-16 and names that nobody knows. Letter case does not count.
const LegacyEncoding* FindLegacyEncoding(std::string_view name);

bool IsAscii(std::string_view text);

namespace system {

// What cannot be decoded becomes U+FFFD. Raises Exception when the system does not know the encoding.
std::string DecodeLegacy(const LegacyEncoding& encoding, std::string_view bytes);

}  // namespace system
}  // namespace qx
