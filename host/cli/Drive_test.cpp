// drive, with the tiny package's pages.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

class Drive : public CliTest {
 protected:
  // The answers to these commands, one a line.
  Words Answers(Words words, const Words& commands) {
    std::string input;
    for (const std::string& command : commands) input += command + "\n";
    Write("commands.txt", input);
    words.insert(words.begin(), "drive");
    words.insert(words.end(), {"--input", "commands.txt"});
    result_ = Host(words);
    Words answers;
    std::istringstream lines(result_.out);
    for (std::string line; std::getline(lines, line);) answers.push_back(line);
    return answers;
  }
  nlohmann::json Properties(const std::string& file, int action) {
    return nlohmann::json::parse(Host({"show", file, "--all", "--json"})
                                     .out)["actions"][static_cast<std::size_t>(action)]["properties"];
  }

  test::ProgramResult result_;
};

const char* const kOk = "{\"ok\":true}";

TEST_F(Drive, PassesOverAByteOrderMark) {
  Project("p.xml", {{"Text=one"}});
  EXPECT_EQ(Answers({"p.xml"}, {"\xEF\xBB\xBFpages"}), (Words{"[\"Tiny Page\"]"}));
}

TEST_F(Drive, ReadsDrivesWritesAndSaves) {
  Project("p.xml", {{"Text=one"}, {"Text=two", "Lines=a;b;c", "Loud=True", "Password=secret"}});
  const Words answers = Answers(
      {"p.xml", "--action", "2"},
      {"pages", "state Tiny Page.txtText", "state tiny page.lstLines", "state Tiny Page.txtPassword",
       "text Tiny Page.txtText  new text", "tick Tiny Page.lstLines 1 off", "state Tiny Page.lblTicked",
       "select Tiny Page.cboDeed 1", "text Tiny Page.spCount 500", "click Tiny Page.optQuiet",
       "text Tiny Page.txtPassword x", "write", "quit", "click Tiny Page.btnClear"});
  EXPECT_EQ(result_.code, 0) << result_.err;
  ASSERT_EQ(answers.size(), 13u) << result_.out;
  EXPECT_EQ(answers[0], "[\"Tiny Page\"]");
  EXPECT_TRUE(Holds(answers[1], "\"text\":\"two\"")) << answers[1];
  EXPECT_TRUE(Holds(answers[2], "\"checkedItems\":[\"a\",\"b\",\"c\"]")) << answers[2];
  EXPECT_TRUE(Holds(answers[3], "\"text\":\"******\"")) << answers[3];
  EXPECT_TRUE(Holds(answers[6], "\"caption\":\"b\"")) << answers[6];
  EXPECT_EQ(answers[10], "{\"error\":\"disabled\"}");
  EXPECT_EQ(answers[11], kOk);
  const auto saved = Properties("p.xml", 1);
  EXPECT_EQ(saved["Text"], " new text");
  EXPECT_EQ(saved["Lines"].dump(), "[\"a\",\"c\"]");
  EXPECT_EQ(saved["Deed"], "tdFail");
  EXPECT_EQ(saved["Count"], 100);
  EXPECT_EQ(saved["Loud"], false);
  EXPECT_EQ(Properties("p.xml", 0)["Text"], "one");
  EXPECT_FALSE(Holds(Content("p.xml"), "secret"));
}

TEST_F(Drive, WithoutWriteNothingIsSaved) {
  Project("p.xml", {{"Text=one"}});
  const std::string before = Content("p.xml");
  const Words answers = Answers({"p.xml"}, {"text Tiny Page.txtText two", "", "nonsense", "quit"});
  EXPECT_EQ(result_.code, 0);
  ASSERT_EQ(answers.size(), 3u);
  EXPECT_TRUE(Holds(answers[1], "{\"error\":\"There is no command \\\"nonsense\\\"")) << answers[1];
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(Drive, AnErrorOfAPageIsAnsweredAndNothingIsSaved) {
  Project("p.xml", {{"Text=one"}});
  const std::string before = Content("p.xml");
  const Words answers = Answers({"p.xml"}, {"text Tiny Page.spCount -1", "write", "pages"});
  ASSERT_EQ(answers.size(), 3u);
  EXPECT_EQ(answers[1], "{\"error\":\"Count cannot be negative\"}");
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(Drive, TheProjectsVariablesAndThoseOfSetExpand) {
  Write("p.xml",
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<BuildProject version=\"1\">\n"
        "<Variables><Variable name=\"A\">one</Variable></Variables>\n"
        "<Actions><Action type=\"Tiny Task\"><Property name=\"Text\">%A% %B%</Property></Action></Actions>\n"
        "</BuildProject>\n");
  const Words answers = Answers({"p.xml", "--set", "B=two"}, {"button Tiny Page.txtText 2", "dialogs"});
  ASSERT_EQ(answers.size(), 2u) << result_.err;
  EXPECT_EQ(answers[1], "[{\"kind\":\"message\",\"text\":\"one two\"}]");
}

TEST_F(Drive, OpensAtThePageThatAPropertysEditorNames) {
  Project("p.xml", {{"Text=one"}});
  EXPECT_EQ(Answers({"p.xml", "--property", "text"}, {"active"}), Words{"\"Tiny Page\""}) << result_.err;
}

TEST_F(Drive, TheOptionsPageEditsTheOptions) {
  const Words answers = Answers({"--options-page"}, {"pages", "text Tiny.txtGreeting moin", "write"});
  EXPECT_EQ(result_.code, 0) << result_.err;
  EXPECT_EQ(answers, (Words{"[\"Tiny\"]", kOk, kOk}));
  EXPECT_TRUE(Holds(Host({"options"}).out, "Greeting=moin"));
}

TEST_F(Drive, UsageErrorsExitWithTwo) {
  Project("p.xml", {{"Text=one"}});
  struct Row {
    Words words;
    const char* complaint;
  };
  for (const Row& row : std::vector<Row>{
           {{"drive"}, "needs FILE or --options-page"},
           {{"drive", "p.xml", "--options-page"}, "not both"},
           {{"drive", "--options-page", "--action", "1"}, "the options page has neither"},
           {{"drive", "none.xml"}, "there is no such file"},
           {{"drive", "p.xml", "--action", "2"}, "has no action 2 (nearest: 1)"},
           {{"drive", "p.xml", "--property", "Txet"}, "There is no property \"Txet\" (nearest: Text)"},
           {{"drive", "p.xml", "--property", "Count"}, "The property Count has no editor that opens pages"},
           {{"drive", "p.xml", "--input", "none.txt"}, "none.txt"}}) {
    const auto result = Host(row.words);
    EXPECT_EQ(result.code, 2) << row.complaint;
    EXPECT_TRUE(Holds(result.err, row.complaint)) << result.err;
    EXPECT_EQ(result.out, "");
  }
}

}  // namespace
}  // namespace qx::cli
