// What the action tells of its last run.
#include <gtest/gtest.h>

#include "actions/RunFixture.h"

namespace qx {
namespace {

constexpr const char* kInfo =
    "[assembly: AssemblyVersion(\"1.0.0.0\")]\r\n[assembly: AssemblyFileVersion(\"1.0.0.0\")]\r\n";

class RunReportOfAction : public RunFixture {
 protected:
  RunReportOfAction() {
    Write("src/Lib/Lib.csproj",
          "<Project xmlns=\"http://schemas.microsoft.com/developer/msbuild/2003\">"
          "<PropertyGroup><AssemblyName>Lib</AssemblyName><OutputType>Library</OutputType>"
          "<OutputPath>out\\</OutputPath></PropertyGroup>"
          "<ItemGroup><Compile Include=\"AssemblyInfo.cs\"/></ItemGroup>"
          "<Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>");
    Write("src/Lib/AssemblyInfo.cs", kInfo);
    Write("src/App.sln",
          "Microsoft Visual Studio Solution File, Format Version 9.00\r\nProject(\"{FAE04EC0-301F-11D3-BF4B-"
          "00C04F79EFBC}\") = \"Lib\", \"Lib\\Lib.csproj\", \"" +
              std::string(kLibId) +
              "\"\r\nEndProject\r\nGlobal\r\n\tGlobalSection(SolutionConfigurationPlatforms) = "
              "preSolution\r\n\t\tRelease|"
              "Any CPU = Release|Any CPU\r\n\tEndGlobalSection\r\nEndGlobal\r\n");
    action->SetSolution(solution());
    Use(TVSDotNetVersion::vs2005);
    action->Settings().solutionConfiguration = "Release|Any CPU";
  }
  void StampVersions() {
    action->Settings().updateAssemblyInfo = true;
    for (const auto attribute : {AssemblyAttribute::Version, AssemblyAttribute::FileVersion}) {
      action->Settings().updateAttribute[static_cast<std::size_t>(attribute)] = true;
    }
    action->SetAssemblyVersion("1|2|0|0");
    action->SetAssemblyFileVersion("3|4|5|6");
    action->SetAutoIncAssemblyBuildNo(true);
  }
  static std::string Told(const RunProject& project) { return project.name + " " + project.status; }
};

TEST_F(RunReportOfAction, IsAskedOfAnyAction) {
  TQXAction& any = *action;
  EXPECT_EQ(RunReportOf(any), action.get());
}

TEST_F(RunReportOfAction, TellsVersionsFromAndTo) {
  StampVersions();
  EXPECT_TRUE(action->Execute());
  const RunReport report = action->ReportRun(false);
  ASSERT_EQ(report.versions.size(), 2u);
  EXPECT_EQ(report.versions[0].name + " " + report.versions[0].from + " " + report.versions[0].to,
            "AssemblyVersion 1.2.0.0 1.2.1.0");
  EXPECT_EQ(report.versions[1].name + " " + report.versions[1].from + " " + report.versions[1].to,
            "AssemblyFileVersion 3.4.5.6 3.4.5.6");
  action->Settings().linkAssemblyFileVersionInfo = true;
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->ReportRun(false).versions[1].to, "1.2.2.0");
}

TEST_F(RunReportOfAction, TellsWhichFilesWereStampedAndChanged) {
  StampVersions();
  action->SetAutoIncAssemblyBuildNo(false);
  const std::string info = Path("src/Lib/AssemblyInfo.cs");
  for (const bool changed : {true, false}) {
    EXPECT_TRUE(action->Execute());
    const RunReport report = action->ReportRun(false);
    ASSERT_EQ(report.files.size(), 1u);
    EXPECT_EQ(report.files[0].path, info);
    EXPECT_EQ(report.files[0].kind, "AssemblyInfo");
    EXPECT_EQ(report.files[0].backup, info + ".bak");
    EXPECT_EQ(report.files[0].changed, changed);
  }
}

TEST_F(RunReportOfAction, TellsOfResourceScriptsToo) {
  Write("src/Tool.rc", "1 VERSIONINFO\r\n FILEVERSION 1,0,0,0\r\nBEGIN\r\nEND\r\n");
  const std::string script = Path("src/Tool.rc");
  action->Settings().updateWin32Resource = true;
  action->SetMajorVer(2);
  EXPECT_TRUE(action->Execute());
  EXPECT_TRUE(action->ApplyVersionInfo(script));
  const RunReport report = action->ReportRun(false);
  ASSERT_EQ(report.versions.size(), 1u);
  EXPECT_EQ(report.versions[0].name + " " + report.versions[0].to, "FileVersion 2.0.0.0");
  ASSERT_EQ(report.files.size(), 1u);
  EXPECT_EQ(report.files[0].kind + " " + report.files[0].backup, "ResourceScript " + script + ".orig");
  EXPECT_TRUE(report.files[0].changed);
}

TEST_F(RunReportOfAction, LooksForTheProgramsOfABuild) {
  EXPECT_TRUE(action->Execute());  // the stand-in makes nothing
  EXPECT_TRUE(action->ReportRun(false).projects.empty());
  RunReport report = action->ReportRun(true);
  ASSERT_EQ(report.projects.size(), 1u);
  EXPECT_EQ(Told(report.projects[0]), "Lib missing");
  EXPECT_TRUE(report.projects[0].isFault);
  EXPECT_EQ(report.projects[0].output, Path("src/Lib/out/Lib.dll"));
  EXPECT_EQ(report.projects[0].expected.assembly, "1.0.0.0");

  Select({kAppId});
  action->Settings().buildType = TVSDotNetBuildType::btSelectedProjects;
  EXPECT_EQ(Told(action->ReportRun(true).projects.at(0)), "Lib skipped");
}

TEST_F(RunReportOfAction, LooksWhereMSBuildWasTold) {
  UseMSBuild();
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->ReportRun(true).projects.at(0).output, Path("src/Lib/bin/Release/Lib.dll"));
}

TEST_F(RunReportOfAction, TellsNoProjectsOfWhatIsNoBuild) {
  for (const auto kind : {TVSDotNetBuildAction::baClean, TVSDotNetBuildAction::baDeploy}) {
    action->Settings().buildAction = kind;
    EXPECT_TRUE(action->Execute());
    EXPECT_TRUE(action->ReportRun(true).projects.empty());
  }
}

TEST_F(RunReportOfAction, OfARunThatFailedEarlyIsEmpty) {
  StampVersions();
  EXPECT_TRUE(action->Execute());
  action->SetSolution(Path("src/None.sln"));
  EXPECT_FALSE(action->Execute());
  const RunReport report = action->ReportRun(true);
  EXPECT_TRUE(report.versions.empty() && report.files.empty() && report.projects.empty());
}

TEST_F(RunReportOfAction, NamesAConfigurationThatIsNotThere) {
  action->Settings().solutionConfiguration = "Relese|Any CPU";
  EXPECT_TRUE(action->Execute());
  const RunReport report = action->ReportRun(true);
  ASSERT_EQ(report.projects.size(), 1u);
  EXPECT_EQ(Told(report.projects[0]), "App.sln missing");
  EXPECT_TRUE(report.projects[0].isFault);
  EXPECT_EQ(report.projects[0].reason, solution() +
                                           " has no configuration \"Relese|Any CPU\": it has Release|Any CPU "
                                           "(nearest: Release|Any CPU)");
}

}  // namespace
}  // namespace qx
