#include <windows.h>

#include "platform/WindowsText.h"
#include "platform/xml/XmlEncoding.h"
#include "plugin/Qxtypes.h"

namespace qx::system {

std::string DecodeLegacy(const LegacyEncoding& encoding, std::string_view bytes) {
  if (bytes.empty()) return {};
  const int size = static_cast<int>(bytes.size());
  std::wstring wide(bytes.size(), L'\0');  // no encoding here gives more units than it has bytes
  const int used = MultiByteToWideChar(encoding.codePage, 0, bytes.data(), size, wide.data(), size);
  if (used == 0) throw Exception("The encoding " + std::string(encoding.name) + " is not supported");
  return FromWide(std::wstring_view(wide).substr(0, static_cast<std::size_t>(used)));
}

}  // namespace qx::system
