#include <gtest/gtest.h>

#include "plugin/Qxtokeniser.h"

namespace qx {
namespace {

TEST(Tokeniser, ReadsCharacterByCharacterAndNeverPastTheEnd) {
  const auto at = CreateStringTokeniser("ab");
  EXPECT_EQ(at->Peek(), 'a');
  EXPECT_EQ(at->Read(), 'a');
  EXPECT_EQ(at->Read(), 'b');
  EXPECT_TRUE(at->AtEnd());
  EXPECT_EQ(at->Peek(), '\0');
  EXPECT_EQ(at->Read(), '\0');
  EXPECT_EQ(at->Rest(), "");
}

TEST(Tokeniser, SkipsBlanksAndControlCharacters) {
  const auto at = CreateStringTokeniser(" \t\r\n x ");
  at->SkipBlanks();
  EXPECT_EQ(at->Rest(), "x ");
  at->SkipBlanks();
  EXPECT_TRUE(at->AtEnd());
}

TEST(Tokeniser, ReadsUntilADelimiterAndPassesIt) {
  const auto at = CreateStringTokeniser("Assembly(\"x\")");
  std::string text = "kept";
  EXPECT_TRUE(at->ReadUntil('(', text));
  EXPECT_EQ(text, "Assembly");
  EXPECT_FALSE(at->ReadUntil(';', text));
  EXPECT_EQ(text, "Assembly");
  EXPECT_EQ(at->Rest(), "\"x\")");
}

TEST(Tokeniser, ReadsAnEmptyTokenBetweenDelimiters) {
  const auto at = CreateStringTokeniser("||");
  std::string text = "x";
  EXPECT_TRUE(at->ReadUntil('|', text));
  EXPECT_EQ(text, "");
  EXPECT_TRUE(at->ReadUntil('|', text));
  EXPECT_FALSE(at->ReadUntil('|', text));
}

}  // namespace
}  // namespace qx
