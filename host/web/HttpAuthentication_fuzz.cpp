// Any text as a server's challenge: read to its end; whatever is answered stays on one header line and does
// not hang on the password but through its hash.
#include <cstdlib>

#include "host/web/HttpAuthentication.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto noHash = [](qx::HttpHash, std::string_view) { return std::string(32, '0'); };
  for (const qx::HttpChallenge& challenge : qx::ParseChallenges(text)) {
    if (challenge.scheme.empty()) std::abort();
    const auto answer = [&](const char* password) {
      return qx::DigestAuthorization(challenge, {"ann", password, "GET", "/a", "cn", 1}, noHash);
    };
    const std::string header = answer("one");
    if (!header.empty() && !header.starts_with("Digest ")) std::abort();
    if (header.find_first_of("\r\n") != std::string::npos) std::abort();
    if (header != answer("another")) std::abort();
  }
  return 0;
}
