// A run as JUnit's XML.
#include <algorithm>
#include <charconv>
#include <iterator>

#include "host/project/ProjectCheck.h"
#include "host/report/Markup.h"
#include "host/report/Reports.h"

namespace qx {
namespace {

// A failing case lists so many errors; the log has the rest.
constexpr std::size_t kMostErrors = 50;

struct Case {
  std::string className, name;
  double seconds = 0;
  std::string_view element;  // "failure", "error", "skipped"; empty: it passed
  std::string message, text;
};

struct Suite {
  std::string name;
  std::vector<Case> cases;
  std::string warnings;  // lines; of what was known before the run
};

std::string SecondsText(double seconds) {
  char text[400];
  const auto end =
      std::to_chars(text, std::end(text), std::max(seconds, 0.0), std::chars_format::fixed, 3).ptr;
  return std::string(text, end);
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) (text += line) += '\n';
  return text;
}

std::string ErrorLines(const std::vector<const Diagnostic*>& errors) {
  std::string text;
  for (std::size_t i = 0; i < std::min(errors.size(), kMostErrors); ++i) (text += LineOf(*errors[i])) += '\n';
  if (errors.size() > kMostErrors) text += std::to_string(errors.size() - kMostErrors) + " more\n";
  return text;
}

std::string FindingLines(const RunRecord& record, int number) {
  std::string text;
  for (const auto& [action, finding] : record.findings) {
    if (action == number) text += std::string(NameOf(finding.severity)) + ": " + LineOf(finding) + "\n";
  }
  return text;
}

Case CaseOf(const RunRecord& record, const ActionRecord& action, const std::string& suite) {
  Case one{suite, action.name, action.seconds, "", "", ""};
  std::vector<std::string> faults = action.exceptions;
  for (const ValidationRecord& fault : record.validation) {
    if (fault.action == action.number) faults.push_back(fault.subject + ": " + fault.message);
  }
  if (!faults.empty()) {
    one.element = "error";
    one.message = faults.front();
    one.text = JoinLines(faults);
  } else if (action.state == ActionState::Failed) {
    one.element = "failure";
    one.message = record.outcome == RunOutcome::Stopped ? "The run was stopped" : "The action failed";
    one.text = JoinLines(action.lastLines);
  } else if (action.state == ActionState::NotRun) {
    one.element = "skipped";
    one.message = "The action was not run";
  }
  return one;
}

Case CaseOf(const ProjectRecord& project, const std::string& suite) {
  Case one{suite, project.name, 0, "", "", ""};
  const bool isFault = project.report != nullptr && project.report->isFault;
  if (isFault || !project.errors.empty()) {
    one.element = "failure";
    const std::string fault = isFault ? project.report->status + ": " + project.report->reason : "";
    one.message = project.errors.empty() ? fault : LineOf(*project.errors.front());
    one.text = ErrorLines(project.errors) + (isFault ? fault + "\n" : "");
  } else if (project.report != nullptr && project.report->status == "skipped") {
    one.element = "skipped";
    one.message = project.report->reason;
  }
  return one;
}

Case CaseOf(const TestCase& test, const std::string& suite) {
  Case one{
      test.className.empty() ? suite : test.className, test.name, test.seconds, "", test.message, test.trace};
  const auto is = [&test](auto... outcomes) { return ((test.outcome == outcomes) || ...); };
  if (is("Passed", "Completed", "Warning", "PassedButRunAborted")) return one;
  one.element = is("NotExecuted", "NotRunnable", "Pending", "Inconclusive") ? "skipped"
                : is("Failed")                                              ? "failure"
                                                                            : "error";
  if (one.message.empty()) one.message = test.outcome;
  return one;
}

std::vector<Suite> SuitesOf(const RunRecord& record) {
  std::vector<Suite> suites;
  for (const ActionRecord& action : record.actions) {
    Suite suite{std::to_string(action.number) + ". " + action.name, {}, FindingLines(record, action.number)};
    suite.cases.push_back(CaseOf(record, action, suite.name));
    for (const ProjectRecord& project : ProjectsOf(record, action.number))
      suite.cases.push_back(CaseOf(project, suite.name));
    Suite tests{suite.name + ": tests", {}, ""};
    for (const TestCase& test : action.tests) tests.cases.push_back(CaseOf(test, tests.name));
    suites.push_back(std::move(suite));
    if (!tests.cases.empty()) suites.push_back(std::move(tests));
  }
  return suites;
}

struct Totals {
  std::size_t tests = 0, failures = 0, errors = 0, skipped = 0;
  double seconds = 0;
};

void Add(Totals& totals, const Suite& suite) {
  for (const Case& one : suite.cases) {
    ++totals.tests;
    totals.failures += one.element == "failure" ? 1 : 0;
    totals.errors += one.element == "error" ? 1 : 0;
    totals.skipped += one.element == "skipped" ? 1 : 0;
    totals.seconds += one.seconds;
  }
}

std::string Attributes(const Totals& totals) {
  return " tests=\"" + std::to_string(totals.tests) + "\" failures=\"" + std::to_string(totals.failures) +
         "\" errors=\"" + std::to_string(totals.errors) + "\" skipped=\"" + std::to_string(totals.skipped) +
         "\" time=\"" + SecondsText(totals.seconds) + "\"";
}

void AppendCase(std::string& out, const Case& one) {
  out += "    <testcase classname=\"" + MarkupText(one.className) + "\" name=\"" + MarkupText(one.name) +
         "\" time=\"" + SecondsText(one.seconds) + "\"";
  if (one.element.empty()) {
    out += "/>\n";
    return;
  }
  const std::string element(one.element);
  out += ">\n      <" + element + " message=\"" + MarkupText(one.message) + "\"";
  if (element != "skipped") out += " type=\"" + element + "\"";
  out += element == "skipped" || one.text.empty() ? "/>" : ">" + MarkupText(one.text) + "</" + element + ">";
  out += "\n    </testcase>\n";
}

}  // namespace

std::string JunitReport(const RunRecord& record) {
  Totals all;
  std::string inside;
  for (const Suite& suite : SuitesOf(record)) {
    Totals totals;
    Add(totals, suite);
    Add(all, suite);
    inside += "  <testsuite name=\"" + MarkupText(suite.name) + "\"" + Attributes(totals) + " timestamp=\"" +
              TimeText(record.started).substr(0, 19) + "\">\n";
    for (const Case& one : suite.cases) AppendCase(inside, one);
    if (!suite.warnings.empty())
      inside += "    <system-err>" + MarkupText(suite.warnings) + "</system-err>\n";
    inside += "  </testsuite>\n";
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"qxhost\"" + Attributes(all) + ">\n" +
         inside + "</testsuites>\n";
}

}  // namespace qx
