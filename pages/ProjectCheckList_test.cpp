#include "pages/ProjectCheckList.h"

#include "pages/PagesFixture.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

class ProjectList : public testing::Test {
 protected:
  void Rebuild(const std::vector<TestProject>& projects) {
    folder.Write("Any.csproj", "");
    list.Rebuild(*OpenSolution(folder.Write("App.sln", SolutionText(projects, {}))));
  }
  // "x NAME" for a ticked one, "- NAME" for another.
  Texts Ticks() const {
    Texts ticks;
    for (int i = 0; i < box.Count(); ++i) ticks.push_back((box.IsChecked(i) ? "x " : "- ") + box.Item(i));
    return ticks;
  }

  TestFolder folder;
  TCheckListBox box;
  ProjectCheckList list{box};
};

TEST_F(ProjectList, TicksWhatIsNew) {
  Rebuild({{"Library", kLibrary}, {"Program", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"x Library", "x Program"}));
}

TEST_F(ProjectList, KeepsTicksByNameInTheSolutionsOrder) {
  Rebuild({{"Library", kLibrary}, {"Program", kProgram}});
  box.SetChecked(0, false);
  Rebuild({{"Tool", kTool}, {"PROGRAM", kProgram}, {"LIBRARY", kGone}});
  EXPECT_EQ(Ticks(), (Texts{"x Tool", "x PROGRAM", "- LIBRARY"}));
  EXPECT_EQ(list.Ticked(), TStringList({kTool, kProgram}));
}

TEST_F(ProjectList, KeepsTicksOfNamesBeyondAscii) {
  Rebuild({{"Übung", kLibrary}});
  box.SetChecked(0, false);
  Rebuild({{"übung", kLibrary}});
  EXPECT_EQ(Ticks(), (Texts{"- übung"}));
}

TEST_F(ProjectList, ForgetsTheTickOfANameThatWasAwayOnce) {
  Rebuild({{"Library", kLibrary}});
  box.SetChecked(0, false);
  Rebuild({{"Program", kProgram}});
  Rebuild({{"Library", kLibrary}});
  EXPECT_EQ(Ticks(), (Texts{"x Library"}));
}

TEST_F(ProjectList, GivesTwoProjectsOfOneNameTheFirstOnesTick) {
  Rebuild({{"Same", kLibrary}, {"Same", kProgram}});
  box.SetChecked(0, false);
  Rebuild({{"Same", kLibrary}, {"Same", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"- Same", "- Same"}));
  box.SetChecked(0, true);
  Rebuild({{"Same", kLibrary}, {"Same", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"x Same", "x Same"}));
}

TEST_F(ProjectList, TakesANameWithAnEqualsSignForNewEachTime) {
  Rebuild({{"A=B", kLibrary}});
  box.SetChecked(0, false);
  Rebuild({{"A=B", kLibrary}, {"A", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"x A=B", "x A"}));
  // What is remembered of "A=B" stands under the name "A" with a value that is not "0".
  box.SetChecked(0, false);
  box.SetChecked(1, false);
  Rebuild({{"A", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"x A"}));
}

TEST_F(ProjectList, DoesSoInAListThatDidNotChangeToo) {
  for (int round = 0; round < 2; ++round) {
    Rebuild({{"A=B", kLibrary}, {"Tool", kTool}});
    EXPECT_EQ(Ticks(), (Texts{"x A=B", "x Tool"}));
    box.SetChecked(0, false);
  }
}

TEST_F(ProjectList, LooksAtTheNamesOfEachListAnew) {
  for (int round = 0; round < 2; ++round) Rebuild({{"Library", kLibrary}, {"Program", kProgram}});
  Rebuild({{"Same", kLibrary}, {"Same", kProgram}});
  box.SetChecked(0, false);
  Rebuild({{"Same", kLibrary}, {"Same", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"- Same", "- Same"}));
}

TEST_F(ProjectList, TakesANewIdentifierUnderAnOldName) {
  Rebuild({{"Library", kLibrary}, {"Program", kProgram}});
  box.SetChecked(1, false);
  Rebuild({{"Library", kGone}, {"Program", kProgram}});
  EXPECT_EQ(Ticks(), (Texts{"x Library", "- Program"}));
  EXPECT_EQ(list.Ticked(), TStringList({kGone}));
}

TEST_F(ProjectList, LeavesTheListsEnabledFlagAlone) {
  box.SetEnabled(false);
  Rebuild({{"Library", kLibrary}});
  EXPECT_FALSE(box.Enabled());
  box.SetEnabled(true);
  Rebuild({{"Library", kLibrary}});
  EXPECT_TRUE(box.Enabled());
}

TEST_F(ProjectList, FindsIdentifiersInAnyLetterCaseAndGivesTheSolutionsOwn) {
  Rebuild({{"Library", kLibrary}, {"Program", kProgram}});
  list.TickOnly(TStringList({kGone, "{aaaaaaaa-0000-0000-0000-00000000000A}"}));
  EXPECT_EQ(Ticks(), (Texts{"x Library", "- Program"}));
  EXPECT_EQ(list.Ticked(), TStringList({kLibrary}));
}

TEST_F(ProjectList, TicksTheFirstOfTwoProjectsWithOneIdentifier) {
  Rebuild({{"Library", kLibrary}, {"Copy", kLibrary}});
  list.TickOnly(TStringList({kLibrary}));
  EXPECT_EQ(Ticks(), (Texts{"x Library", "- Copy"}));
}

TEST_F(ProjectList, GivesTheTickedInTheListsOrder) {
  Rebuild({{"Library", kLibrary}, {"Program", kProgram}, {"Tool", kTool}});
  list.TickOnly(TStringList({kTool, kLibrary}));
  EXPECT_EQ(list.Ticked(), TStringList({kLibrary, kTool}));
}

TEST_F(ProjectList, RunsNoTickRuleItself) {
  int ticks = 0;
  box.OnTick = [&](int, bool) { ++ticks; };
  Rebuild({{"Library", kLibrary}});
  list.TickOnly(TStringList({kLibrary}));
  list.TickAll();
  EXPECT_EQ(ticks, 0);
  EXPECT_EQ(box.UserTick(0, false), TUserAnswer::Done);
  EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace qx
