// OpenSSL's own rounds use what the processor has for them. Its newer interface would load the whole library.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/sha.h>

#include <array>

#include "host/history/Digest.h"
#include "host/history/Hexadecimal.h"

namespace qx {

std::string Sha256(std::span<const std::string_view> pieces) {
  SHA256_CTX state;
  std::array<unsigned char, SHA256_DIGEST_LENGTH> digest;
  SHA256_Init(&state);
  for (const std::string_view piece : pieces) SHA256_Update(&state, piece.data(), piece.size());
  SHA256_Final(digest.data(), &state);
  return InHexadecimal(digest);
}

}  // namespace qx
