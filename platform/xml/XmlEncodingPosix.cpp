#include "platform/Posix.h"
#include "platform/xml/XmlEncoding.h"
#include "plugin/Qxtypes.h"

namespace qx::system {

std::string DecodeLegacy(const LegacyEncoding& encoding, std::string_view bytes) {
  Converter converter("UTF-8", encoding.libraryName);
  if (!converter.IsOpen())
    throw Exception("The encoding " + std::string(encoding.name) + " is not supported");
  std::string out;
  while (!converter.Convert(bytes, out) && !bytes.empty()) {
    out += "\xEF\xBF\xBD";
    bytes.remove_prefix(1);
  }
  return out;
}

}  // namespace qx::system
