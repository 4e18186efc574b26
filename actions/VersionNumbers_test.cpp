#include "actions/VersionNumbers.h"

#include <gtest/gtest.h>

#include <random>

namespace qx {
namespace {

TEST(SplitVersion, GivesTheFourParts) {
  EXPECT_EQ(SplitVersion("1|2|3|4"), (VersionParts{"1", "2", "3", "4"}));
}

TEST(SplitVersion, LeavesMissingPartsEmpty) {
  EXPECT_EQ(SplitVersion("1|2"), (VersionParts{"1", "2", "", ""}));
  EXPECT_EQ(SplitVersion(""), VersionParts{});
  EXPECT_EQ(SplitVersion("|||"), VersionParts{});
}

TEST(SplitVersion, TakesADottedVersionAsMajorWhole) {
  EXPECT_EQ(SplitVersion("1.2.3.4"), (VersionParts{"1.2.3.4", "", "", ""}));
}

TEST(SplitVersion, DropsAFifthPart) {
  EXPECT_EQ(SplitVersion("1|2|3|4|5"), (VersionParts{"1", "2", "3", "4"}));
  EXPECT_EQ(SplitVersion("1|2|3|4|"), (VersionParts{"1", "2", "3", "4"}));
}

TEST(SplitVersion, KeepsAnyTextInAPart) {
  EXPECT_EQ(SplitVersion("1| 0 |*|%REV%"), (VersionParts{"1", " 0 ", "*", "%REV%"}));
}

TEST(JoinVersion, AlwaysHasThreeBars) {
  EXPECT_EQ(JoinVersion({}), "|||");
  EXPECT_EQ(JoinVersion({"1.2.3.4", "", "7", ""}), "1.2.3.4||7|");
}

TEST(JoinVersion, IsUndoneBySplitting) {
  std::mt19937 random(1);
  const auto part = [&random] {
    static constexpr std::string_view kCharacters = "0123456789.*% -";
    std::string text(random() % 6, ' ');
    for (char& c : text) c = kCharacters[random() % kCharacters.size()];
    return text;
  };
  for (int i = 0; i < 1000; ++i) {
    const VersionParts parts{part(), part(), part(), part()};
    ASSERT_EQ(SplitVersion(JoinVersion(parts)), parts) << JoinVersion(parts);
  }
}

TEST(NextNumber, RaisesADecimalPart) {
  EXPECT_EQ(NextNumber("4", 0), "5");
  EXPECT_EQ(NextNumber("-1", 0), "0");
  EXPECT_EQ(NextNumber("009", 0), "10");
  EXPECT_EQ(NextNumber("65535", 0), "65536");
  EXPECT_EQ(NextNumber("2147483647", 0), "2147483648");
}

TEST(NextNumber, CountsOtherTextsAsAsked) {
  for (const char* text : {"", "*", "%REV%", "1.5", "x", "2147483648"}) {
    EXPECT_EQ(NextNumber(text, 0), "1") << text;
    EXPECT_EQ(NextNumber(text, -1), "0") << text;
  }
}

TEST(NextNumber, WrapsA32BitNumber) {
  EXPECT_EQ(NextNumber(41), 42);
  EXPECT_EQ(NextNumber(-1), 0);
  EXPECT_EQ(NextNumber(2147483647), -2147483647 - 1);
}

TEST(LastPartOf, BeginsBehindTheLastBar) {
  EXPECT_EQ(LastPartOf("1|2|3|x"), 6u);
  EXPECT_EQ(LastPartOf("1|"), 2u);
  EXPECT_EQ(LastPartOf("9"), 0u);
  EXPECT_EQ(LastPartOf(""), 0u);
}

TEST(WithFileVersion, AppendsALine) {
  EXPECT_EQ(WithFileVersion("CompanyName=A", {2, 0, 0, 0}), "CompanyName=A\r\nFileVersion=2.0.0.0\r\n");
  EXPECT_EQ(WithFileVersion("", {1, 2, 3, 4}), "FileVersion=1.2.3.4\r\n");
}

TEST(WithFileVersion, ReplacesTheLineInPlace) {
  EXPECT_EQ(WithFileVersion("FileVersion=9.9.9.9\r\nCompanyName=A\r\n", {1, 2, 0, 45}),
            "FileVersion=1.2.0.45\r\nCompanyName=A\r\n");
}

TEST(WithFileVersion, FindsTheNameInAnyLetterCase) {
  EXPECT_EQ(WithFileVersion("A=1\r\nFILEVERSION=x\r\nB=2\r\n", {1, 0, 0, 0}),
            "A=1\r\nFileVersion=1.0.0.0\r\nB=2\r\n");
}

TEST(WithFileVersion, TouchesNoOtherKey) {
  EXPECT_EQ(WithFileVersion("ProductVersion=7\nFileVersionText=x\nno equals sign\n", {-1, 0, 0, 2147483647}),
            "ProductVersion=7\r\nFileVersionText=x\r\nno equals sign\r\nFileVersion=-1.0.0.2147483647\r\n");
}

}  // namespace
}  // namespace qx
