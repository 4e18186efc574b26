#include "host/report/Reports.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "host/report/Markup.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

const std::string kHostile =
    "<script>alert('x')</script> & \"q\" ]]> ##teamcity[x] \x1b[31m \xFF \xE2\x80\xAE";
// As a reader of XML gets it.
const std::string kHostileShown =
    "<script>alert('x')</script> & \"q\" ]]> ##teamcity[x] \xE2\x90\x9B[31m \xEF\xBF\xBD \xEF\xBF\xBD";

Diagnostic Made(Severity severity, std::string_view code, std::string_view file, int line,
                std::string_view message, std::string_view project) {
  Diagnostic diagnostic;
  diagnostic.severity = severity;
  diagnostic.code = code;
  diagnostic.file = file;
  diagnostic.line = line;
  diagnostic.message = message;
  diagnostic.project = project;
  diagnostic.action = 1;
  return diagnostic;
}

class Reports : public testing::Test {
 protected:
  Reports() {
    record_.project = "/src/nightly.xml";
    record_.hostVersion = "1.0.0";
    record_.started = std::chrono::sys_days(std::chrono::year(2026) / 11 / 22) + std::chrono::hours(10);
    record_.outcome = RunOutcome::ActionFailed;
    RunReport report;
    report.versions = {{"AssemblyVersion", "1.2.0.0", "1.2.1.0"}};
    report.projects = {
        {"App", "App.vcproj", "/out/App.exe", "missing", "build the project", {}, {}, true},
        {"Setup", "Setup.vdproj", "", "skipped", "the configuration does not build it", {}, {}, false},
        {"Lib", "Lib.csproj", "/out/Lib.dll", "ok", "", {}, {"1.2.1.0", "1.2.0.1"}, false}};
    record_.summary = {false, 61.25, "", {{1, report}}, 1, 1, 1};
    record_.actions = {{1, "Build", ActionState::Failed, 60, {}, {"the last line"}, {}},
                       {2, "Test", ActionState::NotRun, 0, {}, {}, {}}};
    record_.projects = {{1, "App"}, {1, "Other"}};
    record_.changes = {
        {1,
         "/src/AssemblyInfo.cs",
         {{DiffKind::Place, "@@ -1,1 +1,1 @@"}, {DiffKind::Removed, "-old <x>"}, {DiffKind::Added, "+new"}},
         ""},
        {1, "/src/a.rc", {}, "Cannot read it"}};
    record_.log.head = "a line <b>\n";
    diagnostics_[0].column = 5;
    diagnostics_[2].isKnown = true;
    record_.diagnostics = diagnostics_;
  }

  RunRecord record_;
  std::vector<Diagnostic> diagnostics_{Made(Severity::Error, "C2065", "C:\\a b\\x.cpp", 12, kHostile, "App"),
                                       Made(Severity::Warning, "", "/src/y.c", 0, "z", "Other"),
                                       Made(Severity::Error, "LNK1104", "", 0, "cannot open file", "App")};
};

TEST_F(Reports, AreOfTheFormatsThatAreThere) {
  EXPECT_EQ(ReportFormatNames(), "html, json, junit, sarif");
  EXPECT_EQ(FindReportFormat("pdf"), nullptr);
  EXPECT_EQ(FindReportFormat("html")->write(record_), HtmlReport(record_));
}

TEST_F(Reports, OfJsonHoldSummaryAndDiagnostics) {
  const Json found = Json::parse(JsonReport(record_));
  EXPECT_EQ(found["outcome"], "failed");
  EXPECT_EQ(found["exitCode"], 1);
  EXPECT_EQ(found["started"], "2026-11-22T10:00:00Z");
  EXPECT_EQ(found["summary"]["errors"], 1);
  EXPECT_EQ(found["summary"]["projects"][0]["status"], "missing");
  const Json second = {{"severity", "warning"}, {"code", ""},     {"file", "/src/y.c"}, {"line", 0},
                       {"column", 0},           {"message", "z"}, {"project", "Other"}, {"action", 1}};
  EXPECT_EQ(found["diagnostics"][1].dump(), second.dump());
  EXPECT_EQ(found["actions"][1]["result"], "not run");
  record_.hasBaseline = true;
  EXPECT_EQ(Json::parse(JsonReport(record_))["diagnostics"][2]["known"], true);
}

TEST_F(Reports, OfSarifHoldResultsAndTheInvocation) {
  record_.hasBaseline = true;
  record_.validation = {{1, "Solution", "is missing"}};
  const Json found = Json::parse(SarifReport(record_));
  EXPECT_EQ(found["version"], "2.1.0");
  const Json& run = found["runs"][0];
  EXPECT_EQ(run["tool"]["driver"]["version"], "1.0.0");
  EXPECT_EQ(run["tool"]["driver"]["rules"].dump(), "[{\"id\":\"C2065\"},{\"id\":\"LNK1104\"}]");
  const Json& first = run["results"][0];
  EXPECT_EQ(first["ruleId"], "C2065");
  EXPECT_EQ(first["level"], "error");
  const Json& place = first["locations"][0]["physicalLocation"];
  EXPECT_EQ(place["artifactLocation"]["uri"], "file:///C:/a%20b/x.cpp");
  EXPECT_EQ(place["region"].dump(), "{\"startLine\":12,\"startColumn\":5}");
  EXPECT_EQ(first["baselineState"], "new");
  EXPECT_FALSE(run["results"][1].contains("ruleId"));
  EXPECT_FALSE(run["results"][1]["locations"][0]["physicalLocation"].contains("region"));
  EXPECT_EQ(run["results"][1]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"],
            "file:///src/y.c");
  EXPECT_FALSE(run["results"][2].contains("locations"));
  EXPECT_EQ(run["results"][2]["baselineState"], "unchanged");
  const Json& invocation = run["invocations"][0];
  EXPECT_EQ(invocation["executionSuccessful"], false);
  EXPECT_EQ(invocation["endTimeUtc"], "2026-11-22T10:01:01Z");
  EXPECT_EQ(invocation["toolExecutionNotifications"][0]["message"]["text"], "Solution: is missing");
  EXPECT_EQ(invocation["toolExecutionNotifications"][1]["message"]["text"], "1. Build failed");
}

TEST_F(Reports, OfSarifNameFilesByAddresses) {
  const auto address = [this](std::string_view file) -> std::string {
    const Diagnostic one = Made(Severity::Error, "", file, 1, "", "");
    record_.diagnostics = {&one, 1};
    return Json::parse(SarifReport(
        record_))["runs"][0]["results"][0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"];
  };
  EXPECT_EQ(address("\\\\server\\share\\a.cpp"), "file://server/share/a.cpp");
  EXPECT_EQ(address("a:b\\c#d%.cpp"), "a%3Ab/c%23d%25.cpp");
  EXPECT_EQ(address(".\\\xC3\xA4.cpp"), "./%C3%A4.cpp");
}

// "suite/class.name element message" of every case.
std::vector<std::string> Cases(const std::string& text) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_buffer(text.data(), text.size())) << text;
  std::vector<std::string> all;
  for (const pugi::xml_node suite : document.document_element().children("testsuite")) {
    for (const pugi::xml_node one : suite.children("testcase")) {
      const pugi::xml_node what = one.first_child();
      all.push_back(std::string(suite.attribute("name").value()) + "/" + one.attribute("classname").value() +
                    "." + one.attribute("name").value() + " " + what.name() + " " +
                    what.attribute("message").value());
    }
  }
  return all;
}

TEST_F(Reports, OfJunitHoldACaseForEachActionProjectAndTest) {
  record_.actions[0].tests = {{"adds", "Shop.Prices", "Passed", 0.5, "", ""},
                              {"breaks", "", "Failed", 0, "1 is not 2", "at x"},
                              {"later", "", "NotExecuted", 0, "", ""},
                              {"hangs", "", "Timeout", 0, "", ""}};
  const std::string text = JunitReport(record_);
  EXPECT_EQ(Cases(text),
            (std::vector<std::string>{
                "1. Build/1. Build.Build failure The action failed",
                "1. Build/1. Build.App failure C:\\a b\\x.cpp(12,5): error C2065: " + kHostileShown,
                "1. Build/1. Build.Setup skipped the configuration does not build it",
                "1. Build/1. Build.Lib  ", "1. Build/1. Build.Other  ", "1. Build: tests/Shop.Prices.adds  ",
                "1. Build: tests/1. Build: tests.breaks failure 1 is not 2",
                "1. Build: tests/1. Build: tests.later skipped NotExecuted",
                "1. Build: tests/1. Build: tests.hangs error Timeout",
                "2. Test/2. Test.Test skipped The action was not run"}));
  EXPECT_NE(text.find("tests=\"10\" failures=\"3\" errors=\"1\" skipped=\"3\" time=\"60.500\""),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("the last line\n</failure>"), std::string::npos);
}

TEST_F(Reports, OfJunitTellOfExceptionsAndValidation) {
  record_.actions[0].exceptions = {"It broke"};
  record_.validation = {{2, "Solution", "is missing"}};
  const auto cases = Cases(JunitReport(record_));
  EXPECT_EQ(cases.front(), "1. Build/1. Build.Build error It broke");
  EXPECT_EQ(cases.back(), "2. Test/2. Test.Test error Solution: is missing");
}

TEST_F(Reports, OfHtmlShowWhatTheRunDid) {
  const std::string page = HtmlReport(record_);
  for (const std::string_view part :
       {"<h1>The run failed</h1>", "1 error, 1 warning", "took 61.3 s", "<code>1.2.1.0</code>",
        "<span class=\"tag error\">missing</span>", "<code>C:\\a b\\x.cpp(12,5)</code>",
        "<del>-old &lt;x&gt;</del>", "<ins>+new</ins>", "Cannot read it", "a line &lt;b&gt;",
        "Known ones, which do not count"}) {
    EXPECT_NE(page.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(page.find("<script"), std::string::npos);
  EXPECT_EQ(page.find('\x1b'), std::string::npos);
}

TEST_F(Reports, OfARunThatDidNothingAreWhole) {
  const RunRecord empty;
  EXPECT_NE(HtmlReport(empty).find("The run succeeded"), std::string::npos);
  EXPECT_EQ(Json::parse(JsonReport(empty))["outcome"], "succeeded");
  EXPECT_EQ(Json::parse(SarifReport(empty))["runs"][0]["results"].size(), 0u);
  EXPECT_TRUE(Cases(JunitReport(empty)).empty());
}

TEST_F(Reports, TakeLongMessages) {
  const std::string message(std::size_t{1} << 20, '<');
  diagnostics_[0].message = message;
  EXPECT_GT(HtmlReport(record_).size(), 4 * message.size());
  EXPECT_NE(HtmlReport(record_).find("... (1048576 bytes)</summary>"), std::string::npos);
  EXPECT_EQ(Json::parse(JsonReport(record_))["diagnostics"][0]["message"], message);
  EXPECT_EQ(Cases(JunitReport(record_)).size(), 6u);
}

TEST(Markup, ShowsWhatMarkupCannotHold) {
  EXPECT_EQ(MarkupText("a<b>&\"'"), "a&lt;b&gt;&amp;&quot;&#39;");
  EXPECT_EQ(MarkupText(std::string_view("\0\x1b\x7F\r", 4)),
            "\xE2\x90\x80\xE2\x90\x9B\xE2\x90\xA1\xE2\x90\x8D");
  EXPECT_EQ(MarkupText("a\r\nb\tc"), "a\nb\tc");
  EXPECT_EQ(MarkupText("\xFF\xEF\xBF\xBE\xC2\x85\xED\xA0\x80x"),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDx");
}

TEST_F(Reports, TellWhatWasKnownBeforeTheRun) {
  record_.findings = {
      {1, {CheckSeverity::Warning, "AssemblyInfo.cs", "lacks <a> title", "/src/a b.cs", "add one"}},
      {2, {CheckSeverity::Error, "Solution", "is not there", "", ""}}};
  const Json json = Json::parse(JsonReport(record_)).at("findings");
  ASSERT_EQ(json.size(), 2u);
  EXPECT_EQ(json[0].at("subject"), "AssemblyInfo.cs");
  EXPECT_EQ(json[0].at("severity"), "warning");
  EXPECT_EQ(json[1].at("action"), 2);
  const Json told =
      Json::parse(SarifReport(record_))["runs"][0]["invocations"][0]["toolConfigurationNotifications"];
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[0]["level"], "warning");
  EXPECT_EQ(told[0]["message"]["text"], "AssemblyInfo.cs: lacks <a> title (add one)");
  EXPECT_EQ(told[0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], "file:///src/a%20b.cs");
  EXPECT_FALSE(told[1].contains("locations"));
  pugi::xml_document junit;
  ASSERT_TRUE(junit.load_string(JunitReport(record_).c_str()));
  const pugi::xml_node suite = junit.child("testsuites").child("testsuite");
  EXPECT_STREQ(suite.child("system-err").text().get(),
               "warning: AssemblyInfo.cs: lacks <a> title (add one)\n");
  EXPECT_STREQ(suite.next_sibling().child("system-err").text().get(), "error: Solution: is not there\n");
  const std::string page = HtmlReport(record_);
  EXPECT_NE(page.find("Known before the run"), std::string::npos);
  EXPECT_NE(page.find("lacks &lt;a&gt; title"), std::string::npos);
}

}  // namespace
}  // namespace qx
