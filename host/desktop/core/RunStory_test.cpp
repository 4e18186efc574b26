#include "host/desktop/core/RunStory.h"

#include <gtest/gtest.h>

#include <ctime>

#include "host/keeping/Keeping.h"

namespace qx::desktop {
namespace {

BuildResult Ended(RunOutcome outcome) {
  BuildResult result;
  result.outcome = outcome;
  result.started = std::time(nullptr);
  result.seconds = 3.14;
  return result;
}

std::string VerdictOf(BuildKind kind, RunOutcome outcome) {
  return StoryOf(kind, Ended(outcome), "Solution: none").verdict;
}

TEST(RunStory, SaysHowARunEndedWhenAndForHowLong) {
  const std::string at = TimeForPeople(std::time(nullptr));
  EXPECT_EQ(VerdictOf(BuildKind::Run, RunOutcome::Succeeded), "Succeeded at " + at + " in 3.1 s");
  EXPECT_EQ(StoryOf(BuildKind::Run, Ended(RunOutcome::ActionFailed), "").verdict,
            "Failed at " + at + " after 3.1 s");
  EXPECT_EQ(VerdictOf(BuildKind::Run, RunOutcome::ExceptionLeft),
            "Failed at " + at + " after 3.1 s: Solution: none");
  EXPECT_EQ(VerdictOf(BuildKind::Run, RunOutcome::Stopped), "Stopped at " + at + " after 3.1 s");
  EXPECT_EQ(VerdictOf(BuildKind::Run, RunOutcome::Invalid), "Not run: Solution: none");
}

TEST(RunStory, NeverCallsAValidationOrADryRunARun) {
  EXPECT_EQ(VerdictOf(BuildKind::Validate, RunOutcome::Succeeded), "Every action can run as it is set");
  EXPECT_EQ(VerdictOf(BuildKind::Validate, RunOutcome::Invalid), "Cannot run: Solution: none");
  EXPECT_EQ(VerdictOf(BuildKind::DryRun, RunOutcome::Succeeded), "Dry run: nothing was touched");
  EXPECT_EQ(VerdictOf(BuildKind::DryRun, RunOutcome::ActionFailed), "A run would fail; nothing was touched");
  EXPECT_EQ(StoryOf(BuildKind::DryRun, Ended(RunOutcome::Succeeded), "").tone, StoryTone::Neutral);
}

TEST(RunStory, IsRedWhereAProgramIsNotAsItShouldBe) {
  BuildResult result = Ended(RunOutcome::ActionFailed);
  RunReport report;
  report.projects = {{"App", "App.csproj", "", "missing", "no such file", {}, {}, true}};
  result.summary.reports = {{1, report}};
  result.summary.verdict = "The run failed: not every program is as it should be";
  const RunStory story = StoryOf(BuildKind::Run, result, "");
  EXPECT_EQ(story.tone, StoryTone::Bad);
  EXPECT_TRUE(story.verdict.ends_with(": The run failed: not every program is as it should be"));
  EXPECT_EQ(story.lines.back().text, "App: missing: no such file");
  EXPECT_TRUE(story.lines.back().isBad);
}

TEST(RunStory, TellsOfTheRunThatIsKept) {
  KeptRun run;
  run.started = std::time(nullptr);
  run.seconds = 65;
  run.result = KeptResult::Succeeded;
  run.versions = {{1, "AssemblyVersion", "1.0.0.0", "1.0.1.0"}};
  const RunStory story = StoryOf(run);
  EXPECT_EQ(story.verdict, "The last run: Succeeded at " + TimeForPeople(run.started) + " in 1:05 min");
  ASSERT_EQ(story.lines.size(), 1u);
  EXPECT_EQ(story.lines[0].text, "AssemblyVersion: 1.0.0.0 -> 1.0.1.0");
  run.result = KeptResult::CutOff;
  EXPECT_EQ(StoryOf(run).tone, StoryTone::Bad);
}

TEST(RunStory, NamesTheLastRunOfAnAction) {
  const std::int64_t now = std::time(nullptr);
  const std::string at = TimeForPeople(now);
  EXPECT_EQ(TextOf({ActionState::Unknown, 0, 0}), "");
  EXPECT_EQ(TextOf({ActionState::NotRun, 0, 0}), "Never");
  EXPECT_EQ(TextOf({ActionState::Running, now, 9}), "Running");
  EXPECT_EQ(TextOf({ActionState::Succeeded, now, 3.14}), "Succeeded " + at + " (3.1 s)");
  EXPECT_EQ(TextOf({ActionState::Failed, now, 59.7}), "Failed " + at + " (1:00 min)");
  EXPECT_EQ(TextOf({ActionState::Stopped, now, 0.02}), "Stopped " + at + " (0.0 s)");
  EXPECT_EQ(TextOf({ActionState::Invalid, now, 0}), "Not valid " + at);
}

}  // namespace
}  // namespace qx::desktop
