#include "actions/VersionNumbers.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "platform/Texts.h"

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
  EXPECT_EQ(NextNumber("3000000000", 0), "3000000001");
  EXPECT_EQ(NextNumber("99999999999999999999", -1), "100000000000000000000");
  EXPECT_EQ(NextNumber("000", 0), "1");
}

TEST(NextNumber, CountsOtherTextsAsAsked) {
  for (const char* text : {"", "*", "%REV%", "1.5", "x", "12a", "+"}) {
    EXPECT_EQ(NextNumber(text, 0), "1") << text;
    EXPECT_EQ(NextNumber(text, -1), "0") << text;
  }
}

TEST(NextNumber, WrapsA32BitNumber) {
  EXPECT_EQ(NextNumber(41), 42);
  EXPECT_EQ(NextNumber(-1), 0);
  EXPECT_EQ(NextNumber(2147483647), -2147483647 - 1);
}

std::string FaultOf(const std::function<void()>& act) {
  try {
    act();
    return "";
  } catch (const Exception& fault) {
    return fault.Message();
  }
}

TEST(ReadDottedVersion, TakesFourNumbers) {
  EXPECT_EQ(ReadDottedVersion("2.1.0.65534", kLargestAssemblyPart), (std::array{2, 1, 0, 65534}));
  EXPECT_EQ(ReadDottedVersion("0.0.0.65535", kLargestFilePart), (std::array{0, 0, 0, 65535}));
}

TEST(ReadDottedVersion, RefusesAllElse) {
  const auto faultOf = [](std::string_view text) {
    return FaultOf([&] { ReadDottedVersion(text, kLargestAssemblyPart); });
  };
  for (const char* text : {"", "2", "2.1.0", "2.1.0.0.0"})
    EXPECT_EQ(faultOf(text), Quoted(text) + " is no version of four parts, like 2.1.0.0");
  EXPECT_EQ(faultOf("1.2.3.65535"), "\"1.2.3.65535\": the part \"65535\" is no number from 0 to 65534");
  for (const char* part : {"", "*", "x", "-1", "+1", " 1", "70000", "99999999999"})
    EXPECT_EQ(faultOf("1." + std::string(part) + ".3.4"),
              "\"1." + std::string(part) + ".3.4\": the part \"" + part + "\" is no number from 0 to 65534");
}

TEST(BumpedVersion, RaisesAPartAndClearsThoseBehindIt) {
  const auto bumped = [](const VersionParts& parts, VersionPart part) {
    return JoinVersion(BumpedVersion(parts, part, kLargestAssemblyPart, "V"));
  };
  EXPECT_EQ(bumped({"1", "2", "3", "4"}, VersionPart::Major), "2|0|0|0");
  EXPECT_EQ(bumped({"1", "2", "3", "4"}, VersionPart::Minor), "1|3|0|0");
  EXPECT_EQ(bumped({"1", "2", "3", "4"}, VersionPart::Build), "1|2|4|0");
  EXPECT_EQ(bumped({"1", "2", "3", "4"}, VersionPart::Revision), "1|2|3|5");
  EXPECT_EQ(bumped({"1", "2", "*", ""}, VersionPart::Build), "1|2|1|0");
  EXPECT_EQ(bumped({"", "", "*", "*"}, VersionPart::Revision), "0|0|0|1");
  EXPECT_EQ(bumped({"1", "%N%", "x", "y"}, VersionPart::Major), "2|0|0|0");
}

TEST(BumpedVersion, RefusesWhatIsNoNumberAndWhatWouldBeTooLarge) {
  const auto faultOf = [](const char* part) {
    return FaultOf([&] {
      BumpedVersion({"1", part, "", ""}, VersionPart::Minor, kLargestAssemblyPart, "V");
    });
  };
  EXPECT_EQ(faultOf("65533"), "");
  EXPECT_EQ(faultOf("65534"), "V: the part 65534 is the largest there is already");
  for (const char* part : {"%N%", "beta", "-1", "65535", "1.2"})
    EXPECT_EQ(faultOf(part), "V: the part \"" + std::string(part) +
                                 "\" is no number from 0 to 65534; give the version as a whole");
}

TEST(DottedVersion, HasPointsForBars) {
  EXPECT_EQ(DottedVersion("1|0|*|5"), "1.0.*.5");
  EXPECT_EQ(DottedVersion("1|0|*|"), "1.0.*.");
  EXPECT_EQ(DottedVersion("|||"), "");
  EXPECT_EQ(DottedVersion(""), "");
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
