#include "host/history/RunHistory.h"

#include <gtest/gtest.h>

#include "host/history/Digest.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

// Keeps one file's content as the journal of a run does.
void KeepOne(const RunHistory& history, const std::string& path, std::string_view before,
             std::string_view after) {
  RunJournal journal(history, 5, {});
  PlannedWrite write{path, before, std::span(&after, 1)};
  journal.Keep({&write, 1}, {});
  journal.End(KeptResult::Succeeded, 1, {}, {});
}

TEST(RunHistory, CountsItsRunsAndKeepsTheNewest) {
  const TestFolder folder;
  const RunHistory history(folder.Write("p.xml", ""), folder / "state/");
  EXPECT_TRUE(history.Numbers().empty());
  for (int i = 0; i < 5; ++i) KeepOne(history, "/f", "old", "new");
  EXPECT_EQ(history.Numbers(), (std::vector<int>{5, 4, 3, 2, 1}));
  history.Prune(2);
  EXPECT_EQ(history.Numbers(), (std::vector<int>{5, 4}));
  KeepOne(history, "/f", "old", "new");
  EXPECT_EQ(history.Numbers().front(), 6);
}

TEST(RunHistory, BelongsToTheProjectWhateverNameLeadsToIt) {
  const TestFolder folder;
  const std::string path = folder.Write("p.xml", ""), state = folder / "state/";
  folder.Write("sub/q.xml", "");
  EXPECT_EQ(RunHistory(path, state).Folder(), RunHistory(folder / "sub/../p.xml", state).Folder());
  EXPECT_NE(RunHistory(path, state).Folder(), RunHistory(folder / "sub/q.xml", state).Folder());
}

TEST(RunHistory, ARunThatDoesNotEndIsCutOff) {
  const TestFolder folder;
  const RunHistory history(folder.Write("p.xml", ""), folder / "state/");
  {
    RunJournal journal(history, 5, {});
    const std::string_view after = "new";
    PlannedWrite write{"/f", "old", std::span(&after, 1)};
    journal.Keep({&write, 1}, {});
  }
  const auto record = history.Read(1);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->result, KeptResult::CutOff);
  EXPECT_EQ(record->files.at(0).before, Sha256("old"));
}

TEST(RunHistory, WhatCannotBeKeptIsSaidWithTheRemedy) {
  const TestFolder folder;
  folder.Write("state", "a file in its place");
  const RunHistory history(folder.Write("p.xml", ""), folder / "state/");
  const std::string message = MessageOf([&] { KeepOne(history, "/f", "old", "new"); });
  EXPECT_TRUE(message.starts_with("Cannot keep what this run changes: ")) << message;
  EXPECT_NE(message.find("History=0"), std::string::npos) << message;
}

}  // namespace
}  // namespace qx
