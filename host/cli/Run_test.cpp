// run and validate: every exit code, the log in both styles, and what is saved.
#include <functional>
#include <nlohmann/json.hpp>
#include <thread>

#include "host/cli/testdata/CliFixture.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

class RunCommand : public CliTest {
 protected:
  // The count that the first action has in the file.
  int Count(const std::string& name) const {
    const auto shown = nlohmann::json::parse(Host({"show", name, "--json"}).out);
    return shown["actions"][0]["properties"]["Count"];
  }
};

TEST_F(RunCommand, SucceedsAndSavesRaisedNumbers) {
  Project("p.xml", {{"Text=%WHO%", "Lines=a;b"}});
  const auto result = Host({"run", "p.xml", "--set", "WHO=me"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(result.out.starts_with("me\nLines\n    a\n    b\n")) << result.out;
  EXPECT_EQ(Count("p.xml"), 1);
}

TEST_F(RunCommand, StopsAtTheFirstFailureAndSavesAllTheSame) {
  Project("p.xml", {{"Deed=tdFail"}, {"Text=never"}});
  const auto result = Host({"run", "p.xml"});
  EXPECT_EQ(result.code, 1);
  EXPECT_FALSE(Holds(result.out, "never"));
  EXPECT_EQ(Count("p.xml"), 1);
}

TEST_F(RunCommand, ReportsAnExceptionAndSavesAllTheSame) {
  Project("p.xml", {{"Deed=tdThrow"}, {"Text=never"}});
  const auto result = Host({"run", "p.xml"});
  EXPECT_EQ(result.code, 4);
  EXPECT_TRUE(Holds(result.out, "The deed threw")) << result.out;
  EXPECT_FALSE(Holds(result.out, "never"));
  EXPECT_EQ(Count("p.xml"), 1);
  ASSERT_EQ(Host({"set", "p.xml", "Deed=tdThrowNumber"}).code, 0);
  EXPECT_EQ(Host({"run", "p.xml"}).code, 4);
  EXPECT_EQ(Count("p.xml"), 2);
}

TEST_F(RunCommand, ValidatesEveryActionBeforeTheFirstRuns) {
  Project("p.xml", {{"Text=first"}, {"Verdict=tvError"}, {"Verdict=tvSilent"}});
  const std::string before = Content("p.xml");
  const auto result = Host({"run", "p.xml"});
  EXPECT_EQ(result.code, 3);
  EXPECT_FALSE(Holds(result.out, "first"));
  EXPECT_TRUE(Holds(result.out, "Verdict: The verdict is an error\n")) << result.out;
  EXPECT_TRUE(Holds(result.out, "Tiny Task: The action cannot run as it is set\n")) << result.out;
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(RunCommand, ValidatePrintsErrorsAndRunsNothing) {
  Project("p.xml", {{"Verdict=tvError"}});
  const auto result = Host({"validate", "p.xml"});
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.out, "Verdict: The verdict is an error\n");
  ASSERT_EQ(Host({"set", "p.xml", "Verdict=tvThrow"}).code, 0);
  EXPECT_EQ(Host({"validate", "p.xml"}).code, 4);
  ASSERT_EQ(Host({"set", "p.xml", "Verdict=tvValid"}).code, 0);
  EXPECT_EQ(Host({"validate", "p.xml"}).code, 0);
  EXPECT_EQ(Count("p.xml"), 0);
}

TEST_F(RunCommand, RefusesAnActionOfNoLoadedPackage) {
  Write("p.xml", "<BuildProject version=\"1\"><Actions><Action type=\"Other\"/></Actions></BuildProject>");
  const auto result = Host({"run", "p.xml"});
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(Holds(result.out, "Other: No loaded package has this action")) << result.out;
}

TEST_F(RunCommand, StopsAtTheTimeOutAndSaves) {
  Project("p.xml", {{"Deed=tdSleep"}, {"Text=never"}});
  const auto result = Host({"run", "p.xml", "--timeout", "0.3"});
  EXPECT_EQ(result.code, 5);
  EXPECT_TRUE(Holds(result.out, "Stopped")) << result.out;
  EXPECT_FALSE(Holds(result.out, "never"));
  EXPECT_TRUE(Holds(result.err, "stopped by the time-out"));
  EXPECT_EQ(Count("p.xml"), 1);
}

TEST_F(RunCommand, SavesNothingWhenToldSo) {
  Project("p.xml", {{}});
  const std::string before = Content("p.xml");
  EXPECT_EQ(Host({"run", "p.xml", "--no-save"}).code, 0);
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(RunCommand, LogsOneJsonObjectALine) {
  Project("p.xml", {{"Text=a\xE9\"", "Lines=x;y"}, {"Deed=tdThrow"}});
  const auto result = Host({"run", "p.xml", "--log", "json", "--log-file", "log.txt"});
  EXPECT_EQ(result.code, 4);
  std::vector<nlohmann::json> records;
  for (const std::string& line : SplitLines(result.out)) records.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(records.size(), 7u);
  EXPECT_EQ(records[6]["kind"], "summary");
  EXPECT_EQ(records[6]["success"], false);
  EXPECT_EQ(records[0]["action"], 1);
  EXPECT_EQ(records[0]["kind"], "message");
  EXPECT_EQ(records[1]["heading"], "Lines");
  EXPECT_EQ(records[1]["details"].dump(), "[\"x\",\"y\"]");
  EXPECT_EQ(records[2]["kind"], "result");
  EXPECT_EQ(records[2]["success"], true);
  EXPECT_EQ(records[4]["kind"], "exception");
  EXPECT_EQ(records[5]["action"], 2);
  EXPECT_EQ(records[5]["success"], false);
  EXPECT_TRUE(Holds(Content("log.txt"), "\"heading\":\"Lines\""));
}

TEST_F(RunCommand, CountsErrorsAndWarnings) {
  Project("p.xml",
          {{"Lines=a.cpp(1) : error C1: x;b.c:2:1: warning: y;plain"}, {"Text=LINK : error LNK1: z"}});
  const auto text = Host({"run", "p.xml"});
  EXPECT_TRUE(Holds(text.out, "    a.cpp(1) : error C1: x\n    b.c:2:1: warning: y\n    plain\n"))
      << text.out;
  EXPECT_TRUE(text.out.ends_with("2 errors, 1 warning\n")) << text.out;
  const auto json = Host({"run", "p.xml", "--log", "json"});
  EXPECT_TRUE(json.out.ends_with(",\"errors\":2,\"warnings\":1}\n")) << json.out;
}

TEST_F(RunCommand, ColoursErrorsAndWarningsOfCompilers) {
  Project("p.xml", {{"Lines=a.cpp(1) : error C1: x;b.c:2:1: warning: y;plain"}});
  const std::string out = Host({"--color", "always", "run", "p.xml"}).out;
  EXPECT_TRUE(Holds(
      out, "\x1b[31m    a.cpp(1) : error C1: x\x1b[0m\n\x1b[33m    b.c:2:1: warning: y\x1b[0m\n    plain\n"))
      << out;
  EXPECT_FALSE(Holds(Host({"--color", "never", "run", "p.xml"}).out, "\x1b"));
}

TEST_F(RunCommand, CountsOnlyWhatTheBaselineDoesNotHold) {
  Project("p.xml", {{"Lines=a.cpp(1) : error C1: x;b.c:2:1: warning: y"}});
  EXPECT_EQ(Host({"run", "p.xml", "--update-baseline"}).code, 2);
  const auto missing = Host({"run", "p.xml", "--baseline", "known.json"});
  EXPECT_EQ(missing.code, 2);
  EXPECT_TRUE(Holds(missing.err, "known.json")) << missing.err;
  const auto first = Host({"run", "p.xml", "--baseline", "known.json", "--update-baseline"});
  EXPECT_EQ(first.code, 0) << first.err;
  EXPECT_TRUE(first.out.ends_with("1 error, 1 warning\n")) << first.out;
  ASSERT_EQ(
      Host({"set", "p.xml", "Lines=a.cpp(7) : error C1: x;b.c:9:1: warning: y;b.c:9:1: warning: z"}).code, 0);
  const auto second = Host({"run", "p.xml", "--baseline", "known.json"});
  EXPECT_TRUE(second.out.ends_with("0 errors, 1 warning; 2 in the baseline not counted\n")) << second.out;
  Write("known.json", "[]");
  const auto broken = Host({"run", "p.xml", "--baseline", "known.json"});
  EXPECT_EQ(broken.code, 2);
  EXPECT_TRUE(Holds(broken.err, "known.json is no baseline: it holds no list")) << broken.err;
}

TEST_F(RunCommand, KeepsTheBaselineWhenTheRunDoesNotSucceed) {
  Project("p.xml", {{"Lines=a.cpp(1) : error C1: x", "Deed=tdFail"}});
  Write("known.json", "{\"version\":1,\"diagnostics\":[]}");
  const auto result = Host({"run", "p.xml", "--baseline", "known.json", "--update-baseline"});
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Holds(result.err, "known.json stays as it is: the run did not succeed")) << result.err;
  EXPECT_EQ(Content("known.json"), "{\"version\":1,\"diagnostics\":[]}");
}

TEST_F(RunCommand, LogsInTheWordsOfASystem) {
  Project("p.xml", {{"Lines=a.cpp(1) : error C1: x;##vso[task.complete]"}});
  const auto result = Host({"run", "p.xml", "--log", "azure", "--log-file", "log.txt"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(Holds(result.out, "##[group]1. Tiny Task\nhello\n")) << result.out;
  EXPECT_TRUE(Holds(result.out, "##vso[task.logissue type=error;sourcepath=a.cpp;linenumber=1;code=C1;]x\n"));
  EXPECT_TRUE(Holds(result.out, "    # #vso[task.complete]\n"));
  EXPECT_EQ(Content("log.txt").substr(0, 60), result.out.substr(0, 60));
  EXPECT_EQ(Host({"run", "p.xml", "--log", "jenkins"}).code, 2);
}

TEST_F(RunCommand, WritesReportsHoweverItEnded) {
  std::vector<std::string> reports;
  for (const char* format : {"html", "json", "junit", "sarif"})
    reports.insert(reports.end(), {"--report", std::string(format) + "=out." + format});
  const auto run = [&](Words words) {
    words.insert(words.begin(), {"run", "p.xml"});
    words.insert(words.end(), reports.begin(), reports.end());
    return Host(words);
  };
  Project("p.xml", {{"Lines=a.cpp(1) : error C1: x", "Deed=tdFail"}, {}});
  EXPECT_EQ(run({}).code, 1);
  const auto failed = nlohmann::json::parse(Content("out.json"));
  EXPECT_EQ(failed["outcome"], "failed");
  EXPECT_EQ(failed["diagnostics"][0]["code"], "C1");
  EXPECT_EQ(failed["actions"][1]["result"], "not run");
  EXPECT_TRUE(Holds(Content("out.html"), "<h1>The run failed</h1>"));
  EXPECT_TRUE(Holds(Content("out.junit"), "<failure message=\"The action failed\""));
  EXPECT_TRUE(Holds(Content("out.sarif"), "\"ruleId\": \"C1\""));
  ASSERT_EQ(Host({"set", "p.xml", "Deed=tdSleep"}).code, 0);
  EXPECT_EQ(run({"--timeout", "0.2"}).code, 5);
  EXPECT_EQ(nlohmann::json::parse(Content("out.json"))["outcome"], "stopped");
  ASSERT_EQ(Host({"set", "p.xml", "Deed=tdThrow"}).code, 0);
  EXPECT_EQ(run({}).code, 4);
  EXPECT_EQ(nlohmann::json::parse(Content("out.json"))["actions"][0]["exceptions"][0], "The deed threw");
  ASSERT_EQ(Host({"set", "p.xml", "Verdict=tvError"}).code, 0);
  EXPECT_EQ(run({}).code, 3);
  EXPECT_EQ(nlohmann::json::parse(Content("out.json"))["validation"][0]["subject"], "Verdict");
}

TEST_F(RunCommand, WritesNoReportOverWhatItUses) {
  Project("p.xml", {{"Text=%HERE%", "Lines=one.txt"}});
  Write("one.txt", "1");
  Write("two.txt", "2");
  Write("known.json", "{\"version\":1,\"diagnostics\":[]}");
  std::filesystem::create_hard_link(PathOf("p.xml"), PathOf("link.xml"));
  const std::string before = Content("p.xml");
  const auto refused = [&](const std::string& file, Words more = {}) {
    more.insert(more.begin(), {"run", "p.xml", "--set", "HERE=two.txt", "--report", "json=" + file});
    const auto result = Host(more);
    EXPECT_EQ(result.code, 2) << file;
    EXPECT_EQ(result.out, "") << file;
    return result.err;
  };
  EXPECT_TRUE(
      Holds(refused("p.xml"), "p.xml would be written over a file that the run uses: name another file"));
  EXPECT_TRUE(Holds(refused("link.xml"), "would be written over a file that the run uses, "));
  EXPECT_TRUE(Holds(refused("one.txt"), "over a file of action 1"));
  EXPECT_TRUE(Holds(refused("two.txt"), "over a file of action 1"));
  refused("options.xml");
  refused("known.json", {"--baseline", "known.json"});
  refused("log.txt", {"--log-file", "log.txt"});
  EXPECT_TRUE(Holds(refused("out", {"--report", "html=./out"}), "over another report"));
  EXPECT_TRUE(Holds(refused("none/out"), "there is no folder"));
  EXPECT_TRUE(Holds(refused("out", {"--dry-run"}), "dry run"));
  const auto unknown = Host({"run", "p.xml", "--report", "pdf=out"});
  EXPECT_EQ(unknown.code, 2);
  EXPECT_TRUE(Holds(unknown.err, "there are html, json, junit, sarif")) << unknown.err;
  EXPECT_EQ(Content("p.xml"), before);
  EXPECT_EQ(Content("one.txt"), "1");
}

TEST_F(RunCommand, NeverLogsASecret) {
  Project("p.xml", {{"Password=hush-hush", "Loud=True"}});
  for (const char* style : {"text", "json"}) {
    const auto result = Host({"run", "p.xml", "--log", style});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(Holds(result.out, "The password is ***")) << result.out;
    EXPECT_FALSE(Holds(result.out, "hush-hush"));
  }
}

TEST_F(RunCommand, RunsInTheProjectsFolder) {
  std::filesystem::create_directories(folder_ / "inner");
  Project("inner/p.xml", {{"Deed=tdWrite"}});
  EXPECT_EQ(Host({"run", "inner/p.xml", "--log-file", "log.txt"}).code, 0);
  EXPECT_TRUE(Exists("inner/tiny.txt"));
  EXPECT_TRUE(Exists("log.txt"));  // names on the command line are the caller's
}

TEST_F(RunCommand, ADryRunShowsEverythingAndChangesNothing) {
  Project("p.xml", {{"Deed=tdWrite", "Text=new"}, {"Deed=tdRun", "Lines=/no/such program;-a \"b c\""}});
  Write("tiny.txt", "old\n");
  const std::string before = Content("p.xml");
  const auto time = std::filesystem::last_write_time(folder_ / "tiny.txt");
  const auto folderTime = std::filesystem::last_write_time(folder_);
  const auto result = Host({"run", "p.xml", "--dry-run"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(Holds(result.out, "--- a/tiny.txt\n+++ b/tiny.txt\n@@ -1,1 +1,1 @@\n-old\n+new\n"))
      << result.out;
  EXPECT_TRUE(Holds(result.out, "Would run in this folder:\n    \"/no/such program\" -a \"b c\"\n"))
      << result.out;
  EXPECT_TRUE(Holds(result.out, "-      <Property name=\"Count\">0</Property>\n")) << result.out;
  EXPECT_EQ(Content("tiny.txt"), "old\n");
  EXPECT_EQ(Content("p.xml"), before);
  EXPECT_EQ(std::filesystem::last_write_time(folder_ / "tiny.txt"), time);
  EXPECT_EQ(std::filesystem::last_write_time(folder_), folderTime);
}

TEST_F(RunCommand, ADryRunMasksASecretThatStandsThereInClearText) {
  Write("p.xml",
        "<BuildProject version=\"1\"><Actions><Action type=\"Tiny Task\">\n"
        "<Property name=\"Password\">hush&amp;&#104;ush</Property>\n</Action></Actions></BuildProject>");
  const std::string before = Content("p.xml");
  const auto result = Host({"run", "p.xml", "--dry-run"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(Holds(result.out, "-<Property name=\"Password\">***</Property>\n")) << result.out;
  EXPECT_FALSE(Holds(result.out, "hush")) << result.out;
  EXPECT_EQ(Content("p.xml"), before);
}

TEST_F(RunCommand, ASecondRunSaysWhoHoldsTheProject) {
  Project("p.xml", {{"Deed=tdSleep", "Seconds=2"}});
  test::ProgramResult first;
  std::thread runner([&] { first = Host({"run", "p.xml"}); });
  while (!Exists("p.xml.lock")) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  for (const Words& words : std::vector<Words>{{"run", "p.xml"}, {"set", "p.xml", "Count=9"}}) {
    const auto second = Host(words);
    EXPECT_EQ(second.code, 2);
    EXPECT_TRUE(Holds(second.err, "p.xml is in use by process ")) << second.err;
  }
  runner.join();
  EXPECT_EQ(first.code, 0);
  EXPECT_EQ(Count("p.xml"), 1);
  EXPECT_FALSE(Exists("p.xml.lock"));
}

// A run that somebody changes the project of meanwhile.
class EditedRun : public RunCommand {
 protected:
  test::ProgramResult RunAndEdit(const std::function<void(std::string& text)>& edit) {
    Project("p.xml", {{"Deed=tdSleep", "Seconds=2"}});
    test::ProgramResult result;
    std::thread runner([&] { result = Host({"run", "p.xml"}); });
    while (!Exists("p.xml.lock")) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    std::string text = Content("p.xml");
    edit(text);
    Write("p.xml", text);
    runner.join();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(Count("p.xml"), 1);
    return result;
  }
};

TEST_F(EditedRun, PutsItsValuesIntoTheFileAsItIsNow) {
  const auto result =
      RunAndEdit([](std::string& text) { text.replace(text.find(">hello<"), 7, ">edited<"); });
  EXPECT_TRUE(Holds(result.err, "changed by somebody else meanwhile")) << result.err;
  EXPECT_TRUE(Holds(Content("p.xml"), "<Property name=\"Text\">edited</Property>"));
}

TEST_F(EditedRun, NeverWritesBackASecretThatWasPutIn) {
  const auto result = RunAndEdit([](std::string& text) {
    text.insert(text.find("<Property"), "<Property name=\"Password\">hush</Property>");
  });
  EXPECT_TRUE(Holds(result.err, "stood there in clear text")) << result.err;
  EXPECT_FALSE(Holds(Content("p.xml"), "hush"));
  EXPECT_TRUE(Holds(Content("p.xml"), "<Property name=\"_Password\">"));
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "Password=***"));
}

}  // namespace
}  // namespace qx::cli
