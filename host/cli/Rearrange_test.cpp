// remove, move, enable, disable and var: what they change, that nothing else changes, and what they refuse.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

class RearrangeCommands : public CliTest {
 protected:
  // The texts of the actions, in their order.
  std::string Texts() const {
    const auto shown = nlohmann::json::parse(Host({"show", "p.xml", "--json"}).out);
    std::string texts;
    for (const auto& action : shown["actions"]) texts += std::string(action["properties"]["Text"]) + " ";
    return texts;
  }
  void Do(Words words) const {
    const auto result = Host(std::move(words));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "");
  }
};

TEST_F(RearrangeCommands, RemoveAndMoveActions) {
  Project("p.xml", {{"Text=a"}, {"Text=b"}, {"Text=c"}});
  Do({"move", "p.xml", "3", "1"});
  EXPECT_EQ(Texts(), "c a b ");
  Do({"move", "p.xml", "1", "2"});
  EXPECT_EQ(Texts(), "a c b ");
  Do({"move", "p.xml", "2", "2"});
  EXPECT_EQ(Texts(), "a c b ");
  Do({"remove", "p.xml", "2"});
  EXPECT_EQ(Texts(), "a b ");
}

TEST_F(RearrangeCommands, ADisabledActionIsKeptAndPassedOver) {
  Project("p.xml", {{"Text=a"}, {"Text=b", "Verdict=tvError"}});
  const std::string before = Content("p.xml");
  Do({"disable", "p.xml", "2"});
  EXPECT_TRUE(Holds(Content("p.xml"), "<Action type=\"Tiny Task\" enabled=\"False\">"));
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "\n2 Tiny Task (disabled)\n"));
  const auto shown = nlohmann::json::parse(Host({"show", "p.xml", "--json"}).out);
  EXPECT_EQ(shown["actions"][0]["enabled"], true);
  EXPECT_EQ(shown["actions"][1]["enabled"], false);
  EXPECT_EQ(Host({"validate", "p.xml"}).code, 0);
  const auto result = Host({"run", "p.xml", "--no-save"});
  EXPECT_EQ(result.code, 0);
  EXPECT_FALSE(Holds(result.out, "b\n")) << result.out;
  Do({"enable", "p.xml", "2"});
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(RearrangeCommands, ARunKeepsADisabledActionDisabled) {
  Project("p.xml", {{"Text=a"}, {"Text=b"}});
  Do({"disable", "p.xml", "1"});
  EXPECT_EQ(Host({"run", "p.xml"}).code, 0);
  const auto shown = nlohmann::json::parse(Host({"show", "p.xml", "--json"}).out);
  EXPECT_EQ(shown["actions"][0]["enabled"], false);
  EXPECT_EQ(shown["actions"][0]["properties"]["Count"], 0);
  EXPECT_EQ(shown["actions"][1]["properties"]["Count"], 1);
}

TEST_F(RearrangeCommands, ADisabledActionNeedsNoPackage) {
  Write("p.xml",
        "<BuildProject version=\"1\"><Actions><Action type=\"Other\" enabled=\"False\"/><Action type=\"Tiny "
        "Task\"/></Actions></BuildProject>");
  EXPECT_EQ(Host({"run", "p.xml"}).code, 0);
}

TEST_F(RearrangeCommands, ChangeNothingElseInTheFile) {
  const std::string text =
      "<BuildProject version=\"1\">\n<!-- why --><Future/>\n<Actions>\n  <Action type=\"Other\"><Property "
      "name=\"A\">1</Property></Action>\n  <Action type=\"Tiny Task\"/>\n</Actions></BuildProject>";
  Write("p.xml", text);
  for (const Words& words : {Words{"disable", "p.xml", "2"}, Words{"enable", "p.xml", "2"},
                             Words{"move", "p.xml", "1", "2"}, Words{"move", "p.xml", "2", "1"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(Holds(result.err, "<Future>")) << result.err;
  }
  EXPECT_EQ(Content("p.xml"), text);
}

TEST_F(RearrangeCommands, NeverWriteASecretInClearText) {
  Write("p.xml",
        "<BuildProject version=\"1\"><Actions><Action type=\"Tiny Task\">"
        "<Property name=\"Password\">hush</Property></Action><Action type=\"Tiny "
        "Task\"/></Actions></BuildProject>");
  const auto result = Host({"remove", "p.xml", "2"});
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(Holds(result.err, "clear text")) << result.err;
  EXPECT_FALSE(Holds(Content("p.xml"), "hush"));
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "Password=***"));
}

TEST_F(RearrangeCommands, SetAndRemoveVariables) {
  Project("p.xml", {{"Text=%A%%B%"}});
  Do({"var", "p.xml", "A=one", "B=x=y"});
  EXPECT_EQ(Host({"var", "p.xml"}).out, "A=one\nB=x=y\n");
  Do({"var", "p.xml", "a=two"});
  EXPECT_EQ(Host({"var", "p.xml"}).out, "A=two\nB=x=y\n");
  Do({"var", "p.xml", "--remove", "A", "C="});
  EXPECT_EQ(Host({"var", "p.xml"}).out, "B=x=y\nC=\n");
}

TEST_F(RearrangeCommands, RefuseWhatIsNotThere) {
  Project("p.xml", {{}});
  ASSERT_EQ(Host({"var", "p.xml", "ROOT=src"}).code, 0);
  const std::string before = Content("p.xml");
  for (const auto& [words, complaint] : std::vector<std::pair<Words, std::string>>{
           {{"remove", "p.xml", "2"}, "p.xml has no action 2; it has 1"},
           {{"remove", "p.xml", "0"}, "\"0\" is no action's number"},
           {{"disable", "p.xml", "x"}, "\"x\" is no action's number"},
           {{"enable", "p.xml", "7"}, "has no action 7"},
           {{"move", "p.xml", "1", "2"}, "has no action 2"},
           {{"move", "p.xml", "1"}, "needs TO"},
           {{"var", "p.xml", "--remove", "ROTO"},
            "has no variable \"ROTO\"; supported: ROOT (nearest: ROOT)"},
           {{"var", "p.xml", "=x"}, "not of the form NAME=VALUE"},
           {{"var", "p.xml", "A=1", "B%=2"}, "percent sign"},
           {{"remove", "none.xml", "1"}, "there is no such file; make one with qxhost init or qxhost new"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << complaint;
    EXPECT_TRUE(Holds(result.err, complaint)) << result.err;
    EXPECT_EQ(Content("p.xml"), before);
  }
}

TEST_F(RearrangeCommands, AFolderIsCalledAFolder) {
  std::filesystem::create_directories(folder_ / "sub");
  for (const char* command : {"run", "validate", "show", "version"}) {
    const auto result = Host({command, "sub"});
    EXPECT_EQ(result.code, 2);
    EXPECT_TRUE(Holds(result.err, "sub is a folder; name a build project in it")) << result.err;
  }
}

TEST_F(RearrangeCommands, ASettingThatNothingUsesIsAWarning) {
  Project("p.xml", {{"Text=%A%"}});
  ASSERT_EQ(Host({"var", "p.xml", "A=%B%"}).code, 0);
  for (const char* command : {"run", "validate"}) {
    const auto result = Host({command, "p.xml", "--set", "b=1", "--set", "CONFGI=Release"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(Holds(result.err, "warning: --set CONFGI: nothing in ")) << result.err;
    EXPECT_FALSE(Holds(result.err, "--set b")) << result.err;
  }
}

}  // namespace
}  // namespace qx::cli
