// check: its exit codes, what it leaves alone, and that a run says the same without losing its own words.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

class CheckCommand : public CliTest {
 protected:
  nlohmann::json Check(Words words = {}) const {
    words.insert(words.begin(), {"check", "p.xml", "--json"});
    return nlohmann::json::parse(Host(words).out);
  }
};

TEST_F(CheckCommand, ExitsByTheWorstFinding) {
  Project("p.xml", {{"Text=fine"}});
  const std::string before = Content("p.xml");
  EXPECT_EQ(Host({"check", "p.xml"}).code, 0);
  ASSERT_EQ(Host({"set", "p.xml", "Text=odd"}).code, 0);
  const auto warned = Host({"check", "p.xml"});
  EXPECT_EQ(warned.code, 0);
  EXPECT_EQ(warned.out,
            "warning: Text: It is odd\n0 of 1 projects are built\n    Tiny is not: it is not loud\n"
            "0 errors, 1 warning\n");
  ASSERT_EQ(Host({"set", "p.xml", "Text=%NO_SUCH_NAME%"}).code, 0);
  EXPECT_EQ(Host({"check", "p.xml"}).code, 3);
  EXPECT_EQ(Host({"check", "p.xml", "--set", "NO_SUCH_NAME=x"}).code, 0);
  ASSERT_EQ(Host({"set", "p.xml", "Text=fine", "Verdict=tvError"}).code, 0);
  EXPECT_EQ(Host({"check", "p.xml"}).code, 3);
  EXPECT_EQ(Host({"check", "none.xml"}).code, 2);
  Write("broken.xml", "<BuildProject");
  EXPECT_EQ(Host({"check", "broken.xml"}).code, 2);
  EXPECT_TRUE(Holds(before, "fine"));
}

TEST_F(CheckCommand, TellsWhatEachActionSaysByItsNumber) {
  Project("p.xml", {{"Text=odd", "Lines=a.cs", "Loud=True"}, {"Verdict=tvThrow"}, {"Verdict=tvSilent"}});
  const std::string before = Content("p.xml");
  const auto check = Check({"--set", "CONFGI=x"});
  std::string told;
  for (const auto& finding : check["findings"])
    told += finding["action"].dump() + " " + std::string(finding["severity"]) + " " +
            std::string(finding["subject"]) + ": " + std::string(finding["message"]) + "\n";
  EXPECT_EQ(told,
            "1 warning Text: It is odd\n"
            "2 error Tiny Task: Validating threw\n"
            "3 error Tiny Task: The action cannot run as it is set\n"
            "0 warning --set: nothing uses %CONFGI%\n");
  EXPECT_EQ(check["projects"].size(), 3u);
  EXPECT_EQ(check["projects"][0]["builds"], true);
  EXPECT_EQ(
      check["stamps"].dump(),
      R"([{"action":1,"file":"a.cs","from":{"assemblyVersion":"1.0.0.0","fileVersion":""},"kind":"AssemblyInfo","project":"Tiny"}])");
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(CheckCommand, PassesOverDisabledActions) {
  Project("p.xml", {{"Text=odd", "Verdict=tvError"}});
  ASSERT_EQ(Host({"disable", "p.xml", "1"}).code, 0);
  EXPECT_EQ(Check().dump(), R"({"findings":[],"projects":[],"stamps":[]})");
}

TEST_F(CheckCommand, ARunSaysTheSameAndKeepsItsOwnWords) {
  Project("p.xml", {{"Text=odd"}, {"Text=%NO_SUCH_NAME%"}});
  for (const char* style : {"text", "json"}) {
    const auto result = Host({"run", "p.xml", "--log", style});
    EXPECT_EQ(result.code, 4);
    EXPECT_EQ(result.err,
              "qxhost: warning: action 1: Text: It is odd\n"
              "qxhost: action 2: Text: Undefined variable : NO_SUCH_NAME (define it)\n");
    EXPECT_TRUE(Holds(result.out, "Undefined variable : NO_SUCH_NAME")) << result.out;
    EXPECT_FALSE(Holds(result.out, "It is odd")) << result.out;
  }
}

TEST_F(CheckCommand, ARunThatIsNotBegunSaysWhatValidatingSays) {
  Project("p.xml", {{"Text=odd", "Verdict=tvError"}});
  const auto result = Host({"run", "p.xml"});
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(Holds(result.out, "Verdict: The verdict is an error"));
}

}  // namespace
}  // namespace qx::cli
