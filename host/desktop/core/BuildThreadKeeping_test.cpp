// What a run from the window keeps, holds and tells: the same as a run by the command line.
#include "host/desktop/testdata/BuildFixture.h"
#include "host/history/RunHistory.h"
#include "host/keeping/Keeping.h"

namespace qx::desktop {
namespace {

class KeptBuild : public BuildThreadTest {
 protected:
  ~KeptBuild() override { Probe::folders.clear(); }
  // A saved project of one probe.
  void ProbeProject() {
    Doc().Add("Probe", 0);
    Doc().SaveAs(folder_ / "p.xml");
    std::filesystem::remove_all(RunHistory(folder_ / "p.xml").Folder());
  }
};

TEST_F(KeptBuild, IsTakenBackByTheCommandLine) {
  Project({{{"Deed", "tdWrite"}, {"Text", "new"}}});
  folder_.Write("tiny.txt", "old\n");
  EXPECT_EQ(Build(BuildKind::Run).error, "");
  EXPECT_EQ(folder_.Read("tiny.txt"), "new\n");
  const auto kept = RunHistory(folder_ / "p.xml").Read(1);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->result, KeptResult::Succeeded);
  QxHost({"restore", "p.xml"});
  EXPECT_EQ(folder_.Read("tiny.txt"), "old\n");
}

TEST_F(KeptBuild, TakesBackTheNumbersOfTheRunAndNoEditBeforeIt) {
  Project({{{"Deed", "tdWrite"}, {"Text", "new"}}});
  folder_.Write("tiny.txt", "old\n");
  Set(0, "Count", "7");
  EXPECT_EQ(Build(BuildKind::Run).error, "");
  EXPECT_TRUE(CountIsSaved(8));
  QxHost({"restore", "p.xml", "--numbers"});
  EXPECT_TRUE(CountIsSaved(7));
}

TEST_F(KeptBuild, SavesTheNumbersBeforeTheFirstFileIsWritten) {
  ProbeProject();
  bool wasSaved = false;
  Probe::execute = [&](Probe& probe) {
    probe.SetLength(5);
    ReplaceFile(folder_ / "stamped.txt", "new");
    wasSaved = FileHas("<Property name=\"Length\">5<");
    return true;
  };
  const BuildResult result = Build(BuildKind::Run);
  EXPECT_EQ(result.error, "");
  EXPECT_TRUE(result.warnings.empty());
  EXPECT_TRUE(wasSaved);
  EXPECT_EQ(Doc().UndoName(), "Run");
  EXPECT_FALSE(Doc().IsModified());
}

TEST_F(KeptBuild, WritesNoFileWhenTheNumbersCannotBeSaved) {
  ProbeProject();
  Probe::execute = [&](Probe& probe) {
    probe.SetLength(5);
    folder_.Write("p.xml", "theirs");
    ReplaceFile(folder_ / "stamped.txt", "new");
    return true;
  };
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::ExceptionLeft);
  EXPECT_NE(Log().find("p.xml was changed by somebody else"), std::string::npos) << Log();
  EXPECT_FALSE(FileExists(folder_ / "stamped.txt"));
  EXPECT_EQ(folder_.Read("p.xml"), "theirs");
}

TEST_F(KeptBuild, HoldsTheFoldersThatItsActionsWorkIn) {
  Probe::folders = {folder_.Path()};
  ProbeProject();
  const std::string folder = WithTrailingDelimiter(RealPath(folder_.Path()));
  std::string heldByTheRun;
  Probe::execute = [&](Probe&) {
    heldByTheRun = MessageOf([&] { LockFolders(std::span(&folder, 1), "other.xml", {}); });
    return true;
  };
  EXPECT_EQ(Build(BuildKind::Run).error, "");
  EXPECT_NE(heldByTheRun.find("is in use by process "), std::string::npos) << heldByTheRun;

  const auto others = LockFolders(std::span(&folder, 1), "other.xml", {});
  const BuildResult refused = Build(BuildKind::Run);
  EXPECT_NE(refused.error.find(folder_.Path()), std::string::npos) << refused.error;
  EXPECT_NE(refused.error.find("(other.xml)"), std::string::npos) << refused.error;
  EXPECT_EQ(Build(BuildKind::DryRun).error, "");  // which changes nothing
}

TEST_F(KeptBuild, IsRedWhenAProgramIsNotAsItShouldBe) {
  ProbeProject();
  Probe::report.versions = {{"AssemblyVersion", "1.0.0.0", "1.0.1.0"}};
  Probe::report.projects = {{"App", "App.csproj", "", "missing", "there is no such file", {}, {}, true}};
  const BuildResult result = Build(BuildKind::Run);
  Probe::report = {};
  EXPECT_EQ(result.outcome, RunOutcome::ActionFailed);
  EXPECT_FALSE(result.summary.success);
  ASSERT_EQ(result.summary.reports.size(), 1u);
  EXPECT_NE(Log().find("AssemblyVersion: 1.0.0.0 -> 1.0.1.0\n"), std::string::npos) << Log();
  EXPECT_NE(Log().find("App: missing: there is no such file\nThe run failed: not every program"),
            std::string::npos)
      << Log();
  const auto kept = RunHistory(folder_ / "p.xml").Read(1);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->result, KeptResult::Failed);
  ASSERT_EQ(kept->versions.size(), 1u);
  EXPECT_EQ(kept->versions[0].to, "1.0.1.0");
}

}  // namespace
}  // namespace qx::desktop
