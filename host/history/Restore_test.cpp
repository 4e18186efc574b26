#include "host/history/Restore.h"

#include <gtest/gtest.h>

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
    for (const RestoredFile& file : files) text += "RmaCL"[static_cast<int>(file.step)];
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
  EXPECT_EQ(Steps(Restore(history, 1, false)), "RmR");
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Read("gone"), "was here");
  EXPECT_FALSE(folder.Has("made"));
  EXPECT_EQ(Steps(Restore(history, 1, false)), "aaa");
}

TEST_F(Restoring, AFileThatWasChangedSinceIsLeftUnlessForced) {
  folder.Write("a", "old");
  Run([&] { ReplaceFile(folder / "a", "new"); });
  folder.Write("a", "newer");
  EXPECT_EQ(Steps(Restore(history, 1, false)), "C");
  EXPECT_EQ(folder.Read("a"), "newer");
  EXPECT_EQ(Steps(Restore(history, 1, true)), "R");
  EXPECT_EQ(folder.Read("a"), "old");
}

TEST_F(Restoring, AFileThatARunWroteTwiceIsAsBeforeTheFirst) {
  folder.Write("a", "old");
  Run([&] {
    ReplaceFile(folder / "a", "between");
    ReplaceFile(folder / "a", "new");
  });
  EXPECT_EQ(Steps(Restore(history, 1, false)), "R");
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

}  // namespace
}  // namespace qx
