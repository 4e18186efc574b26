#include "host/history/Restore.h"

#include <gtest/gtest.h>

#include "host/system/StopRequests.h"
#include "host/testing/TestFolder.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

// Takes down what a run writes.
class Keeper final : public WriteObserver {
 public:
  explicit Keeper(const RunHistory& history) : journal_(history, 5, {}) {}
  void BeforeWrites(std::span<const PlannedWrite> writes) override { journal_.Keep(writes, {}); }

 private:
  RunJournal journal_;
};

class Restoring : public testing::Test {
 protected:
  void Run(const std::function<void()>& writes) const {
    Keeper keeper(history);
    const WritesObserved observed(keeper);
    writes();
  }
  std::string Steps(const std::vector<RestoredFile>& files) const {
    std::string text;
    for (const RestoredFile& file : files) text += "RmaCLUA"[static_cast<int>(file.step)];
    return text;
  }

  TestFolder folder;
  RunHistory history{folder.Write("p.xml", ""), folder / "state/"};
};

TEST_F(Restoring, BringsOldContentsBackAndTakesNewFilesAway) {
  folder.Write("a", "old");
  folder.Write("gone", "was here");
  Run([&] {
    ReplaceFile(folder / "a", "new");
    ReplaceFile(folder / "made", "x");
    RemoveFile(folder / "gone");
  });
  EXPECT_EQ(Steps(PlanRestore(history, 1, false)), "RmR");
  EXPECT_EQ(folder.Read("a"), "new");
  EXPECT_EQ(Steps(Restore(history, 1, {})), "RmR");
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Read("gone"), "was here");
  EXPECT_FALSE(folder.Has("made"));
  EXPECT_EQ(Steps(Restore(history, 1, {})), "aaa");
}

TEST_F(Restoring, AFileThatWasChangedSinceIsLeftUnlessForced) {
  folder.Write("a", "old");
  Run([&] { ReplaceFile(folder / "a", "new"); });
  folder.Write("a", "newer");
  EXPECT_EQ(Steps(Restore(history, 1, {})), "C");
  EXPECT_EQ(folder.Read("a"), "newer");
  EXPECT_EQ(Steps(Restore(history, 1, {true, nullptr, ""})), "R");
  EXPECT_EQ(folder.Read("a"), "old");
}

TEST_F(Restoring, AFileThatARunWroteTwiceIsAsBeforeTheFirst) {
  folder.Write("a", "old");
  Run([&] {
    ReplaceFile(folder / "a", "between");
    ReplaceFile(folder / "a", "new");
  });
  EXPECT_EQ(Steps(Restore(history, 1, {})), "R");
  EXPECT_EQ(folder.Read("a"), "old");
}

TEST_F(Restoring, CountsWhatIsAsTheRunLeftIt) {
  folder.Write("a", "old");
  folder.Write("b", "old");
  Run([&] {
    ReplaceFile(folder / "a", "new");
    ReplaceFile(folder / "b", "new");
  });
  folder.Write("b", "old");
  const StampedCount count = CountStamped(*history.Read(1));
  EXPECT_EQ(count.stamped, 1u);
  EXPECT_EQ(count.all, 2u);
}

// One file on a server that may be away.
struct Server final : ServerFiles {
  std::string Read(const std::string&) override {
    if (isAway) throw Exception("The server is away");
    return content;
  }
  void Put(const std::string&, std::string_view bytes) override { content = bytes; }
  std::string content;
  bool isAway = false;
};

class RestoringOnServers : public Restoring {
 protected:
  void SetUp() override {
    Run([] {
      const std::string_view after = "new";
      const PlannedWrite put{"http://server/Site/a.cs", "old", std::span(&after, 1)};
      TellObserver({&put, 1});
    });
  }
  std::string Restored(bool force = false) {
    return Steps(Restore(history, 1, {force, &server, folder / ""}));
  }
  Server server;
};

TEST_F(RestoringOnServers, PutsBackWhatNobodyChanged) {
  server.content = "new";
  EXPECT_EQ(Steps(PlanRestore(history, 1, false)), "U");
  EXPECT_EQ(Restored(), "R");
  EXPECT_EQ(server.content, "old");
  EXPECT_EQ(Restored(), "a");
  server.content = "theirs";
  EXPECT_EQ(Restored(), "C");
  EXPECT_EQ(server.content, "theirs");
  EXPECT_EQ(Restored(true), "R");
  EXPECT_EQ(server.content, "old");
}

TEST_F(RestoringOnServers, WritesAsideWhatNoServerTakes) {
  server.isAway = true;
  folder.Write("a.cs.before-run-1", "another one");
  const auto files = Restore(history, 1, {false, &server, folder / ""});
  EXPECT_EQ(Steps(files), "A");
  EXPECT_EQ(files[0].reason, "The server is away");
  EXPECT_EQ(files[0].aside, folder / "a.cs.before-run-1.2");
  EXPECT_EQ(folder.Read("a.cs.before-run-1.2"), "old");
  EXPECT_EQ(folder.Read("a.cs.before-run-1"), "another one");
  EXPECT_EQ(Restored(), "A") << "once more it is the same file";
  EXPECT_FALSE(folder.Has("a.cs.before-run-1.3"));
}

// Nobody has given up on the server: the next restoring goes on.
TEST_F(RestoringOnServers, AStopWritesNothingAside) {
  StopRequests requests;
  requests.Stop();
  server.isAway = true;
  EXPECT_THROW(Restored(), Exception);
  EXPECT_FALSE(folder.Has("a.cs.before-run-1"));
}

TEST_F(RestoringOnServers, AreNotAskedForACount) {
  const StampedCount count = CountStamped(*history.Read(1));
  EXPECT_EQ(count.all, 0u);
  EXPECT_EQ(count.onServers, 1u);
}

}  // namespace
}  // namespace qx
