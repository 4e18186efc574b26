// What is asked of which action before a run, and how the answers are written.
#include "host/project/ProjectCheck.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/testing/SampleAction.h"

namespace qx {
namespace {

const ProjectCheck kCheck{
    {{1, {CheckSeverity::Info, "Engine", "It is there", "/e", ""}},
     {2, {CheckSeverity::Error, "Text", "Undefined variable : A", "", "define it"}},
     {0, {CheckSeverity::Warning, "p.xml", "bad \xFF byte", "p.xml", ""}}},
    {{1, {"App", "App\\App.csproj", "C#", true, ""}}, {1, {"Set", "Set.vdproj", "Setup", false, "left out"}}},
    {{1, {"/a/AssemblyInfo.cs", "App", "AssemblyInfo", "1.2.*", "1.2.0.0"}},
     {1, {"/a/App.rc", "App", "ResourceScript", "", ""}}}};

TEST(ProjectCheck, IsJsonWithTheNamesThatScriptsRelyOn) {
  EXPECT_EQ(
      nlohmann::ordered_json::parse(CheckAsJson(kCheck)).dump(),
      R"({"findings":[{"action":1,"severity":"info","subject":"Engine","message":"It is there","file":"/e","hint":""},)"
      R"({"action":2,"severity":"error","subject":"Text","message":"Undefined variable : A","file":"","hint":"define it"},)"
      "{\"action\":0,\"severity\":\"warning\",\"subject\":\"p.xml\",\"message\":\"bad \xEF\xBF\xBD "
      "byte\",\"file\":\"p.xml\",\"hint\":\"\"}],"
      R"("projects":[{"action":1,"name":"App","path":"App\\App.csproj","language":"C#","builds":true,"reason":""},)"
      R"({"action":1,"name":"Set","path":"Set.vdproj","language":"Setup","builds":false,"reason":"left out"}],)"
      R"("stamps":[{"action":1,"file":"/a/AssemblyInfo.cs","project":"App","kind":"AssemblyInfo",)"
      R"("from":{"assemblyVersion":"1.2.*","fileVersion":"1.2.0.0"}},)"
      R"({"action":1,"file":"/a/App.rc","project":"App","kind":"ResourceScript",)"
      R"("from":{"assemblyVersion":"","fileVersion":""}}]})");
  EXPECT_EQ(nlohmann::ordered_json::parse(CheckAsJson({})).dump(),
            R"({"findings":[],"projects":[],"stamps":[]})");
}

TEST(ProjectCheck, IsTextWithErrorsFirst) {
  EXPECT_EQ(CheckAsText(kCheck),
            "error: Text: Undefined variable : A (define it)\n"
            "warning: p.xml: bad \xFF byte\n"
            "info: Engine: It is there\n"
            "1 of 2 projects are built\n"
            "    Set is not: left out\n"
            "2 files to stamp\n"
            "    /a/AssemblyInfo.cs: 1.2.*, file 1.2.0.0\n"
            "    /a/App.rc: no version\n"
            "1 error, 1 warning\n");
  EXPECT_TRUE(kCheck.HasErrors());
  EXPECT_FALSE(ProjectCheck().HasErrors());
}

TEST(ProjectCheck, NamesAnActionThatNoPackageHas) {
  const OpenProject project(
      BuildProject::Parse(
          "<BuildProject version=\"1\"><Actions><Action type=\"Other\" enabled=\"False\"/><Action "
          "type=\"Other\"/><Action type=\"Sample\"/></Actions></BuildProject>",
          "p.xml"),
      [](const std::string& name) { return name == "Sample" ? &SampleActionClass() : nullptr; }, {});
  const ProjectCheck check = CheckProject(project);
  ASSERT_EQ(check.findings.size(), 1u);  // the sample has no check and is valid
  EXPECT_EQ(check.findings[0].first, 2);
  EXPECT_EQ(check.findings[0].second.subject, "Other");
  EXPECT_TRUE(AskChecks(project).findings.empty());
}

}  // namespace
}  // namespace qx
