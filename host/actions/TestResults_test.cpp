#include "host/actions/TestResults.h"

#include <gtest/gtest.h>

#include <chrono>

#include "host/testing/TestHost.h"
#include "platform/files/Files.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

std::string Summary(const std::string& text) {
  try {
    return SummaryOf(ParseTestResults(text));
  } catch (const Exception& e) {
    return "refused: " + e.Message();
  }
}

std::string TrxOf(const std::string& inside) {
  return "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<TestRun id=\"x\" name=\"run\" "
         "xmlns=\"http://microsoft.com/schemas/VisualStudio/TeamTest/2006\">" +
         inside + "</TestRun>";
}

std::string Result(const std::string& outcome) {
  return "<UnitTestResult testName=\"t\" outcome=\"" + outcome +
         "\" duration=\"00:00:00.5000000\"><Output/></UnitTestResult>";
}

TEST(TestResults, CountsPassedAndFailed) {
  EXPECT_EQ(
      Summary(TrxOf(
          "<Times start=\"2008-03-05T13:14:15.0000000+01:00\" finish=\"2008-03-05T13:14:16.2500000+01:00\"/>"
          "<Results>" +
          Result("Passed") + Result("Failed") + Result("Passed") + "</Results>")),
      "Test results: 2 passed, 1 failed in 1.250 s");
}

TEST(TestResults, NamesEveryOtherOutcome) {
  std::string results;
  for (const char* outcome :
       {"Inconclusive", "Aborted", "Timeout", "NotExecuted", "Inconclusive", "Passed", "Disconnected",
        "Warning", "PassedButRunAborted", "NotRunnable", "Completed", "InProgress", "Pending"}) {
    results += Result(outcome);
  }
  EXPECT_EQ(
      Summary(TrxOf("<Results>" + results + "</Results>")),
      "Test results: 1 passed, 0 failed, 2 Inconclusive, 1 Aborted, 1 Timeout, 1 NotExecuted, 1 "
      "Disconnected, 1 Warning, 1 PassedButRunAborted, 1 NotRunnable, 1 Completed, 1 InProgress, 1 Pending "
      "in 6.500 s");
}

TEST(TestResults, TakesAnOutcomeThatIsNotWrittenForAnError) {
  EXPECT_EQ(Summary(TrxOf("<Results><UnitTestResult testName=\"t\"/></Results>")),
            "Test results: 0 passed, 0 failed, 1 Error");
}

TEST(TestResults, CountsOneResultOfADataDrivenTestOnce) {
  EXPECT_EQ(
      Summary(TrxOf("<Results><TestResultAggregation outcome=\"Failed\"><InnerResults>" + Result("Passed") +
                    Result("Failed") + "</InnerResults></TestResultAggregation></Results>")),
      "Test results: 0 passed, 1 failed");
}

TEST(TestResults, SaysThatNothingWasExecuted) {
  EXPECT_EQ(Summary(TrxOf("<Results/>")), "Test results: no test was executed");
  EXPECT_EQ(Summary(TrxOf("")), "Test results: no test was executed");
  EXPECT_EQ(Summary(TrxOf("<Results>" + Result("NotExecuted") + Result("NotRunnable") + "</Results>")),
            "Test results: no test was executed, 1 NotExecuted, 1 NotRunnable");
}

TEST(TestResults, FallsBackOnTheCounters) {
  EXPECT_EQ(
      Summary(TrxOf(
          "<ResultSummary outcome=\"Failed\"><Counters total=\"4\" executed=\"3\" passed=\"2\" error=\"0\" "
          "failed=\"1\" timeout=\"0\" notExecuted=\"1\"/></ResultSummary>")),
      "Test results: 2 passed, 1 failed, 1 NotExecuted");
}

TEST(TestResults, ReadsTheFormatOf2005) {
  const auto result = [](int outcome) {
    return "<UnitTestResult type=\"Microsoft.VisualStudio.TestTools.TestTypes.Unit.UnitTestResult\">"
           "<duration type=\"System.TimeSpan\">00:00:00.2500000</duration>"
           "<outcome type=\"Microsoft.VisualStudio.TestTools.Common.TestOutcome\"><value__ "
           "type=\"System.Int32\">" +
           std::to_string(outcome) + "</value__></outcome></UnitTestResult>";
  };
  EXPECT_EQ(
      Summary(
          "<Tests><edtdocversion build=\"50727\"/><TestRun type=\"x\"><result><outcome><value__>1</value__>"
          "</outcome></result></TestRun>" +
          result(10) + result(1) + result(4) + result(2) + result(99) + "</Tests>"),
      "Test results: 1 passed, 1 failed, 1 Inconclusive, 1 Timeout, 1 99 in 1.250 s");
}

// "class.name outcome seconds message trace" of each.
std::vector<std::string> Tests(const std::string& text) {
  std::vector<std::string> all;
  for (const TestCase& test : ParseTestResults(text).tests) {
    all.push_back(test.className + "." + test.name + " " + test.outcome + " " + std::to_string(test.seconds) +
                  " " + test.message + " " + test.trace);
  }
  return all;
}

TEST(TestResults, ListsTheTests) {
  const std::vector<std::string> expected{"Shop.Prices.adds Passed 0.500000  ",
                                          ".other Failed 0.000000 1 is not 2 at Shop.cs"};
  EXPECT_EQ(Tests(TrxOf(
                "<TestDefinitions><UnitTest id=\"7\"><TestMethod className=\"Shop.Prices, Tests, "
                "Version=1.0.0.0\"/></UnitTest></TestDefinitions><Results>"
                "<UnitTestResult testId=\"7\" testName=\"adds\" outcome=\"Passed\" duration=\"00:00:00.5\"/>"
                "<UnitTestResult testId=\"8\" testName=\"other\" outcome=\"Failed\"><Output><ErrorInfo>"
                "<Message>1 is not 2</Message><StackTrace>at Shop.cs</StackTrace></ErrorInfo></Output>"
                "</UnitTestResult></Results>")),
            expected);
  EXPECT_EQ(Tests("<Tests><UnitTestResult><testName>other</testName><outcome><value__>1</value__></outcome>"
                  "<errorInfo><message>1 is not 2</message><stackTrace>at Shop.cs</stackTrace></errorInfo>"
                  "</UnitTestResult></Tests>"),
            std::vector<std::string>{expected[1]});
}

TEST(TestResults, MindsTheZonesOfItsTimes) {
  const auto seconds = [](const char* start, const char* finish) {
    return ParseTestResults(TrxOf(std::string("<Times start=\"") + start + "\" finish=\"" + finish + "\"/>"))
        .seconds;
  };
  EXPECT_EQ(seconds("2008-03-05T23:59:59Z", "2008-03-06T01:00:01+01:00"), 2.0);
  EXPECT_EQ(seconds("2008-02-28T23:59:59", "2008-03-01T00:00:00"), 86401.0);
  EXPECT_EQ(seconds("2008-03-05T10:00:00", "2008-03-05T09:00:00"), std::nullopt);
  for (const char* damaged : {"", "yesterday", "2008-13-05T10:00:00", "2008-03-05T10", "2008-03-05Tnan:00:00",
                              "20080305T1000000"}) {
    EXPECT_EQ(seconds(damaged, "2008-03-06T01:00:00"), std::nullopt) << damaged;
  }
}

TEST(TestResults, RefusesWhatIsNoTestRun) {
  EXPECT_EQ(Summary("<Project/>"), "refused: It holds no test run");
  EXPECT_TRUE(Summary("").starts_with("refused: "));
  EXPECT_TRUE(Summary(TrxOf("<Results>").substr(0, 120)).starts_with("refused: "));
}

// An action of some other package that names its results file.
class OtherAction : public TQXAction {
 public:
  const std::string& GetOutputFileName() const { return output; }
  void SetOutputFileName(const std::string& value) { output = value; }
  std::string output;
};

const TQXActionClass& OtherClass() {
  static constexpr PublishedProperty properties[] = {
      Property<&OtherAction::GetOutputFileName, &OtherAction::SetOutputFileName>("OutputFileName")};
  static constexpr TQXActionClass record{
      "TOtherAction", []() -> std::string { return "Other"; }, properties,
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<OtherAction>(); }};
  return record;
}

class ResultsFile : public testing::Test {
 protected:
  ResultsFile() : folder_(GetTemporaryPath() + "/results-file-test") {
    CreateFolders(folder_);
    host_.variables.SetProject("OUT", folder_);
    for (const char* name : {"/run.trx", "/run.xml"}) RemoveFile(folder_ + name);
  }
  std::string ReportAfter(const std::string& property, const std::string& file, const std::string& bytes) {
    action_->output = property;
    const ResultsFileWatch watch(*action_, folder_ + "/");
    if (!file.empty()) ReplaceFile(folder_ + file, bytes);
    return watch.Report().summary;
  }

  TestHost host_;
  std::string folder_;
  std::unique_ptr<OtherAction> action_ = host_.Make<OtherAction>(OtherClass());
  const std::string passed_ = TrxOf("<Results>" + Result("Passed") + "</Results>");
};

TEST_F(ResultsFile, IsReportedAfterTheRunThatWroteIt) {
  EXPECT_EQ(ReportAfter("%OUT%/run.trx", "/run.trx", passed_), "Test results: 1 passed, 0 failed in 0.500 s");
  EXPECT_EQ(ReportAfter("run.xml", "/run.xml", passed_), "Test results: 1 passed, 0 failed in 0.500 s");
}

TEST_F(ResultsFile, IsNotReportedWhenTheRunWroteNone) {
  EXPECT_EQ(ReportAfter("run.trx", "", ""), "");
  EXPECT_EQ(ReportAfter("", "/run.trx", passed_), "");
  EXPECT_EQ(ReportAfter("run.trx", "", ""), "") << "the file of an earlier run";
  EXPECT_EQ(ReportAfter("%NOPE%", "", ""), "");
}

TEST_F(ResultsFile, IsNamedWhenItIsDamaged) {
  const std::string report = ReportAfter("run.trx", "/run.trx", passed_.substr(0, passed_.size() - 5));
  EXPECT_TRUE(report.starts_with("Test results: ")) << report;
  EXPECT_NE(report.find("run.trx cannot be read: "), std::string::npos) << report;
}

TEST_F(ResultsFile, IsPassedOverWhenItIsSomethingElse) {
  EXPECT_EQ(ReportAfter("run.xml", "/run.xml", "<Project/>"), "");
}

// Nobody has so many, but a file may say so.
TEST(TestResults, TakesNoTimeForManyOutcomes) {
  std::string text = "<TestRun><Results>";
  constexpr int kMany = 100'000;
  for (int i = 0; i < kMany; ++i) text += "<R outcome=\"o" + std::to_string(i) + "\"/><R outcome=\"o0\"/>";
  text += "</Results></TestRun>";
  const auto begin = std::chrono::steady_clock::now();
  const TestResults results = ParseTestResults(text);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_EQ(results.outcomes.size(), static_cast<std::size_t>(kMany));
  EXPECT_EQ(results.outcomes.front(), (std::pair<std::string, std::int64_t>("o0", kMany + 1)));
}

}  // namespace
}  // namespace qx
