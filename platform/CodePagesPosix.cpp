#include <iconv.h>

#include <array>

#include "platform/CodePages.h"
#include "platform/Texts.h"

namespace qx {

std::optional<std::uint32_t> SystemCodePage() { return std::nullopt; }

std::optional<std::string> EncodeInCodePage(std::string_view utf8, std::uint32_t codePage) {
  if (codePage == kUtf8CodePage) return IsValidUtf8(utf8) ? std::optional(std::string(utf8)) : std::nullopt;
  const iconv_t converter = iconv_open(("CP" + std::to_string(codePage)).c_str(), "UTF-8");
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string in(utf8);
  std::string out(utf8.size() * 2 + 16, '\0');  // no code page takes more than two bytes for one of UTF-8
  char* from = in.data();
  char* to = out.data();
  std::size_t left = in.size(), room = out.size();
  const std::size_t replaced = iconv(converter, &from, &left, &to, &room);
  iconv_close(converter);
  if (replaced != 0 || left != 0) return std::nullopt;
  out.resize(out.size() - room);
  return out;
}

}  // namespace qx
