#include "host/web/HttpAuthentication.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

// Shows what was hashed instead of hashing it.
std::string ShowHash(HttpHash kind, std::string_view text) {
  return (kind == HttpHash::Md5 ? "md5(" : "sha(") + std::string(text) + ")";
}

const DigestAnswer kAnswer{"ann", "pw", "GET", "/a", "cn", 1};

std::string AnswerTo(std::string_view header) {
  return DigestAuthorization(ParseChallenges(header).at(0), kAnswer, ShowHash);
}

TEST(HttpAuthentication, EncodesUserNameAndPassword) {
  EXPECT_EQ(BasicAuthorization("Aladdin", "open sesame"), "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
  EXPECT_EQ(BasicAuthorization("", ""), "Basic Og==");
  EXPECT_EQ(BasicAuthorization("a", "b"), "Basic YTpi");
  EXPECT_EQ(BasicAuthorization("\xC3\xBC", "x"), "Basic w7w6eA==");
}

TEST(HttpAuthentication, ReadsOneChallenge) {
  const auto challenges =
      ParseChallenges("Digest realm=\"a, b\", nonce=\"n\\\"1\", QOP=\"auth,auth-int\", stale=true");
  ASSERT_EQ(challenges.size(), 1u);
  EXPECT_EQ(challenges[0].scheme, "digest");
  const std::map<std::string, std::string> parameters{
      {"realm", "a, b"}, {"nonce", "n\"1"}, {"qop", "auth,auth-int"}, {"stale", "true"}};
  EXPECT_EQ(challenges[0].parameters, parameters);
}

TEST(HttpAuthentication, ReadsSeveralChallengesInOneHeader) {
  const auto challenges = ParseChallenges("Negotiate, NTLM, Basic realm=\"x\", Digest realm=y, nonce=z");
  ASSERT_EQ(challenges.size(), 4u);
  EXPECT_EQ(challenges[0].scheme, "negotiate");
  EXPECT_EQ(challenges[1].scheme, "ntlm");
  EXPECT_EQ(challenges[2].scheme, "basic");
  EXPECT_EQ(challenges[2].parameters.at("realm"), "x");
  EXPECT_EQ(challenges[3].scheme, "digest");
  EXPECT_EQ(challenges[3].parameters.at("nonce"), "z");
}

TEST(HttpAuthentication, PassesOverWhatIsMalformed) {
  EXPECT_TRUE(ParseChallenges("").empty());
  EXPECT_TRUE(ParseChallenges(" ,, \"").empty());
  EXPECT_EQ(ParseChallenges("Basic realm=\"never closed").at(0).parameters.at("realm"), "never closed");
}

TEST(HttpAuthentication, AnswersADigestChallenge) {
  EXPECT_EQ(
      AnswerTo("Digest realm=\"r\", nonce=\"n\", qop=\"auth,auth-int\", opaque=\"o\", algorithm=MD5"),
      "Digest username=\"ann\", realm=\"r\", nonce=\"n\", uri=\"/a\", "
      "response=\"md5(md5(ann:r:pw):n:00000001:cn:auth:md5(GET:/a))\", algorithm=MD5, qop=auth, nc=00000001, "
      "cnonce=\"cn\", opaque=\"o\"");
}

TEST(HttpAuthentication, AnswersTheOldFormWithoutProtection) {
  EXPECT_EQ(AnswerTo("Digest realm=\"r\", nonce=\"n\""),
            "Digest username=\"ann\", realm=\"r\", nonce=\"n\", uri=\"/a\", "
            "response=\"md5(md5(ann:r:pw):n:md5(GET:/a))\"");
}

TEST(HttpAuthentication, AnswersWithTheHashThatIsAskedFor) {
  EXPECT_NE(AnswerTo("Digest realm=r, nonce=n, algorithm=SHA-256, qop=auth")
                .find("response=\"sha(sha(ann:r:pw):n:00000001:cn:auth:sha(GET:/a))\", algorithm=SHA-256"),
            std::string::npos);
  EXPECT_NE(AnswerTo("Digest realm=r, nonce=n, algorithm=MD5-sess, qop=auth")
                .find("response=\"md5(md5(md5(ann:r:pw):n:cn):n:00000001:cn:auth:md5(GET:/a))\""),
            std::string::npos);
}

TEST(HttpAuthentication, HasNoAnswerToWhatItDoesNotKnow) {
  EXPECT_EQ(AnswerTo("Digest realm=r, nonce=n, algorithm=SHA-512-256"), "");
  EXPECT_EQ(AnswerTo("Digest realm=r, nonce=n, qop=\"auth-int\""), "");
  EXPECT_EQ(AnswerTo("Digest realm=r, qop=auth"), "");
}

TEST(HttpAuthentication, PutsABackslashBeforeQuotesInNames) {
  DigestAnswer answer = kAnswer;
  answer.userName = "a\"b\\c";
  const auto header = DigestAuthorization(ParseChallenges("Digest realm=r, nonce=n")[0], answer, ShowHash);
  EXPECT_TRUE(header.starts_with("Digest username=\"a\\\"b\\\\c\", realm=\"r\"")) << header;
}

}  // namespace
}  // namespace qx
