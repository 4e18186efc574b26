#include "host/system/SecretWords.h"

#include <gtest/gtest.h>

#include <string>

namespace qx {
namespace {

TEST(SecretWords, NoCutDividesOne) {
  NeverDivide("opensesame");
  EXPECT_EQ(LongestSecret(), 10u);
  const std::string text = "say opensesame to it";
  for (std::size_t cut = 0; cut <= text.size(); ++cut)
    EXPECT_EQ(CutBetweenSecrets(text, cut), cut > 4 && cut < 14 ? 4 : cut) << cut;
  EXPECT_EQ(CutBetweenSecrets("opensesame", 5), 0u);
  EXPECT_EQ(CutBetweenSecrets("opensesam", 5), 5u) << "the beginning of one is none";
}

// Moved before one, the cut may divide another.
TEST(SecretWords, ACutThatMovesDividesNoOtherOne) {
  NeverDivide("abcdef");
  NeverDivide("efgh");
  EXPECT_EQ(CutBetweenSecrets("xabcdefghx", 8), 1u);
}

}  // namespace
}  // namespace qx
