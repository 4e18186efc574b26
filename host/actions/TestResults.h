// The host's service for actions that name a results file: after a run one line of the log tells what the
// file says. Reads the results of Visual Studio's test runner (.trx), the format of 2005 and those since. It
// changes no action's outcome.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/Qxaction.h"

namespace qx {

// One test of a results file. Texts are UTF-8.
struct TestCase {
  std::string name;
  std::string className;  // with its namespaces; empty: not told
  std::string outcome;    // "Passed", "Failed", "NotExecuted"
  double seconds = 0;
  std::string message;  // why it failed
  std::string trace;
};

struct TestResults {
  // How many tests ended in which way, by the file's own name for it ("Passed", "NotExecuted"), in the order
  // in which the names first come up.
  std::vector<std::pair<std::string, std::int64_t>> outcomes;
  std::optional<double> seconds;  // from start to finish of the run; none when the file does not tell

  std::vector<TestCase> tests;  // the first 100,000 that the file lists; none where it only counts them

  std::int64_t Count(std::string_view outcome) const;
};

// Raises Exception with the reason when the text is no such file.
TestResults ParseTestResults(std::string_view text);

// "Test results: 2 passed, 1 failed, 1 Inconclusive in 1.250 s", or that no test was executed.
std::string SummaryOf(const TestResults& results);

// Watches the results file of one run of an action: the one that the action's published text `OutputFileName` names.
class ResultsFileWatch {
 public:
  // Before the run. An action without such a property, or with an empty one, has nothing to watch. A relative
  // name is seen from the folder that the action's program starts in.
  ResultsFileWatch(TQXAction& action, const std::string& startingFolder);
  struct Written {
    std::string summary;
    std::vector<TestCase> tests;
  };
  // After the run: the summary of a file that the run wrote, or what is wrong with it, and its tests. Empty when
  // the run wrote none, and for a file that neither ends in ".trx" nor is one.
  Written Report() const;

 private:
  std::string path_;   // empty: nothing to watch
  std::string state_;  // by which the file from before the run is known again
};

}  // namespace qx
