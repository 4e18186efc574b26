// Secrets under the data protection of Windows: bound to the account of the running user, no key of ours to keep.
#include <windows.h>
// After windows.h, which it needs.
#include <dpapi.h>
#include <wincrypt.h>

#include <vector>

#include "host/settings/Secrets.h"
#include "host/system/LockedText.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

constexpr std::string_view kVersion = "qxw1:";

DATA_BLOB BlobOf(std::string_view bytes) {
  DATA_BLOB blob{};
  blob.cbData = static_cast<DWORD>(bytes.size());
  blob.pbData = reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data()));  // the calls below only read it
  return blob;
}

std::string TakeBlob(DATA_BLOB& blob) {
  std::string bytes(reinterpret_cast<const char*>(blob.pbData), blob.cbData);
  SecureZeroMemory(blob.pbData, blob.cbData);
  LocalFree(blob.pbData);
  return bytes;
}

constexpr DWORD kBase64 = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;

std::string ToBase64(std::string_view bytes) {
  const auto* data = reinterpret_cast<const BYTE*>(bytes.data());
  DWORD size = 0;
  CryptBinaryToStringA(data, static_cast<DWORD>(bytes.size()), kBase64, nullptr, &size);
  std::string text(size, '\0');
  CryptBinaryToStringA(data, static_cast<DWORD>(bytes.size()), kBase64, text.data(), &size);
  text.resize(size);
  return text;
}

// Empty when the text is no base64.
std::string FromBase64(std::string_view text) {
  DWORD size = 0;
  const auto length = static_cast<DWORD>(text.size());
  if (CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64, nullptr, &size, nullptr, nullptr) == 0)
    return {};
  std::string bytes(size, '\0');
  auto* data = reinterpret_cast<BYTE*>(bytes.data());
  if (CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64, data, &size, nullptr, nullptr) == 0)
    return {};
  bytes.resize(size);
  return bytes;
}

}  // namespace

std::string EncryptSecret(std::string_view text, std::string_view key) {
  if (text.empty()) return {};
  KeepOutOfDumps();
  DATA_BLOB clear = BlobOf(text);
  DATA_BLOB word = BlobOf(key);
  DATA_BLOB secret{};
  if (CryptProtectData(&clear, nullptr, &word, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &secret) == 0) {
    throw Exception("The secret cannot be encrypted: " + system::LastError());
  }
  return std::string(kVersion) + ToBase64(TakeBlob(secret));
}

std::string DecryptSecret(std::string_view text, std::string_view key) {
  if (text.empty()) return {};
  KeepOutOfDumps();
  std::string bytes;
  if (text.starts_with(kVersion)) bytes = FromBase64(text.substr(kVersion.size()));
  if (bytes.empty()) throw Exception("The stored text is no encrypted secret");
  DATA_BLOB secret = BlobOf(bytes);
  DATA_BLOB word = BlobOf(key);
  DATA_BLOB clear{};
  if (CryptUnprotectData(&secret, nullptr, &word, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &clear) == 0) {
    throw Exception("The stored secret cannot be decrypted: it was changed, or made by another user");
  }
  return TakeBlob(clear);
}

}  // namespace qx
