// init: which action answers, what is written and said, and what is refused.
#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

using InitCommand = CliTest;

TEST_F(InitCommand, AsksTheActionsAndSaysWhatTheyDecided) {
  std::filesystem::create_directories(folder_ / "sub");
  Write("sub/My App.tiny", "");
  const auto result = Host({"init", "sub/My App.tiny"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "Wrote sub/My App.build.xml with the action Tiny Task\nText: My App.tiny\n"
            "Next: qxhost run \"sub/My App.build.xml\"\n");
  EXPECT_EQ(result.err, "qxhost: warning: it is tiny\n");
  EXPECT_TRUE(Holds(Content("sub/My App.build.xml"), "<Property name=\"Text\">My App.tiny</Property>"));
}

TEST_F(InitCommand, HandsOnWhatIsAskedFor) {
  Write("a.tiny", "");
  ASSERT_EQ(Host({"init", "a.tiny", "b.xml", "--configuration", "Some|Any", "--stamp"}).code, 0);
  const std::string written = Content("b.xml");
  EXPECT_TRUE(Holds(written, "<Item>Some|Any</Item>")) << written;
  EXPECT_TRUE(Holds(written, "<Property name=\"Loud\">True</Property>")) << written;
}

TEST_F(InitCommand, ProposesToKeepLineEndsWhereSourcesHaveLineFeeds) {
  Write("a.tiny", "one\ntwo\n");
  const std::string proposal =
      "1 of the files to stamp ends lines in LF: qxhost options LineEnds=keep leaves them so, else they "
      "become CR LF\n";
  EXPECT_TRUE(Holds(Host({"init", "a.tiny", "a.xml"}).out, proposal + "Next: "));
  ASSERT_EQ(Host({"options", "LineEnds=keep"}).code, 0);
  EXPECT_FALSE(Holds(Host({"init", "a.tiny", "b.xml"}).out, "LineEnds"));
}

TEST_F(InitCommand, RefusesAndWritesNothing) {
  Write("a.tiny", "");
  Write("a.txt", "");
  Write("taken.xml", "mine");
  std::filesystem::create_directories(folder_ / "sub.tiny");
  for (const auto& [words, complaint] : std::vector<std::pair<Words, std::string>>{
           {{"init", "none.tiny"}, "there is no such file"},
           {{"init", "sub.tiny"}, "is a folder"},
           {{"init", "a.txt", "b.xml"}, "No loaded package makes a build project from "},
           {{"init", "a.tiny", "taken.xml"}, "exists already and is not overwritten"},
           {{"init", "a.tiny", "b.xml", "--configuration", "none"}, "has no configuration"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << complaint;
    EXPECT_TRUE(Holds(result.err, complaint)) << result.err;
    EXPECT_EQ(result.out, "");
  }
  EXPECT_EQ(Content("taken.xml"), "mine");
  EXPECT_FALSE(Exists("b.xml"));
}

}  // namespace
}  // namespace qx::cli
