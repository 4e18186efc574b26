// SHA-256 of contents, by which they are kept and told apart. One source a system.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// Of contents that all begin with `shared`, which is gone over once, and go on with the pieces of a tail each; each
// digest in 64 hexadecimal digits.
using DigestTail = std::span<const std::string_view>;
std::vector<std::string> Sha256Behind(std::string_view shared, std::span<const DigestTail> tails);

// Of the pieces one behind the other.
inline std::string Sha256(DigestTail pieces) { return Sha256Behind({}, {&pieces, 1}).front(); }
inline std::string Sha256(std::string_view bytes) { return Sha256({&bytes, 1}); }

}  // namespace qx
