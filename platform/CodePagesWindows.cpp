#include <windows.h>

#include "platform/CodePages.h"
#include "platform/Texts.h"
#include "platform/WindowsText.h"

namespace qx {

std::optional<std::uint32_t> SystemCodePage() { return GetACP(); }

std::optional<std::string> EncodeInCodePage(std::string_view utf8, std::uint32_t codePage) {
  if (!IsValidUtf8(utf8)) return std::nullopt;
  if (codePage == kUtf8CodePage || utf8.empty()) return std::string(utf8);
  const std::wstring wide = system::ToWide(utf8);
  const int length = static_cast<int>(wide.size());
  BOOL replaced = FALSE;
  const int size = WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.data(), length, nullptr, 0,
                                       nullptr, &replaced);
  if (size <= 0 || replaced) return std::nullopt;
  std::string out(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.data(), length, out.data(), size, nullptr,
                      nullptr);
  return out;
}

std::optional<std::string> DecodeFromCodePage(std::string_view bytes, std::uint32_t codePage) {
  if (codePage == kUtf8CodePage || bytes.empty())
    return IsValidUtf8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  const int length = static_cast<int>(bytes.size());
  const int size = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0);
  if (size <= 0) return std::nullopt;
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), length, wide.data(), size);
  return system::FromWide(wide);
}

}  // namespace qx
