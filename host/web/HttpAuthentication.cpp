#include "host/web/HttpAuthentication.h"

#include <algorithm>

#include "platform/Texts.h"

namespace qx {
namespace {

// Reads a header from left to right.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}
  bool AtEnd() const { return rest_.empty(); }
  bool Sees(char c) const { return !rest_.empty() && rest_[0] == c; }
  void Skip(std::string_view characters) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(characters), rest_.size()));
  }
  void SkipOne() { rest_.remove_prefix(1); }
  std::string_view Token() {
    const std::string_view token = rest_.substr(0, rest_.find_first_of(" \t,=\""));
    rest_.remove_prefix(token.size());
    return token;
  }
  // A value, quoted or not; a backslash in quotes takes the next character as it is.
  std::string Value() {
    if (!Sees('"')) return std::string(Token());
    SkipOne();
    std::string value;
    while (!rest_.empty() && rest_[0] != '"') {
      if (rest_[0] == '\\' && rest_.size() > 1) SkipOne();
      value += rest_[0];
      SkipOne();
    }
    if (!rest_.empty()) SkipOne();
    return value;
  }

 private:
  std::string_view rest_;
};

std::string Parameter(const HttpChallenge& challenge, const std::string& name) {
  const auto found = challenge.parameters.find(name);
  return found == challenge.parameters.end() ? std::string() : found->second;
}

std::string HeaderQuoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < ' ') continue;  // a header is one line
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Whether one of the comma-parted words of a list is the given one.
bool Lists(std::string_view list, std::string_view word) {
  Cursor at(list);
  for (at.Skip(" \t,"); !at.AtEnd(); at.Skip(" \t,=\"")) {
    if (SameText(at.Token(), word)) return true;
  }
  return false;
}

}  // namespace

std::vector<HttpChallenge> ParseChallenges(std::string_view header) {
  std::vector<HttpChallenge> challenges;
  Cursor at(header);
  for (at.Skip(" \t,"); !at.AtEnd(); at.Skip(" \t,")) {
    const std::string word = LowerCase(at.Token());
    at.Skip(" \t");
    if (word.empty()) {
      at.SkipOne();
    } else if (!at.Sees('=')) {
      challenges.push_back({word, {}});
    } else {
      at.SkipOne();
      at.Skip(" \t");
      std::string value = at.Value();
      if (!challenges.empty()) challenges.back().parameters.emplace(word, std::move(value));
    }
  }
  return challenges;
}

std::string BasicAuthorization(std::string_view userName, std::string_view password) {
  static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::string bytes = std::string(userName) + ":" + std::string(password);
  std::string encoded = "Basic ";
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const auto byte = [&](std::size_t index) -> unsigned {
      return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
    };
    const unsigned three = byte(at) << 16 | byte(at + 1) << 8 | byte(at + 2);
    encoded += digits[three >> 18];
    encoded += digits[three >> 12 & 63];
    encoded += at + 1 < bytes.size() ? digits[three >> 6 & 63] : '=';
    encoded += at + 2 < bytes.size() ? digits[three & 63] : '=';
  }
  return encoded;
}

std::string DigestAuthorization(const HttpChallenge& challenge, const DigestAnswer& answer,
                                const HexHash& hash) {
  const std::string algorithm = Parameter(challenge, "algorithm");
  const bool isSession = LowerCase(algorithm).ends_with("-sess");
  const std::string base = LowerCase(algorithm.substr(0, algorithm.size() - (isSession ? 5 : 0)));
  if (!base.empty() && base != "md5" && base != "sha-256") return {};
  const HttpHash kind = base == "sha-256" ? HttpHash::Sha256 : HttpHash::Md5;

  const std::string nonce = Parameter(challenge, "nonce");
  const std::string realm = Parameter(challenge, "realm");
  const std::string offered = Parameter(challenge, "qop");
  const bool hasProtection = Lists(offered, "auth");
  if (nonce.empty() || (!offered.empty() && !hasProtection)) return {};

  std::string secret = hash(kind, answer.userName + ":" + realm + ":" + answer.password);
  if (isSession) secret = hash(kind, secret + ":" + nonce + ":" + answer.clientNonce);
  const std::string request = hash(kind, answer.method + ":" + answer.target);
  const std::string count = LowerHex(answer.count, 8);
  const std::string protection = hasProtection ? count + ":" + answer.clientNonce + ":auth:" : std::string();
  const std::string response = hash(kind, secret + ":" + nonce + ":" + protection + request);

  std::string header = "Digest username=" + HeaderQuoted(answer.userName) + ", realm=" + HeaderQuoted(realm) +
                       ", nonce=" + HeaderQuoted(nonce) + ", uri=" + HeaderQuoted(answer.target) +
                       ", response=\"" + response + "\"";
  if (!algorithm.empty()) header += ", algorithm=" + algorithm;
  if (hasProtection) header += ", qop=auth, nc=" + count;
  if (hasProtection || isSession) header += ", cnonce=" + HeaderQuoted(answer.clientNonce);
  if (challenge.parameters.contains("opaque"))
    header += ", opaque=" + HeaderQuoted(Parameter(challenge, "opaque"));
  return header;
}

}  // namespace qx
