// version: what it shows and sets, and that a refusal changes nothing.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

using VersionCommand = CliTest;

TEST_F(VersionCommand, ShowsTheNumbersAsTheyStand) {
  Project("p.xml", {{"Text=1.2"}});
  const std::string before = Content("p.xml");
  EXPECT_EQ(Host({"version", "p.xml"}).out, "Text: 1.2\n");
  EXPECT_EQ(nlohmann::ordered_json::parse(Host({"version", "p.xml", "--json"}).out).dump(),
            R"({"versions":[{"name":"Text","value":"1.2"}]})");
  EXPECT_EQ(Content("p.xml"), before);
  ASSERT_EQ(Host({"set", "p.xml", "Text="}).code, 0);
  EXPECT_EQ(Host({"version", "p.xml"}).out, "Text: none\n");
}

TEST_F(VersionCommand, SetsAndRaisesThem) {
  Project("p.xml", {{"Text=1.2"}, {"Text=9.9"}});
  EXPECT_EQ(Host({"version", "p.xml", "2.1.0.0"}).out, "Text: 2.1.0.0\n");
  EXPECT_EQ(Host({"version", "p.xml", "--action", "2", "--bump", "build", "--json"}).code, 0);
  EXPECT_EQ(Host({"version", "p.xml"}).out, "Text: 2.1.0.0\n");
  EXPECT_EQ(Host({"version", "p.xml", "--action", "2"}).out, "Text: 9.9+2\n");
}

TEST_F(VersionCommand, ARefusalChangesNothing) {
  Project("p.xml", {{"Text=full"}});
  const std::string before = Content("p.xml");
  for (const auto& [words, complaint] : std::vector<std::pair<Words, std::string>>{
           {{"version", "p.xml", "2"}, "\"2\" is no version"},
           {{"version", "p.xml", "--bump", "major"}, "Text is full"},
           {{"version", "p.xml", "--bump", "mayor"},
            "supported: major, minor, build, revision (nearest: major)"},
           {{"version", "p.xml", "1.0", "--bump", "major"}, "not both"},
           {{"version", "p.xml", "--action", "2"}, "has no action 2"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << words.back();
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(Holds(result.err, complaint)) << result.err;
    EXPECT_EQ(Content("p.xml"), before);
  }
}

TEST_F(VersionCommand, NeedsAnActionThatKeepsVersions) {
  Write("p.xml", "<BuildProject version=\"1\"><Actions><Action type=\"Other\"/></Actions></BuildProject>");
  const auto result = Host({"version", "p.xml"});
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(Holds(result.err, "p.xml has no action that keeps version numbers")) << result.err;
}

TEST_F(VersionCommand, SetAndAddWarnOfATextThatIsNotMeantSo) {
  Project("p.xml", {{}});
  for (const Words& words :
       {Words{"set", "p.xml", "Text=odd"}, Words{"add", "p.xml", "Tiny Task", "Text=odd"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "qxhost: warning: Text: even is meant\n");
  }
  EXPECT_EQ(Host({"set", "p.xml", "Text=fine"}).err, "");
}

}  // namespace
}  // namespace qx::cli
