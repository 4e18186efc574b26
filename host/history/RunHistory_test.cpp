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

TEST(RunHistory, DigestsWhatStaysOfAFileOnce) {
  const TestFolder folder;
  const RunHistory history(folder.Write("p.xml", ""), folder / "state/");
  const std::string before = "begin old end";
  const std::string_view whole = before;
  const std::vector<std::vector<std::string_view>> cases{
      {whole.substr(0, 0), whole.substr(0, 6), "new", whole.substr(9)},
      {whole.substr(0, 6), whole.substr(9)},
      {whole},
      {whole, "more"},
      {},
      {"new"},
      {whole.substr(0, 6), whole.substr(6)}};
  RunJournal journal(history, 5, {});
  std::vector<PlannedWrite> writes;
  std::vector<std::string> paths, after;
  for (const auto& pieces : cases) {
    paths.push_back("/f" + std::to_string(paths.size()));
    after.emplace_back();
    for (const std::string_view piece : pieces) after.back() += piece;
  }
  for (std::size_t i = 0; i < cases.size(); ++i) writes.push_back({paths[i], whole, std::span(cases[i])});
  journal.Keep(writes, {});
  const auto record = history.Read(1);
  ASSERT_EQ(record->files.size(), cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(record->files[i].before, Sha256(before));
    EXPECT_EQ(record->files[i].after, Sha256(after[i])) << i;
  }
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
