#include "programs/VersionResource.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "programs/ProgramFixture.h"

namespace qx {
namespace {

using Strings = std::vector<std::pair<std::string, std::string>>;

TEST(VersionResource, GivesNumbersStringsAndTranslations) {
  const VersionResource version = ReadVersionResource(VersionBlock({1, 2, 3, 65535}, {4, 3, 2, 1}));
  ASSERT_TRUE(version.fixed.has_value());
  EXPECT_EQ(DottedVersion(version.fixed->file), "1.2.3.65535");
  EXPECT_EQ(DottedVersion(version.fixed->product), "4.3.2.1");
  EXPECT_EQ(version.fixed->flagsMask, 0x3Fu);
  EXPECT_EQ(version.fixed->flags, 2u);
  EXPECT_EQ(version.fixed->system, 0x40004u);
  EXPECT_EQ(version.fixed->type, 1u);
  ASSERT_EQ(version.tables.size(), 1u);
  EXPECT_EQ(version.tables[0].key, "040904E4");
  EXPECT_EQ(version.tables[0].translation, (Translation{0x409, 1252}));
  EXPECT_EQ(version.tables[0].strings,
            (Strings{{"CompanyName", "ACME"}, {"FileVersion", "1.2.3.4"}, {"Empty", ""}}));
  EXPECT_EQ(version.translations, (std::vector<Translation>{{0x409, 1252}}));
}

std::string Root(const std::vector<std::string>& children, std::string_view fixed = {}) {
  return VersionNode("VS_VERSION_INFO", static_cast<unsigned>(fixed.size()), false, fixed, children);
}

TEST(VersionResource, ReadsEveryTableInAnyOrder) {
  const std::string variables = VersionNode(
      "VarFileInfo", 0, true, "",
      {VersionNode("Translation", 8, false, Bytes().U16(0x409).U16(1200).U16(0x407).U16(0).Text())});
  const std::string strings = VersionNode("StringFileInfo", 0, true, "",
                                          {VersionNode("040904b0", 0, true, "", {VersionText("A", "1")}),
                                           VersionNode("neutral", 0, true, "", {VersionText("B", "2")})});
  const VersionResource version = ReadVersionResource(Root({variables, strings}));
  EXPECT_FALSE(version.fixed.has_value());
  ASSERT_EQ(version.tables.size(), 2u);
  EXPECT_EQ(version.tables[0].translation, (Translation{0x409, 1200}));
  EXPECT_EQ(version.tables[1].key, "neutral");
  EXPECT_EQ(version.tables[1].translation, std::nullopt);
  EXPECT_EQ(version.tables[1].strings, (Strings{{"B", "2"}}));
  EXPECT_EQ(version.translations, (std::vector<Translation>{{0x409, 1200}, {0x407, 0}}));
}

std::string WithStrings(const std::vector<std::string>& nodes) {
  return Root({VersionNode("StringFileInfo", 0, true, "", {VersionNode("000004B0", 0, true, "", nodes)})});
}

// Some writers count a text's characters, some its bytes, some leave out the zero.
TEST(VersionResource, TakesATextToItsZeroWhateverItsLengthSays) {
  const std::string text = Bytes().Wide("1.2").Text();
  const VersionResource version = ReadVersionResource(
      WithStrings({VersionNode("chars", 4, true, text), VersionNode("bytes", 8, true, text),
                   VersionNode("noZero", 3, true, text.substr(0, 6))}));
  EXPECT_EQ(version.tables[0].strings, (Strings{{"chars", "1.2"}, {"bytes", "1.2"}, {"noZero", "1.2"}}));
}

TEST(VersionResource, KeepsTextsOfAllLanguages) {
  const std::string text = Bytes().U16(0xE9).U16(0xD83D).U16(0xDE00).U16(0).Text();
  EXPECT_EQ(ReadVersionResource(WithStrings({VersionNode("x", 4, true, text)})).tables[0].strings[0].second,
            "\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(VersionResource, EndsAtFilling) {
  const VersionResource version =
      ReadVersionResource(WithStrings({VersionText("a", "b"), std::string(16, '\0')}));
  EXPECT_EQ(version.tables[0].strings.size(), 1u);
}

TEST(VersionResource, RefusesPartsThatReachBeyondTheirPlace) {
  const std::string expected = "it is damaged: a part of its version resource is too long";
  const std::string good = VersionBlock({1, 2, 3, 4}, {1, 2, 3, 4});
  EXPECT_EQ(MessageOf([&] { ReadVersionResource(good.substr(0, good.size() - 1)); }), expected);
  std::string node = VersionText("a", "b");
  node[0] = 120;
  EXPECT_EQ(MessageOf([&] { ReadVersionResource(WithStrings({node})); }), expected);
  EXPECT_EQ(MessageOf([&] { ReadVersionResource(""); }), "it is damaged: a record ends too early");
}

}  // namespace
}  // namespace qx
