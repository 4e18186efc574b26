// 8-bit texts and the system's wide ones; for the *Windows.cpp files of the rooms that have them.
#pragma once

#include <string>
#include <string_view>

namespace qx::system {

// UTF-8 (lone surrogates too); text that is not UTF-8 is taken in the system's code page.
std::wstring ToWide(std::string_view text);
std::string FromWide(std::wstring_view text);
// A path for the wide file calls: as ToWide, and absolute with the prefix for long paths where it needs one.
std::wstring WidePath(std::string_view path);
// The system's text for an error number, without line ends.
std::string ErrorText(unsigned long error);

}  // namespace qx::system
