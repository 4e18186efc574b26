#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

TEST(FindExisting, GivesNamesInTheCaseTheyHaveOnDisk) {
  const TestFolder folder;
  folder.Write("Src/Größe/App.RC", "");
  EXPECT_EQ(FindExisting(folder / "sRC\\GRÖßE\\aPP.rc"), folder / "Src/Größe/App.RC");
}

TEST(FindExisting, PrefersTheExactNameElseTheFirstInByteOrder) {
  const TestFolder folder;
  for (const char* name : {"abc", "ABC", "aBC"}) folder.Write(name, "");
  EXPECT_EQ(FindExisting(folder / "aBC"), folder / "aBC");
  EXPECT_EQ(FindExisting(folder / "Abc"), folder / "ABC");
}

TEST(FindExisting, SearchesEveryFolderThatDiffersInCaseOnly) {
  const TestFolder folder;
  folder.Write("Src/other", "");
  folder.Write("src/App.rc", "");
  EXPECT_EQ(FindExisting(folder / "Src\\APP.RC"), folder / "src/App.rc");
}

TEST(FindExisting, FollowsDotsWhereTheyStand) {
  const TestFolder folder;
  folder.Write("Sub/a", "");
  folder.Write("b", "");
  EXPECT_EQ(FindExisting(folder / "sub\\..\\B"), folder / "Sub/../b");
}

TEST(FindExisting, FindsANameThatHoldsABackslash) {
  const TestFolder folder;
  folder.Write("a\\b", "");
  EXPECT_EQ(FindExisting(folder / "a\\b"), folder / "a\\b");
}

TEST(PathFinder, ListsAFolderOnce) {
  const TestFolder folder;
  folder.Write("One", "");
  PathFinder finder;
  EXPECT_EQ(finder.Find(folder / "one"), folder / "One");
  folder.Write("Two", "");
  EXPECT_EQ(finder.Find(folder / "two"), "") << "it looked again";
  EXPECT_EQ(finder.Find(folder / "Two"), folder / "Two") << "exact names are asked for each time";
}

}  // namespace
}  // namespace qx
