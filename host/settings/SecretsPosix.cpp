// Secrets under a key that only the running user can read: secret.key in the host's configuration folder, made
// when the first secret is encrypted. XSalsa20-Poly1305 (libsodium's secretbox), a fresh nonce each time.
#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include "host/settings/Secrets.h"
#include "host/system/HostProgram.h"
#include "host/system/LockedText.h"
#include "platform/Posix.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr std::string_view kVersion = "qx1:";
constexpr int kBase64 = sodium_base64_VARIANT_ORIGINAL;

// Key bytes, wiped when they go.
struct Key {
  std::array<unsigned char, crypto_secretbox_KEYBYTES> bytes{};
  Key() = default;
  Key(const Key&) = default;
  Key& operator=(const Key&) = default;
  ~Key() { sodium_memzero(bytes.data(), bytes.size()); }
};

[[noreturn]] void RaiseAbout(std::string_view what, const std::string& path) {
  throw Exception(std::string(what) + path + ": " + system::LastError());
}

void StartSodium() {
  if (sodium_init() < 0) throw Exception("The encryption library cannot be started");
}

std::string ToBase64(const unsigned char* bytes, std::size_t size) {
  std::string text(sodium_base64_encoded_len(size, kBase64), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes, size, kBase64);
  text.pop_back();  // the end that C wants
  return text;
}

// Empty when the text is no base64.
std::vector<unsigned char> FromBase64(std::string_view text) {
  if (text.empty()) return {};
  std::vector<unsigned char> bytes(text.size());
  std::size_t size = 0;
  const char* end = nullptr;
  if (sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &size, &end,
                        kBase64) != 0 ||
      end != text.data() + text.size()) {
    return {};
  }
  bytes.resize(size);
  return bytes;
}

std::string KeyFile() { return ConfigFolder() + "secret.key"; }

// False when there is none yet.
bool ReadKey(const std::string& path, Key& key) {
  const system::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.IsOpen()) {
    if (errno == ENOENT) return false;
    RaiseAbout("Cannot read the key of secrets ", path);
  }
  struct stat status {};
  if (fstat(file.Number(), &status) != 0) RaiseAbout("Cannot read the key of secrets ", path);
  if ((status.st_mode & 077U) != 0) {
    throw Exception("The key of secrets " + path + " can be read by others: make it private with chmod 600");
  }
  std::array<char, 128> text{};
  const ssize_t size = read(file.Number(), text.data(), text.size());
  if (size < 0) RaiseAbout("Cannot read the key of secrets ", path);
  std::string_view line(text.data(), static_cast<std::size_t>(size));
  if (line.ends_with('\n')) line.remove_suffix(1);
  std::vector<unsigned char> bytes = FromBase64(line);
  const bool whole = bytes.size() == key.bytes.size();
  if (whole) std::copy(bytes.begin(), bytes.end(), key.bytes.begin());
  sodium_memzero(bytes.data(), bytes.size());
  sodium_memzero(text.data(), text.size());
  if (!whole) throw Exception("The key of secrets " + path + " is damaged");
  return true;
}

// Writes a new key beside its place and links it there, so that of two processes one wins and nobody reads
// half a key.
void MakeKey(const std::string& path) {
  CreateFolders(FolderPart(path));
  std::string beside = path + ".XXXXXX";
  const system::Descriptor file(mkostemp(beside.data(), O_CLOEXEC));  // mode 0600
  if (!file.IsOpen()) RaiseAbout("Cannot write the key of secrets ", path);
  Key key;
  crypto_secretbox_keygen(key.bytes.data());
  std::string line = ToBase64(key.bytes.data(), key.bytes.size()) + "\n";
  const bool written = write(file.Number(), line.data(), line.size()) == static_cast<ssize_t>(line.size()) &&
                       fsync(file.Number()) == 0;
  sodium_memzero(line.data(), line.size());
  const bool linked = written && (link(beside.c_str(), path.c_str()) == 0 || errno == EEXIST);
  const int failure = errno;
  unlink(beside.c_str());
  errno = failure;
  if (!linked) RaiseAbout("Cannot write the key of secrets ", path);
}

// The user's key bound to a word.
Key BoundTo(std::string_view word, const Key& user) {
  Key bound;
  crypto_generichash(bound.bytes.data(), bound.bytes.size(),
                     reinterpret_cast<const unsigned char*>(word.data()), word.size(), user.bytes.data(),
                     user.bytes.size());
  return bound;
}

}  // namespace

std::string EncryptSecret(std::string_view text, std::string_view key) {
  if (text.empty()) return {};
  KeepOutOfDumps();
  StartSodium();
  const std::string path = KeyFile();
  Key user;
  if (!ReadKey(path, user)) {
    MakeKey(path);
    if (!ReadKey(path, user)) throw Exception("The key of secrets " + path + " vanished");
  }
  std::vector<unsigned char> box(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES + text.size());
  randombytes_buf(box.data(), crypto_secretbox_NONCEBYTES);
  crypto_secretbox_easy(box.data() + crypto_secretbox_NONCEBYTES,
                        reinterpret_cast<const unsigned char*>(text.data()), text.size(), box.data(),
                        BoundTo(key, user).bytes.data());
  return std::string(kVersion) + ToBase64(box.data(), box.size());
}

std::string DecryptSecret(std::string_view text, std::string_view key) {
  if (text.empty()) return {};
  KeepOutOfDumps();
  StartSodium();
  constexpr std::size_t kOverhead = crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES;
  std::vector<unsigned char> box;
  if (text.starts_with(kVersion)) box = FromBase64(text.substr(kVersion.size()));
  if (box.size() <= kOverhead) throw Exception("The stored text is no encrypted secret");
  const std::string path = KeyFile();
  Key user;
  if (!ReadKey(path, user)) throw Exception("The stored secret cannot be decrypted: there is no key " + path);
  std::string clear(box.size() - kOverhead, '\0');
  if (crypto_secretbox_open_easy(
          reinterpret_cast<unsigned char*>(clear.data()), box.data() + crypto_secretbox_NONCEBYTES,
          box.size() - crypto_secretbox_NONCEBYTES, box.data(), BoundTo(key, user).bytes.data()) != 0) {
    throw Exception("The stored secret cannot be decrypted: it was changed, or made by another user");
  }
  return clear;
}

}  // namespace qx
