#include <gtest/gtest.h>

#include "host/settings/Secrets.h"

namespace qx {
namespace {

std::string RaisedByDecrypting(const std::string& text, const std::string& key = "") {
  try {
    return "decrypted to " + DecryptSecret(text, key);
  } catch (const Exception& failure) {
    return failure.Message();
  }
}

constexpr const char* kChanged =
    "The stored secret cannot be decrypted: it was changed, or made by another user";

TEST(Secrets, ComeBack) {
  for (const std::string clear :
       {"x", "p\xC3\xA4ss w\xF6rd\r\n", "", "qx1:", "a longer secret of some words"}) {
    EXPECT_EQ(DecryptSecret(EncryptSecret(clear, ""), ""), clear);
  }
}

TEST(Secrets, EmptyTextStaysEmpty) {
  EXPECT_EQ(EncryptSecret("", "key"), "");
  EXPECT_EQ(DecryptSecret("", "key"), "");
}

TEST(Secrets, ArePrintableAndDifferEachTime) {
  const std::string secret = EncryptSecret(std::string(300, '\0'), "");
  EXPECT_NE(secret, EncryptSecret(std::string(300, '\0'), ""));
  for (const char c : secret) EXPECT_TRUE(c > ' ' && c < '\x7F') << static_cast<int>(c);
}

TEST(Secrets, AnotherKeyDoesNotOpenThem) {
  const std::string secret = EncryptSecret("hush", "one");
  EXPECT_EQ(DecryptSecret(secret, "one"), "hush");
  EXPECT_EQ(RaisedByDecrypting(secret, "two"), kChanged);
  EXPECT_EQ(RaisedByDecrypting(secret, ""), kChanged);
}

TEST(Secrets, AChangedOneIsRefused) {
  std::string secret = EncryptSecret("hush", "");
  // Near the end, where on every system only what is checked stands; the last characters may be padding.
  char& changed = secret[secret.size() - 6];
  changed = changed == 'A' ? 'B' : 'A';
  EXPECT_EQ(RaisedByDecrypting(secret), kChanged);
}

TEST(Secrets, WhatIsNoSecretIsRefused) {
  for (const std::string text : {"hush", "qx1:", "qx1:AAAA", "qx1:!!!", "qx9:AAAA"}) {
    EXPECT_EQ(RaisedByDecrypting(text), "The stored text is no encrypted secret") << text;
  }
}

}  // namespace
}  // namespace qx
