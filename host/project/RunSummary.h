// What a run did, told behind its last action: what the actions that answer it report, whether that makes a
// green run red, and how it is written, as text or as one JSON object. Values in, text out.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/project/OpenProject.h"
#include "host/project/Runner.h"
#include "plugin/Qxrunreport.h"

namespace qx {

struct RunSummary {
  bool success = false;  // of the whole run, faults of programs counted
  double seconds = 0;
  std::string verdict;  // the last line, where the programs decide about the run; without a line end
  std::vector<std::pair<int, RunReport>> reports;  // by the 1-based number of the action
  std::int64_t errors = 0, warnings = 0;           // told by the programs that ran; those that count
  std::int64_t known = 0;                          // that a baseline holds, which do not count
};

// Whether any program is not as the run should have made it.
bool HasFaults(const RunSummary& summary);
// Adds what the actions that began (by their 1-based numbers) report of the run; looks at programs, unless
// `checkBuilt`, the setting of that name, is "off". The outcome, which faults of programs turn red where it is "fail".
// `amend` may change each report before it is judged.
RunOutcome AddReports(RunSummary& summary, const OpenProject& project, const std::vector<int>& begun,
                      const std::string& checkBuilt, RunOutcome outcome,
                      const std::function<void(RunReport& report, int action)>& amend = {});

// {"kind":"summary",...} and LF. What is not UTF-8 becomes U+FFFD.
std::string SummaryAsJson(const RunSummary& summary);
// One of the last lines of the log; `isBad` when it tells of a fault of a program or of an error.
struct SummaryLine {
  std::string text;  // without a line end
  bool isBad = false;
};
// Those lines but the verdict.
std::vector<SummaryLine> SummaryLines(const RunSummary& summary);
// The last lines of the log: versions and files, programs, errors and warnings, and each project that is neither
// ok nor skipped. Empty when no action reported anything and no program told of an error or a warning.
std::string SummaryAsText(const RunSummary& summary);

}  // namespace qx
