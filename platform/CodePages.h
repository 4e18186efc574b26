// Texts into the code pages that old source files are written in, and out of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

inline constexpr std::uint32_t kUtf8CodePage = 65001;

// The code page of files that do not name theirs, as the system's settings have it; none where there is no
// such setting (outside Windows).
std::optional<std::uint32_t> SystemCodePage();

// A UTF-8 text in the bytes of a Windows code page (1252, 932, 65001). None when the page has no place for one
// of its characters (nothing is replaced by something like it), or when the system does not know the page.
std::optional<std::string> EncodeInCodePage(std::string_view utf8, std::uint32_t codePage);

// The same way back, as UTF-8. None when the bytes are no text of the page, or when the system does not know it.
std::optional<std::string> DecodeFromCodePage(std::string_view bytes, std::uint32_t codePage);

}  // namespace qx
