#include "host/project/RunSummary.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

RunProject Project(const std::string& name, const std::string& status, bool isFault) {
  RunProject project;
  project.name = name;
  project.path = name + ".csproj";
  project.output = "/out/" + name + ".dll";
  project.status = status;
  project.reason = status == "ok" ? "" : "because";
  project.expected = {"1.2.1.0", "1.2.*"};
  project.found = {"1.2.0.0", ""};
  project.isFault = isFault;
  return project;
}

RunSummary Summary() {
  RunReport report;
  report.versions = {{"AssemblyVersion", "1.2.0.0", "1.2.1.0"}, {"FileVersion", "3.0.0.0", "3.0.0.0"}};
  report.files = {{"/a/AssemblyInfo.cs", "AssemblyInfo", true, "/a/AssemblyInfo.cs.bak"},
                  {"/b.rc", "ResourceScript", false, "/b.rc.orig"}};
  report.projects = {Project("Good", "ok", false), Project("Old", "stale", true),
                     Project("Left", "skipped", false)};
  return {true, 3.1004, "", {{2, report}}, 1, 2, 0};
}

TEST(RunSummary, AsJsonHoldsEveryFieldInItsOrder) {
  const Json found = Json::parse(SummaryAsJson(Summary()));
  const Json old = {{"action", 2},
                    {"name", "Old"},
                    {"path", "Old.csproj"},
                    {"output", "/out/Old.dll"},
                    {"status", "stale"},
                    {"reason", "because"},
                    {"expected", {{"assemblyVersion", "1.2.1.0"}, {"fileVersion", "1.2.*"}}},
                    {"found", {{"assemblyVersion", "1.2.0.0"}, {"fileVersion", ""}}}};
  EXPECT_EQ(found["projects"][1].dump(), old.dump());
  EXPECT_EQ(found["projects"].size(), 3u);
  const Json version = {{"action", 2}, {"name", "AssemblyVersion"}, {"from", "1.2.0.0"}, {"to", "1.2.1.0"}};
  EXPECT_EQ(found["versions"][0].dump(), version.dump());
  const Json file = {{"action", 2},
                     {"path", "/a/AssemblyInfo.cs"},
                     {"kind", "AssemblyInfo"},
                     {"changed", true},
                     {"backup", "/a/AssemblyInfo.cs.bak"}};
  EXPECT_EQ(found["files"][0].dump(), file.dump());
  EXPECT_TRUE(SummaryAsJson(Summary()).starts_with(
      "{\"kind\":\"summary\",\"success\":true,\"seconds\":3.1,\"versions\":["));
  EXPECT_EQ(SummaryAsJson(Summary()).back(), '\n');
}

TEST(RunSummary, AsTextNamesVersionsFilesAndWhatIsNotOk) {
  RunSummary summary = Summary();
  summary.verdict = "The end";
  EXPECT_EQ(SummaryAsText(summary),
            "AssemblyVersion: 1.2.0.0 -> 1.2.1.0\nFileVersion: 3.0.0.0\n2 files stamped, 1 changed\n"
            "1 of 2 projects were built as they should be\n1 error, 2 warnings\nOld: stale: /out/Old.dll: "
            "because\nThe end\n");
}

TEST(RunSummary, LinesTellWhichOfThemAreBad) {
  std::string bad;
  for (const SummaryLine& line : SummaryLines(Summary())) bad += line.isBad ? line.text + "|" : "";
  EXPECT_EQ(bad, "1 error, 2 warnings|Old: stale: /out/Old.dll: because|");
}

TEST(RunSummary, OfActionsThatTellNothingIsNoTextAndAnEmptyObject) {
  EXPECT_EQ(SummaryAsText({true, 1, "", {}, 0, 0, 0}), "");
  EXPECT_EQ(SummaryAsJson({false, 1, "", {}, 0, 0, 0}),
            "{\"kind\":\"summary\",\"success\":false,\"seconds\":1.0,\"versions\":[],\"files\":[],"
            "\"projects\":[],\"errors\":0,\"warnings\":0}\n");
}

TEST(RunSummary, CountsErrorsAndWarningsOfActionsThatTellNothingToo) {
  EXPECT_EQ(SummaryAsText({true, 1, "", {}, 0, 1, 0}), "0 errors, 1 warning\n");
  EXPECT_EQ(SummaryAsText({true, 1, "", {}, 0, 0, 7}),
            "0 errors, 0 warnings; 7 in the baseline not counted\n");
  const Json found = Json::parse(SummaryAsJson({true, 1, "", {}, 3, 4, 5}));
  EXPECT_EQ(found["errors"], 3);
  EXPECT_EQ(found["warnings"], 4);
}

TEST(RunSummary, FindsFaults) {
  RunSummary summary = Summary();
  EXPECT_TRUE(HasFaults(summary));
  summary.reports[0].second.projects[1].isFault = false;
  EXPECT_FALSE(HasFaults(summary));
}

TEST(RunSummary, TakesTextsThatAreNotUtf8) {
  RunSummary summary = Summary();
  summary.reports[0].second.projects[0].name = "\xFF";
  EXPECT_EQ(Json::parse(SummaryAsJson(summary))["projects"][0]["name"], "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace qx
