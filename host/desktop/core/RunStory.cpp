#include "host/desktop/core/RunStory.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "host/keeping/Keeping.h"

namespace qx::desktop {
namespace {

std::string At(std::int64_t started) { return " at " + TimeForPeople(started); }

// "Succeeded at 10:02 in 3.1 s".
std::string Ended(const std::string& word, std::int64_t started, double seconds) {
  return word + At(started) + (word == "Succeeded" ? " in " : " after ") + Duration(seconds);
}

std::string Because(const std::string& reason) { return reason.empty() ? "" : ": " + reason; }

RunStory StoryOfRun(const BuildResult& result, const std::string& reason) {
  RunStory story{StoryTone::Bad, "", SummaryLines(result.summary)};
  switch (result.outcome) {
    case RunOutcome::Succeeded:
      story.tone = StoryTone::Good;
      story.verdict = Ended("Succeeded", result.started, result.seconds);
      break;
    case RunOutcome::ActionFailed:
    case RunOutcome::ExceptionLeft:
      story.verdict = Ended("Failed", result.started, result.seconds) + Because(reason);
      break;
    case RunOutcome::Stopped:
      story.tone = StoryTone::Neutral;
      story.verdict = Ended("Stopped", result.started, result.seconds);
      break;
    case RunOutcome::Invalid:
      story.verdict = "Not run" + Because(reason);
      break;
  }
  if (!result.summary.verdict.empty()) story.verdict += ": " + result.summary.verdict;
  return story;
}

RunStory StoryOfValidation(const BuildResult& result, const std::string& reason) {
  if (result.outcome == RunOutcome::Succeeded)
    return {StoryTone::Good, "Every action can run as it is set", {}};
  if (result.outcome == RunOutcome::Stopped) return {StoryTone::Neutral, "The validation was stopped", {}};
  return {StoryTone::Bad, "Cannot run" + Because(reason), {}};
}

RunStory StoryOfDryRun(const BuildResult& result, const std::string& reason) {
  if (result.outcome == RunOutcome::Invalid) return {StoryTone::Bad, "Cannot run" + Because(reason), {}};
  if (result.outcome == RunOutcome::Stopped) return {StoryTone::Neutral, "The dry run was stopped", {}};
  if (result.outcome != RunOutcome::Succeeded)
    return {StoryTone::Bad, "A run would fail; nothing was touched", {}};
  return {StoryTone::Neutral, "Dry run: nothing was touched", {}};
}

}  // namespace

RunStory StoryOf(BuildKind kind, const BuildResult& result, const std::string& reason) {
  if (!result.error.empty()) return {StoryTone::Bad, result.error, SummaryLines(result.summary)};
  switch (kind) {
    case BuildKind::Run:
      return StoryOfRun(result, reason);
    case BuildKind::Validate:
      return StoryOfValidation(result, reason);
    case BuildKind::DryRun:
      break;
  }
  return StoryOfDryRun(result, reason);
}

RunStory StoryOf(const KeptRun& run) {
  RunStory story;
  switch (run.result) {
    case KeptResult::Succeeded:
      story = {StoryTone::Good, Ended("Succeeded", run.started, run.seconds), {}};
      break;
    case KeptResult::Failed:
      story = {StoryTone::Bad, Ended("Failed", run.started, run.seconds), {}};
      break;
    case KeptResult::Stopped:
      story = {StoryTone::Neutral, Ended("Stopped", run.started, run.seconds), {}};
      break;
    case KeptResult::CutOff:
      return {StoryTone::Bad, "The last run, begun" + At(run.started) + ", was cut off", {}};
  }
  story.verdict = "The last run: " + story.verdict;
  for (const KeptVersion& version : run.versions) {
    const bool isSame = version.from == version.to;
    story.lines.push_back({version.name + ": " + (isSame ? "" : version.from + " -> ") + version.to});
  }
  return story;
}

std::string TextOf(const ActionRun& run) {
  static constexpr std::array<const char*, 7> kWords{"",       "Never",   "Running",  "Succeeded",
                                                     "Failed", "Stopped", "Not valid"};  // by ActionState
  std::string text = kWords.at(static_cast<std::size_t>(run.state));
  if (run.state < ActionState::Succeeded) return text;
  text += " " + TimeForPeople(run.started);
  if (run.state != ActionState::Invalid) text += " (" + Duration(run.seconds) + ")";
  return text;
}

std::string Duration(double seconds) {
  char text[32];
  const long whole = std::lround(seconds);
  if (whole < 60)
    std::snprintf(text, sizeof text, "%.1f s", seconds);
  else
    std::snprintf(text, sizeof text, "%ld:%02ld min", whole / 60, whole % 60);
  return text;
}

}  // namespace qx::desktop
