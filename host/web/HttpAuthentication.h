// HTTP's Basic and Digest authentication as texts (RFC 7617, RFC 7616): what a server asks for and what
// answers it. For systems whose HTTP library leaves Digest to its caller. The hash functions are the caller's.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// One way to say who one is, as a server offers it: Digest realm="x", nonce="y".
struct HttpChallenge {
  std::string scheme;                             // in lower case
  std::map<std::string, std::string> parameters;  // names in lower case, values without their quotes
};

// The challenges of one WWW-Authenticate header, in order. What is malformed is passed over.
std::vector<HttpChallenge> ParseChallenges(std::string_view header);

// The value of an Authorization header.
std::string BasicAuthorization(std::string_view userName, std::string_view password);

enum class HttpHash { Md5, Sha256 };

// What one answer to a Digest challenge is made of.
struct DigestAnswer {
  std::string userName;
  std::string password;
  std::string method;       // "PUT"
  std::string target;       // as in the request line
  std::string clientNonce;  // fresh random text without quotes
  unsigned count = 1;       // of the requests that used the server's nonce, this one too
};

// Lower-case hexadecimal text of the hash.
using HexHash = std::function<std::string(HttpHash, std::string_view)>;

// The value of an Authorization header; empty when the challenge asks for what is not known here (a hash
// beyond MD5 and SHA-256, a protection beyond "auth") or has no nonce.
std::string DigestAuthorization(const HttpChallenge& challenge, const DigestAnswer& answer,
                                const HexHash& hash);

}  // namespace qx
