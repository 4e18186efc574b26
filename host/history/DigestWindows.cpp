#include <windows.h>

#include <bcrypt.h>

#include <algorithm>
#include <array>

#include "host/history/Digest.h"
#include "host/history/Hexadecimal.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

BCRYPT_ALG_HANDLE Algorithm() {
  static const BCRYPT_ALG_HANDLE algorithm = [] {
    BCRYPT_ALG_HANDLE opened = nullptr;
    BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
    return opened;
  }();
  return algorithm;
}

}  // namespace

std::string Sha256(std::span<const std::string_view> pieces) {
  constexpr std::size_t kMostAtOnce = 1 << 26;
  std::array<unsigned char, 32> digest{};
  BCRYPT_HASH_HANDLE hash = nullptr;
  bool done = BCryptCreateHash(Algorithm(), &hash, nullptr, 0, nullptr, 0, 0) == 0;
  for (std::string_view piece : pieces) {
    while (done && !piece.empty()) {
      const std::string_view part = piece.substr(0, kMostAtOnce);
      auto* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(part.data()));
      done = BCryptHashData(hash, bytes, static_cast<ULONG>(part.size()), 0) == 0;
      piece.remove_prefix(part.size());
    }
  }
  done = done && BCryptFinishHash(hash, digest.data(), static_cast<ULONG>(digest.size()), 0) == 0;
  if (hash != nullptr) BCryptDestroyHash(hash);
  if (!done) throw Exception("The system cannot make a SHA-256 digest");
  return InHexadecimal(digest);
}

}  // namespace qx
