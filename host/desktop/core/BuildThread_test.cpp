#include "host/desktop/core/BuildThread.h"

#include <thread>

#include "host/desktop/testdata/BuildFixture.h"

namespace qx::desktop {
namespace {

using namespace std::chrono_literals;

TEST_F(BuildThreadTest, RunsSavesAndLeavesOneStep) {
  Project({{{"Text", "one"}}, {{"Deed", "tdWrite"}}});
  TQXAction* const action = Doc().Action(0);
  const BuildResult result = Build(BuildKind::Run);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.outcome, RunOutcome::Succeeded);
  EXPECT_EQ(ReportOf(result), "");
  EXPECT_TRUE(result.warnings.empty());
  EXPECT_EQ(ended_, 1);
  EXPECT_EQ(States(), "SS");
  EXPECT_EQ(build_->StateOf(2), ActionState::NotRun);
  EXPECT_EQ(build_->StateOf(-1), ActionState::NotRun);
  EXPECT_NE(Log().find("one\nTiny Task: succeeded"), std::string::npos) << Log();
  EXPECT_EQ(folder_.Read("tiny.txt"), "hello\n");  // in the project's folder
  EXPECT_TRUE(CountIsSaved(1));
  EXPECT_EQ(Doc().Action(0), action);
  EXPECT_EQ(Doc().UndoName(), "Run");
  EXPECT_FALSE(Doc().IsModified());
  Doc().Undo();
  EXPECT_EQ(Get(0, "Count"), "0");
  EXPECT_TRUE(Doc().IsModified());
  EXPECT_EQ(folder_.Names(), "p.xml tiny.txt");
}

TEST_F(BuildThreadTest, SavesAModifiedProjectBeforeItRuns) {
  Doc().Add("Probe", 0);
  Doc().SaveAs(folder_ / "p.xml");
  Set(0, "Name", "unsaved");
  bool wasSaved = false;
  Probe::execute = [&](Probe&) {
    wasSaved = FileHas("unsaved");
    return true;
  };
  EXPECT_EQ(Build(BuildKind::Run).error, "");
  EXPECT_TRUE(wasSaved);
}

TEST_F(BuildThreadTest, RunsAgain) {
  Project({{}});
  for (int round = 1; round <= 2; ++round) {
    EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::Succeeded);
    EXPECT_TRUE(CountIsSaved(round));
  }
  EXPECT_EQ(MessageOf([&] { build_->Finish(); }), "No build was started");
  build_->Stop();  // of nothing
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::Succeeded);
}

TEST_F(BuildThreadTest, StatesGoWithTheirActions) {
  Project({{}, {}, {{"Deed", "tdFail"}}});
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::ActionFailed);
  EXPECT_EQ(States(), "SSF");
  Doc().Move(2, 0);
  build_->Moved(2, 0);
  EXPECT_EQ(States(), "FSS");
  Doc().Duplicate(0);
  build_->Inserted(1);
  EXPECT_EQ(States(), "F-SS");
  Doc().Move(0, 3);
  build_->Moved(0, 3);
  EXPECT_EQ(States(), "-SSF");
  Doc().Remove(1);
  build_->Removed(1);
  EXPECT_EQ(States(), "-SF");
  Doc().Add("Tiny Task", 3);
  build_->Inserted(3);
  Doc().Move(3, 0);
  build_->Moved(3, 0);
  EXPECT_EQ(States(), "--SF");
  build_->ForgetStates(ActionState::Unknown);
  EXPECT_EQ(States(), "????");
  build_->Removed(3);
  build_->Moved(0, 3);
  EXPECT_EQ(States(), "????");
  Doc().Add("Tiny Task", 1);
  build_->Inserted(1);
  EXPECT_EQ(States(), "?-???");
}

TEST_F(BuildThreadTest, ADryRunAndAValidationSayNothingOfTheLastRun) {
  Project({{}, {{"Deed", "tdFail"}}});
  EXPECT_EQ(Build(BuildKind::DryRun).outcome, RunOutcome::ActionFailed);
  EXPECT_EQ(States(), "--");
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::ActionFailed);
  EXPECT_EQ(States(), "SF");
  Set(0, "Verdict", "tvError");
  EXPECT_EQ(Build(BuildKind::DryRun).outcome, RunOutcome::Invalid);
  EXPECT_EQ(Build(BuildKind::Validate).outcome, RunOutcome::Invalid);
  EXPECT_EQ(States(), "SF");
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::Invalid);
  EXPECT_EQ(States(), "IF");
}

TEST_F(BuildThreadTest, TellsWhenAnActionRanLastAndForHowLong) {
  Project({{}, {{"Deed", "tdFail"}}, {}});
  const auto before = std::chrono::system_clock::now();
  const BuildResult result = Build(BuildKind::Run);
  const ActionRun run = build_->RunOf(0);
  const auto started = std::chrono::system_clock::time_point(std::chrono::seconds(run.started));
  EXPECT_LE(std::chrono::abs(started - before), 10s);
  EXPECT_GT(run.seconds, 0);
  EXPECT_GE(result.seconds, run.seconds);
  Set(0, "Deed", "tdFail");
  Build(BuildKind::Run);  // which does not come to the second one
  EXPECT_EQ(States(), "FF-");
}

TEST_F(BuildThreadTest, IsOneBuildAtATime) {
  Project({{{"Deed", "tdSleep"}}});
  build_->Start(BuildKind::Run, Doc());
  EXPECT_TRUE(build_->IsRunning());
  EXPECT_EQ(build_->Kind(), BuildKind::Run);
  EXPECT_EQ(MessageOf([&] { build_->Start(BuildKind::Validate, Doc()); }), "A build is running already");
  build_->Stop();
  ASSERT_TRUE(Comes([&] { return !build_->IsRunning(); }));
  EXPECT_EQ(MessageOf([&] { build_->Start(BuildKind::Run, Doc()); }), "A build is running already");
  EXPECT_EQ(build_->Finish().outcome, RunOutcome::Stopped);
}

TEST_F(BuildThreadTest, TellsHowFarItIs) {
  Project({{}, {{"Deed", "tdSleep"}}, {}});
  EXPECT_EQ(build_->Progress().actionCount, 0);
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 2; }));
  EXPECT_EQ(States(), "Sr-");
  EXPECT_EQ(build_->Progress().actionCount, 3);
  const std::optional<double> done = build_->Progress().done;
  ASSERT_TRUE(done);
  EXPECT_GE(*done, 1.0 / 3);
  EXPECT_LT(*done, 2.0 / 3);
  const double before = build_->Progress().seconds;
  ASSERT_TRUE(Comes([&] { return build_->Progress().seconds > before; }));
  build_->Stop();
  build_->Finish();
  EXPECT_EQ(States(), "ST-");
  EXPECT_EQ(build_->Progress().seconds, build_->Progress().seconds);
}

TEST_F(BuildThreadTest, StopsTheActionThatRunsAndBeginsNoOther) {
  Project({{{"Deed", "tdSleep"}}, {{"Text", "never"}}});
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 1; }));
  build_->Stop();
  const BuildResult result = build_->Finish();
  EXPECT_EQ(result.outcome, RunOutcome::Stopped);
  EXPECT_EQ(result.error, "");
  EXPECT_LT(build_->Progress().seconds, 50);
  EXPECT_EQ(States(), "T-");
  EXPECT_EQ(Log().find("never"), std::string::npos);
  EXPECT_TRUE(CountIsSaved(1));
  EXPECT_EQ(Build(BuildKind::Validate).outcome, RunOutcome::Succeeded);  // the flag is down again
}

TEST_F(BuildThreadTest, AsksTheActionWithEachStop) {
  Doc().Add("Probe", 0);
  Doc().SaveAs(folder_ / "p.xml");
  Probe::execute = [](Probe&) { return Comes([] { return Probe::terminated >= 3; }); };
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 1; }));
  for (int asked = 1; asked <= 3; ++asked) {
    build_->Stop();
    ASSERT_TRUE(Comes([&] { return Probe::terminated >= asked; }));
  }
  EXPECT_EQ(build_->Finish().outcome, RunOutcome::Stopped);
}

// A second stop may come when the action has ended already.
TEST_F(BuildThreadTest, AStopOfTheLastRunDoesNotStopTheNext) {
  Doc().Add("Probe", 0);
  Set(0, "Name", "kept");
  Doc().SaveAs(folder_ / "p.xml");
  Probe::execute = [](Probe& probe) { return Comes([&] { return probe.WasStopped(); }); };
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 1; }));
  build_->Stop();
  EXPECT_EQ(build_->Finish().outcome, RunOutcome::Stopped);
  Probe::execute = [](Probe& probe) { return !probe.WasStopped() && probe.GetName() == "kept"; };
  const BuildResult next = Build(BuildKind::Run);
  EXPECT_EQ(next.error, "");
  EXPECT_EQ(next.outcome, RunOutcome::Succeeded);
  EXPECT_EQ(Doc().UndoName(), "Change Name");  // none of this was an edit
}

TEST_F(BuildThreadTest, StopsDuringValidation) {
  Doc().Add("Probe", 0);
  Doc().Add("Probe", 1);
  Doc().SaveAs(folder_ / "p.xml");
  std::atomic<int> validated{0};
  Probe::validate = [&](Probe& probe) {
    ++validated;
    return Comes([&] { return probe.StopSignalled(); });
  };
  for (const BuildKind kind : {BuildKind::Run, BuildKind::Validate, BuildKind::DryRun}) {
    validated = 0;
    build_->Start(kind, Doc());
    ASSERT_TRUE(Comes([&] { return validated == 1; }));
    build_->Stop();
    const BuildResult result = build_->Finish();
    EXPECT_EQ(result.outcome, RunOutcome::Stopped);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(validated, 1);
  }
}

TEST_F(BuildThreadTest, ADestroyedOneStopsItsBuildAndSavesIt) {
  Project({{{"Deed", "tdSleep"}}});
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 1; }));
  build_.reset();
  EXPECT_EQ(ended_, 0);
  EXPECT_TRUE(CountIsSaved(1));
  EXPECT_EQ(folder_.Names(), "p.xml");
  EXPECT_FALSE(host_->Stopping());
}

TEST_F(BuildThreadTest, ADestroyedOneAsksAgainUntilTheActionEnds) {
  Doc().Add("Probe", 0);
  Probe::execute = [](Probe&) { return Comes([] { return Probe::terminated >= 2; }); };
  Doc().SaveAs(folder_ / "p.xml");
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 1; }));
  build_.reset();
  EXPECT_GE(Probe::terminated, 2);
}

TEST_F(BuildThreadTest, AFailureEndsTheRunAndIsSaved) {
  Project({{{"Deed", "tdFail"}}, {{"Text", "never"}}});
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::ActionFailed);
  EXPECT_EQ(States(), "F-");
  EXPECT_TRUE(CountIsSaved(1));
  for (const char* deed : {"tdThrow", "tdThrowNumber"}) {
    Set(0, "Deed", deed);
    EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::ExceptionLeft);
    EXPECT_EQ(States(), "F-");
  }
  EXPECT_TRUE(CountIsSaved(3));
  EXPECT_NE(Log().find("The deed threw"), std::string::npos);
  EXPECT_EQ(Log().find("never"), std::string::npos);
}

TEST_F(BuildThreadTest, ValidatesEverythingAndRunsNothing) {
  Project({{}, {{"Verdict", "tvError"}}, {}});
  Set(2, "Verdict", "tvSilent");
  const std::string before = folder_.Read("p.xml");
  EXPECT_EQ(Build(BuildKind::Validate).outcome, RunOutcome::Invalid);
  EXPECT_EQ(States(), "---");
  EXPECT_EQ(Log(), "Verdict: The verdict is an error\nTiny Task: The action cannot run as it is set\n");
  EXPECT_EQ(folder_.Read("p.xml"), before);  // a validation saves nothing
  EXPECT_EQ(Build(BuildKind::Run).outcome, RunOutcome::Invalid);
  EXPECT_EQ(States(), "-II");
  EXPECT_TRUE(CountIsSaved(0));
  EXPECT_EQ(Doc().UndoName(), "Change Verdict");
  Set(1, "Verdict", "tvThrow");
  EXPECT_EQ(Build(BuildKind::Validate).outcome, RunOutcome::ExceptionLeft);
}

TEST_F(BuildThreadTest, ValidatesAndRehearsesAnUntitledProject) {
  Doc().Add("Tiny Task", 0);
  Set(0, "Deed", "tdWrite");
  std::filesystem::current_path(std::filesystem::path(folder_.Path()));
  EXPECT_EQ(Build(BuildKind::Validate).outcome, RunOutcome::Succeeded);
  const BuildResult rehearsed = Build(BuildKind::DryRun);
  EXPECT_EQ(rehearsed.error, "");
  EXPECT_NE(ReportOf(rehearsed).find("+hello\n"), std::string::npos) << ReportOf(rehearsed);
  EXPECT_EQ(folder_.Names(), "");
  const BuildResult run = Build(BuildKind::Run);
  EXPECT_EQ(run.error, "The project has no file yet: save it before it is run");
  EXPECT_EQ(ended_, 3);
}

TEST_F(BuildThreadTest, ADryRunTellsWhatTheCommandLineTellsAndChangesNothing) {
  Project({{{"Deed", "tdWrite"}, {"Text", "new"}},
           {{"Deed", "tdRun"}, {"Lines", "/no/such program;-a \"b c\""}}});
  folder_.Write("tiny.txt", "old\n");
  const std::string before = folder_.Read("p.xml");
  const std::string text = Text();
  TQXAction* const action = Doc().Action(0);
  const std::string step = Doc().UndoName();
  const BuildResult result = Build(BuildKind::DryRun);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.outcome, RunOutcome::Succeeded);
  for (const char* part : {"-old\n+new\n", "\"/no/such program\" -a \"b c\"\n",
                           "+      <Property name=\"Count\">1</Property>\n"}) {
    EXPECT_NE(ReportOf(result).find(part), std::string::npos) << ReportOf(result);
  }
  const test::ProgramResult cli = test::RunProgram(
      std::string(QX_BINARY_DIR) + "/qxhost" + QX_PROGRAM_ENDING,
      {"--package", package_, "--options", folder_ / "options.xml", "run", "p.xml", "--dry-run"},
      folder_.Path());
  EXPECT_TRUE(cli.out.ends_with(ReportOf(result))) << cli.out << "\n" << ReportOf(result);
  ASSERT_EQ(result.dryRun.programs.size(), 1u);
  EXPECT_EQ(result.dryRun.programs[0].executable, "/no/such program");
  ASSERT_EQ(result.dryRun.files.size(), 2u);
  EXPECT_EQ(result.dryRun.files[0].name, "tiny.txt");
  EXPECT_EQ(result.dryRun.files[0].before, "old\n");
  EXPECT_EQ(result.dryRun.files[0].after, "new\n");
  EXPECT_EQ(result.dryRun.files[1].name, "p.xml");
  EXPECT_EQ(folder_.Read("p.xml"), before);
  EXPECT_EQ(folder_.Read("tiny.txt"), "old\n");
  EXPECT_EQ(Text(), text);
  EXPECT_EQ(Doc().Action(0), action);
  EXPECT_EQ(Doc().UndoName(), step);
  EXPECT_FALSE(Doc().IsModified());
  EXPECT_FALSE(WritesAreCaptured());
  Set(0, "Count", "7");
  EXPECT_NE(ReportOf(Build(BuildKind::DryRun)).find("+      <Property name=\"Count\">8</Property>\n"),
            std::string::npos);
  EXPECT_TRUE(Doc().IsModified());
}

TEST_F(BuildThreadTest, WhatTheWindowSavesDuringADryRunIsSaved) {
  Doc().Add("Probe", 0);
  Doc().SaveAs(folder_ / "p.xml");
  std::atomic<bool> inside{false}, leave{false};
  Probe::execute = [&](Probe&) {
    inside = true;
    const bool left = Comes([&] { return leave.load(); });
    ReplaceFile(folder_ / "captured.txt", "by the action\n");
    return left;
  };
  build_->Start(BuildKind::DryRun, Doc());
  ASSERT_TRUE(Comes([&] { return inside.load(); }));
  const RegisteredOptions& options = host_->Catalogue().Options()[0];
  options.optionsClass->properties[0].set(host_->Catalogue().ObjectOf(options), std::string("by the window"));
  host_->Catalogue().SaveOptions();
  EXPECT_NE(folder_.Read("options.xml").find("by the window"), std::string::npos);
  leave = true;
  const BuildResult result = build_->Finish();
  EXPECT_EQ(result.outcome, RunOutcome::Succeeded);
  const std::string report = ReportOf(result);
  EXPECT_NE(report.find("+by the action\n"), std::string::npos) << report;
  EXPECT_EQ(report.find("by the window"), std::string::npos) << report;
  EXPECT_FALSE(FileExists(folder_ / "captured.txt"));
}

TEST_F(BuildThreadTest, ARunThatAnotherProcessHoldsDoesNotBegin) {
  Project({{{"Deed", "tdSleep"}}});
  std::atomic<bool> over{false};
  std::thread other([&] {
    test::RunProgram(std::string(QX_BINARY_DIR) + "/qxhost" + QX_PROGRAM_ENDING,
                     {"--package", package_, "--options", folder_ / "options.xml", "run", "p.xml",
                      "--timeout", "3", "--log-file", "begun.txt"},
                     folder_.Path());
    over = true;
  });
  ASSERT_TRUE(Comes([&] { return folder_.Read("begun.txt").find("hello") != std::string::npos || over; }));
  const BuildResult result = Build(BuildKind::Run);
  other.join();
  EXPECT_NE(result.error.find("p.xml is in use by process "), std::string::npos) << result.error;
  EXPECT_EQ(ended_, 1);
  EXPECT_EQ(Log(), "");
  // The other one saved meanwhile, so this one is not to run what it has.
  EXPECT_NE(Build(BuildKind::Run).error.find("was changed by somebody else"), std::string::npos);
  Doc().Open(folder_ / "p.xml");
  Set(0, "Deed", "tdSucceed");
  EXPECT_EQ(Build(BuildKind::Run).error, "");
  EXPECT_TRUE(CountIsSaved(2));
}

TEST_F(BuildThreadTest, HoldsTheProjectWhileItRuns) {
  Project({{{"Deed", "tdSleep"}}});
  build_->Start(BuildKind::Run, Doc());
  ASSERT_TRUE(Comes([&] { return build_->Progress().action == 1; }));
  const test::ProgramResult other = test::RunProgram(
      std::string(QX_BINARY_DIR) + "/qxhost" + QX_PROGRAM_ENDING,
      {"--package", package_, "--options", folder_ / "options.xml", "run", "p.xml"}, folder_.Path());
  EXPECT_EQ(other.code, 2);
  EXPECT_NE(other.err.find("is in use by process"), std::string::npos) << other.err;
  build_->Stop();
  build_->Finish();
}

TEST_F(BuildThreadTest, TellsWhenItCannotSaveWhatTheRunDid) {
  Doc().Add("Probe", 0);
  Doc().SaveAs(folder_ / "p.xml");
  Probe::execute = [&](Probe& probe) {
    folder_.Write("p.xml", "theirs");
    probe.SetLength(5);
    return true;
  };
  const BuildResult result = Build(BuildKind::Run);
  EXPECT_EQ(result.outcome, RunOutcome::Succeeded);
  EXPECT_NE(result.error.find("p.xml was changed by somebody else"), std::string::npos) << result.error;
  EXPECT_EQ(folder_.Read("p.xml"), "theirs");
  EXPECT_TRUE(Doc().IsModified());
  EXPECT_EQ(Doc().UndoName(), "Run");
  Doc().Save(Document::Overwrite::Yes);
  EXPECT_TRUE(FileHas("<Property name=\"Length\">5<"));
}

TEST_F(BuildThreadTest, SavesTheOptionsThatARunChanged) {
  Doc().Add("Probe", 0);
  Doc().SaveAs(folder_ / "p.xml");
  Probe::execute = [this](Probe&) {
    for (const RegisteredOptions& options : host_->Catalogue().Options())
      options.optionsClass->properties[0].set(host_->Catalogue().ObjectOf(options),
                                              std::string("set by a run"));
    return true;
  };
  EXPECT_EQ(Build(BuildKind::Run).error, "");
  EXPECT_NE(folder_.Read("options.xml").find("set by a run"), std::string::npos);
}

TEST_F(BuildThreadTest, TellsTheWarningsOfSavingOnce) {
  folder_.Write("p.xml",
                "<BuildProject version=\"1\"><!-- c --><Actions><Action type=\"Tiny Task\">"
                "<Property name=\"Password\">hush</Property></Action></Actions></BuildProject>");
  Doc().Open(folder_ / "p.xml");
  Set(0, "Text", "x");
  const BuildResult result = Build(BuildKind::Run);
  ASSERT_EQ(result.warnings.size(), 2u);
  EXPECT_NE(result.warnings[0].find("1 comment"), std::string::npos);
  EXPECT_NE(result.warnings[1].find("clear text"), std::string::npos);
}

}  // namespace
}  // namespace qx::desktop
