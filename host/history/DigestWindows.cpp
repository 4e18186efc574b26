#include <windows.h>

#include <bcrypt.h>

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

void Require(NTSTATUS status) {
  if (status != 0) throw Exception("The system cannot make a SHA-256 digest");
}

class Hash {
 public:
  Hash() { Require(BCryptCreateHash(Algorithm(), &handle_, nullptr, 0, nullptr, 0, 0)); }
  // Goes on from where the other stands.
  Hash(const Hash& other) { Require(BCryptDuplicateHash(other.handle_, &handle_, nullptr, 0, 0)); }
  Hash& operator=(const Hash&) = delete;
  ~Hash() { BCryptDestroyHash(handle_); }

  void Add(std::string_view bytes) {
    constexpr std::size_t kMostAtOnce = 1 << 26;
    while (!bytes.empty()) {
      const std::string_view part = bytes.substr(0, kMostAtOnce);
      auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(part.data()));
      Require(BCryptHashData(handle_, data, static_cast<ULONG>(part.size()), 0));
      bytes.remove_prefix(part.size());
    }
  }

  std::string Finish() {
    std::array<unsigned char, 32> digest{};
    Require(BCryptFinishHash(handle_, digest.data(), static_cast<ULONG>(digest.size()), 0));
    return InHexadecimal(digest);
  }

 private:
  BCRYPT_HASH_HANDLE handle_ = nullptr;
};

}  // namespace

std::vector<std::string> Sha256Behind(std::string_view shared, std::span<const DigestTail> tails) {
  Hash begun;
  begun.Add(shared);
  std::vector<std::string> digests;
  for (const DigestTail tail : tails) {
    Hash hash(begun);
    for (const std::string_view piece : tail) hash.Add(piece);
    digests.push_back(hash.Finish());
  }
  return digests;
}

}  // namespace qx
