// SHA-256 of contents, by which they are kept and told apart. One source a system.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qx {

// In 64 hexadecimal digits, of the pieces one behind the other.
std::string Sha256(std::span<const std::string_view> pieces);
inline std::string Sha256(std::string_view bytes) { return Sha256({&bytes, 1}); }

}  // namespace qx
