// How a build went, in words: what the window says above the log while one goes on, when it has ended, and of the last
// one when a project is opened. No pixel.
#pragma once

#include <string>
#include <vector>

#include "host/desktop/core/BuildThread.h"
#include "host/history/KeptRun.h"

namespace qx::desktop {

enum class StoryTone { Neutral, Good, Bad };

struct RunStory {
  StoryTone tone = StoryTone::Neutral;
  std::string verdict;             // one line: "Succeeded at 10:02 in 3.1 s"
  std::vector<SummaryLine> lines;  // what there is to say besides, in its order
};

// Of a build that has ended. Of a run, its summary; `reason` says why it was refused or failed, where
// that is known.
RunStory StoryOf(BuildKind kind, const BuildResult& result, const std::string& reason);
// Of a run that is kept.
RunStory StoryOf(const KeptRun& run);

// "Succeeded 10:02 (3.1 s)"; empty when nothing is known of it.
std::string TextOf(const ActionRun& run);

// "3.1 s", "2:05 min".
std::string Duration(double seconds);

}  // namespace qx::desktop
