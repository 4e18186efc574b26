// OpenSSL's own rounds use what the processor has for them. Its newer interface would load the whole library.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/sha.h>

#include <array>

#include "host/history/Digest.h"
#include "host/history/Hexadecimal.h"

namespace qx {

std::vector<std::string> Sha256Behind(std::string_view shared, std::span<const DigestTail> tails) {
  SHA256_CTX begun;
  SHA256_Init(&begun);
  SHA256_Update(&begun, shared.data(), shared.size());
  std::vector<std::string> digests;
  for (const DigestTail tail : tails) {
    SHA256_CTX state = begun;
    for (const std::string_view piece : tail) SHA256_Update(&state, piece.data(), piece.size());
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest;
    SHA256_Final(digest.data(), &state);
    digests.push_back(InHexadecimal(digest));
  }
  return digests;
}

}  // namespace qx
