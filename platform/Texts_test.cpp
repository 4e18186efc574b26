#include "platform/Texts.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

using Items = std::vector<std::string>;
using std::string_literals::operator""s;

TEST(Texts, TrimTakesBlanksAndControlCharactersOffBothEnds) {
  EXPECT_EQ(Trim(" \t\r\n\x01 a b \x1F"), "a b");
  EXPECT_EQ(Trim("\0a\0"s), "a");
  EXPECT_EQ(Trim(" \t "), "");
  EXPECT_EQ(Trim("\xA0x"), "\xA0x") << "only what is at or below the blank goes";
}

TEST(Texts, LetterCaseOfBytesIsThatOfAsciiOnly) {
  EXPECT_EQ(LowerCase("AZaz[\xC3\x84"), "azaz[\xC3\x84");
  EXPECT_EQ(UpperCase("AZaz{\xC3\xA4"), "AZAZ{\xC3\xA4");
}

TEST(Texts, SameTextPassesOverLetterCase) {
  EXPECT_TRUE(SameText("Debug|Win32", "dEBUG|wIN32"));
  EXPECT_FALSE(SameText("Debug", "Debug "));
  EXPECT_FALSE(SameText("[", "{"));
  EXPECT_TRUE(SameText("", ""));
}

TEST(Texts, SameTextKnowsLatinGreekAndCyrillicLettersInUtf8) {
  EXPECT_TRUE(SameText("ÄÖÜ-ŁŽŸ", "äöü-łžÿ"));
  EXPECT_TRUE(SameText("ΑΩΆΏΣ", "αωάώσ"));
  EXPECT_TRUE(SameText("ЁЖЯҐ", "ёжяґ"));
  EXPECT_FALSE(SameText("×", "÷")) << "signs among the letters have no case";
  EXPECT_FALSE(SameText("Ä", "A"));
}

TEST(Texts, SameTextLeavesBytesThatAreNotUtf8Alone) {
  EXPECT_TRUE(SameText("R\xC4", "r\xC4"));
  EXPECT_FALSE(SameText("\xC4", "\xE4"));
}

TEST(Texts, FoldedLettersKeepTheirSizeInBytes) {
  for (char16_t c = 0x80; c < 0xD800; ++c) {
    const std::string letter = ToUtf8(std::u16string(1, c));
    EXPECT_EQ(FoldCase(letter).size(), letter.size()) << "U+" << std::hex << static_cast<int>(c);
  }
}

TEST(Texts, LinesEndInCrLfCrOrLf) {
  EXPECT_EQ(SplitLines("a\r\nb\rc\nd"), (Items{"a", "b", "c", "d"}));
  EXPECT_EQ(SplitLines("a\r\n\r\nb\n\n"), (Items{"a", "", "b", ""}));
  EXPECT_EQ(SplitLines("a\r\rb\r"), (Items{"a", "", "b"}));
  EXPECT_EQ(SplitLines("\n\r"), (Items{"", ""}));
  EXPECT_EQ(SplitLines(""), Items{});
  EXPECT_EQ(SplitLines("a\0b\n"s), (Items{"a\0b"s}));
}

TEST(Texts, JoinedLinesAllEndInCrLf) {
  EXPECT_EQ(JoinLines(Items{"a", "", "b"}), "a\r\n\r\nb\r\n");
  EXPECT_EQ(JoinLines(Items{}), "");
}

TEST(Texts, JoiningPutsTheSeparatorBetweenAllOfThem) {
  EXPECT_EQ(Join(Items{"a", "", "b"}, ", "), "a, , b");
  EXPECT_EQ(Join(Items{"", "b"}, ";"), ";b");
  EXPECT_EQ(Join(Items{}, ";"), "");
  EXPECT_EQ(Quoted("a \"b"), "\"a \"b\"");
}

TEST(Texts, CursorsKnowWhereEachLineStands) {
  LineCursor cursor("ab\r\nc\r\rd");
  std::vector<std::size_t> begins, nexts;
  for (Line line; cursor.Next(line);) {
    begins.push_back(line.begin);
    nexts.push_back(line.next);
  }
  EXPECT_EQ(begins, (std::vector<std::size_t>{0, 4, 6, 7}));
  EXPECT_EQ(nexts, (std::vector<std::size_t>{4, 6, 7, 8}));
}

TEST(CommaText, SeparatesByCommasAndByBlanksOutsideQuotes) {
  EXPECT_EQ(SplitCommaText("a, b c\t\"d, e\""), (Items{"a", "b", "c", "d, e"}));
  EXPECT_EQ(SplitCommaText("  a  ,  b  "), (Items{"a", "b"}));
}

TEST(CommaText, ADoubledQuoteInsideQuotesStandsForOne) {
  EXPECT_EQ(SplitCommaText("\"say \"\"hi\"\"\",\"\"\"\""), (Items{"say \"hi\"", "\""}));
}

TEST(CommaText, EmptyItemsStandBetweenCommasAndBehindTheLast) {
  EXPECT_EQ(SplitCommaText("a,,b"), (Items{"a", "", "b"}));
  EXPECT_EQ(SplitCommaText("a,"), (Items{"a", ""}));
  EXPECT_EQ(SplitCommaText(","), (Items{"", ""}));
  EXPECT_EQ(SplitCommaText("\"\""), (Items{""}));
  EXPECT_EQ(SplitCommaText("a, "), (Items{"a"})) << "blanks behind the last comma open no item";
  EXPECT_EQ(SplitCommaText("  "), Items{});
}

TEST(CommaText, AnOpenQuoteHoldsTheRest) {
  EXPECT_EQ(SplitCommaText("a,\"b, c"), (Items{"a", "b, c"}));
  EXPECT_EQ(SplitCommaText("\""), (Items{""}));
  EXPECT_EQ(SplitCommaText("\"a\"\""), (Items{"a\""}));
}

TEST(CommaText, AQuoteInsideAnItemIsALetterAndOneBehindItBeginsTheNext) {
  EXPECT_EQ(SplitCommaText("a\"b c"), (Items{"a\"b", "c"}));
  EXPECT_EQ(SplitCommaText("\"a\"b"), (Items{"a", "b"}));
}

TEST(CommaText, JoiningQuotesWhatSplittingWouldTear) {
  EXPECT_EQ(JoinCommaText(Items{"a", "b c", "d,e", "f\"g", ""}), "a,\"b c\",\"d,e\",\"f\"\"g\",");
  EXPECT_EQ(JoinCommaText(Items{""}), "\"\"");
  EXPECT_EQ(JoinCommaText(Items{}), "");
}

TEST(CommaText, WhatWasJoinedSplitsIntoTheSameItems) {
  for (const Items& items :
       {Items{""}, Items{"", ""}, Items{"a", "", "\"", ",", " ", "\t"}, Items{"\"\"", "a b"}}) {
    EXPECT_EQ(SplitCommaText(JoinCommaText(items)), items);
  }
}

TEST(Integers, AreDecimalWithAnOptionalSignAndNothingElse) {
  EXPECT_EQ(ToInteger("0"), 0);
  EXPECT_EQ(ToInteger("+12"), 12);
  EXPECT_EQ(ToInteger("-2147483648"), INT32_MIN);
  EXPECT_EQ(ToInteger("2147483647"), INT32_MAX);
  for (const char* text :
       {"", "+", "-", "+-1", "2147483648", "-2147483649", "$10", "0x10", " 1", "1 ", "1.0", "a"}) {
    EXPECT_EQ(ToInteger(text), std::nullopt) << text;
  }
}

TEST(Hexadecimal, HasAtLeastSoManyDigits) {
  EXPECT_EQ(UpperHex(0xAB, 4), "00AB");
  EXPECT_EQ(LowerHex(0xAB, 1), "ab");
  EXPECT_EQ(UpperHex(0, 0), "");
  EXPECT_EQ(LowerHex(0xFFFFFFFF, 2), "ffffffff");
}

TEST(Hexadecimal, DigitsOfEitherCaseHaveTheirValue) {
  const std::string digits = "0123456789abcdefABCDEF";
  for (int c = 0; c < 256; ++c) {
    const std::size_t at = digits.find(static_cast<char>(c));
    const int value = at == std::string::npos ? -1 : static_cast<int>(at < 16 ? at : at - 6);
    EXPECT_EQ(HexDigit(static_cast<char>(c)), value) << c;
  }
}

TEST(Utf, StepsFromOneCodePointToTheNext) {
  const std::string text =
      "a\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E"
      "\xED\xA0\xB4\xFF\xE2\x82";
  std::vector<char32_t> found;
  for (std::size_t at = 0; at < text.size();) found.push_back(NextCodePoint(text, at));
  EXPECT_EQ(found, (std::vector<char32_t>{U'a', U'ä', U'€', U'𝄞', 0xD834, kNoCodePoint, kNoCodePoint,
                                          kNoCodePoint}));
  EXPECT_TRUE(IsSurrogate(found[4]));
  EXPECT_TRUE(BeginsCharacter('\xE2'));
  EXPECT_FALSE(BeginsCharacter('\x82'));
}

TEST(Utf, KnowsWhatIsUtf8) {
  EXPECT_TRUE(IsValidUtf8("aä€𝄞"));
  EXPECT_TRUE(IsValidUtf8(""));
  for (const char* bytes : {"\x80", "\xC0\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80",
                            "\xED\xA0\x80", "\xC3", "\xE2\x82", "\xF8\x88\x80\x80\x80", "\xFF"}) {
    EXPECT_FALSE(IsValidUtf8(bytes));
  }
}

TEST(Utf, GoesToUtf16AndBack) {
  EXPECT_EQ(ToUtf16("aä€𝄞"), u"aä€𝄞");
  EXPECT_EQ(ToUtf8(u"aä€𝄞"), "aä€𝄞");
}

TEST(Utf, LoneSurrogatesComeBack) {
  const std::u16string lone = {u'a', char16_t{0xD834}, u'b', char16_t{0xDD1E}};
  EXPECT_EQ(ToUtf8(lone),
            "a\xED\xA0\xB4"
            "b\xED\xB4\x9E");
  EXPECT_EQ(ToUtf16Strict(ToUtf8(lone)), lone);
}

TEST(Utf, BytesThatAreNotUtf8AreRefusedOrReplaced) {
  EXPECT_EQ(ToUtf16Strict("a\xFF"), std::nullopt);
  EXPECT_EQ(ToUtf16("a\xFF"
                    "b\xC3"),
            u"a\uFFFDb\uFFFD");
  EXPECT_EQ(AsValidUtf8("ä\xFF\xED\xA0\xB4"), "ä\uFFFD\uFFFD");
}

}  // namespace
}  // namespace qx
