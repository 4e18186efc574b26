// What a run keeps and how it is had back: history, restore, numbers that stand before files, locks, and outputs that
// are inputs.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"
#include "host/history/RunHistory.h"

namespace qx::cli {
namespace {

class Keeping : public CliTest {
 protected:
  void SetUp() override {
    CliTest::SetUp();
    std::filesystem::remove_all(RunHistory(PathOf("p.xml")).Folder());
  }
  nlohmann::json Runs() const {
    const auto result = Host({"history", "p.xml", "--json"});
    EXPECT_EQ(result.code, 0) << result.err;
    return nlohmann::json::parse(result.out)["runs"];
  }
  // A project whose task writes "new" into tiny.txt, which holds "old".
  void WritingProject() const {
    Project("p.xml", {{"Deed=tdWrite", "Text=new"}});
    Write("tiny.txt", "old\n");
  }
  // As a run leaves it that was killed behind its first file.
  void CutOff() const {
    const RunHistory history(PathOf("p.xml"));
    std::filesystem::remove(history.FileOf(2));
    RunJournal journal(history, 1000, {});
    const std::string path = RealPath(PathOf("tiny.txt")), other = RealPath(PathOf("other.txt"));
    const std::string_view after = "new\n";
    const PlannedWrite writes[] = {{path, "old\n", std::span(&after, 1)},
                                   {other, "old\n", std::span(&after, 1)}};
    journal.Keep(writes, {});
    Write("tiny.txt", "new\n");
    Write("other.txt", "old\n");
  }
};

TEST_F(Keeping, TheHistoryTellsEachRunAndItsFiles) {
  WritingProject();
  EXPECT_EQ(Host({"run", "p.xml"}).code, 0);
  Host({"set", "p.xml", "Deed=tdFail"});
  EXPECT_EQ(Host({"run", "p.xml"}).code, 1);
  const nlohmann::json runs = Runs();
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[0]["run"], 2);
  EXPECT_EQ(runs[0]["result"], "failed");
  EXPECT_EQ(runs[1]["result"], "succeeded");
  ASSERT_EQ(runs[1]["files"].size(), 1u);
  EXPECT_EQ(runs[1]["files"][0]["path"], RealPath(PathOf("tiny.txt")));
  EXPECT_EQ(runs[1]["files"][0]["before"].get<std::string>().size(), 64u);
  EXPECT_TRUE(Holds(Host({"history", "p.xml"}).out, "1 file changed"));
}

TEST_F(Keeping, RestorePutsTheFilesBack) {
  WritingProject();
  EXPECT_EQ(Host({"run", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "new\n");
  const auto shown = Host({"restore", "p.xml", "--dry-run"});
  EXPECT_EQ(shown.out, "would restore " + RealPath(PathOf("tiny.txt")) + "\n");
  EXPECT_EQ(Content("tiny.txt"), "new\n");
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
}

TEST_F(Keeping, RestoreLeavesWhatWasChangedSinceUnlessItIsForcedAndKeepsThatThen) {
  WritingProject();
  Host({"run", "p.xml"});
  Write("tiny.txt", "mine\n");
  const auto refused = Host({"restore", "p.xml"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Holds(refused.err, "tiny.txt was changed since run 1 and is left alone")) << refused.err;
  EXPECT_EQ(Content("tiny.txt"), "mine\n");
  EXPECT_EQ(Host({"restore", "p.xml", "--force"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "mine\n");
}

TEST_F(Keeping, RestoreTakesNumbersBackWhenItIsTold) {
  WritingProject();
  Host({"run", "p.xml"});
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "Count=1"));
  EXPECT_EQ(Host({"restore", "p.xml", "--numbers"}).code, 0);
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "Count=0"));
}

TEST_F(Keeping, AnOlderRunIsNamedByItsNumberAndOneThatIsNotKeptIsRefused) {
  WritingProject();
  Host({"run", "p.xml"});
  Host({"set", "p.xml", "Text=newer"});
  Host({"run", "p.xml"});
  EXPECT_EQ(Host({"restore", "p.xml", "--run", "1"}).code, 1);  // run 2 has changed it since
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_EQ(Host({"restore", "p.xml", "--run", "1"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
  EXPECT_EQ(Host({"restore", "p.xml", "--run", "7"}).code, 2);
}

TEST_F(Keeping, TheSettingSaysHowManyRunsAreKept) {
  WritingProject();
  ASSERT_EQ(Host({"options", "History=2"}).code, 0);
  for (int i = 0; i < 4; ++i) Host({"run", "p.xml"});
  EXPECT_EQ(Runs().size(), 2u);
  ASSERT_EQ(Host({"options", "History=0"}).code, 0);
  Host({"run", "p.xml"});
  EXPECT_EQ(Runs()[0]["run"], 4);
}

TEST_F(Keeping, TheNextCommandTellsOfARunThatWasCutOffUntilItIsTakenBack) {
  WritingProject();
  CutOff();
  const auto told = Host({"show", "p.xml"});
  EXPECT_EQ(told.code, 0);
  EXPECT_TRUE(Holds(told.err, " was cut off: 1 of 2 files were stamped; qxhost restore takes them back"))
      << told.err;
  EXPECT_EQ(Runs()[0]["result"], "cut off");
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
  EXPECT_FALSE(Holds(Host({"show", "p.xml"}).err, "cut off"));
}

TEST_F(Keeping, WhatARunThatWasCutOffLeftBesideItsFilesGoesWithTheNextCommand) {
  WritingProject();
  CutOff();
  Write(".tiny.txt.tmp", "half");
  Write("p.xml.lock", "1");
  Host({"show", "p.xml"});
  EXPECT_FALSE(Exists(".tiny.txt.tmp"));
  EXPECT_FALSE(Exists("p.xml.lock"));
}

TEST_F(Keeping, NumbersThatCannotBeSavedStopTheRunBeforeItWrites) {
  WritingProject();
  std::filesystem::permissions(PathOf("p.xml"), std::filesystem::perms::owner_read);
  EXPECT_NE(Host({"run", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
  std::filesystem::permissions(PathOf("p.xml"), std::filesystem::perms::owner_all);
}

TEST_F(Keeping, ARunThatSavesNothingKeepsTheFilesAllTheSame) {
  WritingProject();
  const std::string before = Content("p.xml");
  EXPECT_EQ(Host({"run", "p.xml", "--no-save"}).code, 0);
  EXPECT_EQ(Content("p.xml"), before);
  EXPECT_EQ(Host({"restore", "p.xml"}).code, 0);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
}

TEST_F(Keeping, ALogFileOverTheBuildProjectOrTheOptionsIsRefused) {
  WritingProject();
  Host({"options", "History=2"});
  const std::string before = Content("p.xml");
  for (const char* name : {"p.xml", "./p.xml", "options.xml"}) {
    const auto result = Host({"run", "p.xml", "--log-file", name});
    EXPECT_EQ(result.code, 2) << name;
    EXPECT_TRUE(Holds(result.err, "Cannot write into ")) << result.err;
  }
  EXPECT_EQ(Content("p.xml"), before);
  EXPECT_EQ(Content("tiny.txt"), "old\n");
}

TEST_F(Keeping, ASecondRunWaitsAsLongAsItIsTold) {
  WritingProject();
  const auto lock = std::make_unique<FileLock>(PathOf("p.xml"));
  const auto refused = Host({"run", "p.xml", "--wait", "0.2"});
  EXPECT_EQ(refused.code, 2);
  EXPECT_TRUE(Holds(refused.err, "p.xml is in use by process ")) << refused.err;
}

}  // namespace
}  // namespace qx::cli
