#include "platform/CodePages.h"
#include "platform/Posix.h"
#include "platform/Texts.h"

namespace qx {

std::optional<std::uint32_t> SystemCodePage() { return std::nullopt; }

std::optional<std::string> EncodeInCodePage(std::string_view utf8, std::uint32_t codePage) {
  if (codePage == kUtf8CodePage) return IsValidUtf8(utf8) ? std::optional(std::string(utf8)) : std::nullopt;
  system::Converter converter(("CP" + std::to_string(codePage)).c_str(), "UTF-8");
  std::string out;
  if (!converter.IsOpen() || !converter.Convert(utf8, out)) return std::nullopt;
  return out;
}

std::optional<std::string> DecodeFromCodePage(std::string_view bytes, std::uint32_t codePage) {
  if (codePage == kUtf8CodePage) return IsValidUtf8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  system::Converter converter("UTF-8", ("CP" + std::to_string(codePage)).c_str());
  std::string out;
  if (!converter.IsOpen() || !converter.Convert(bytes, out)) return std::nullopt;
  return out;
}

}  // namespace qx
