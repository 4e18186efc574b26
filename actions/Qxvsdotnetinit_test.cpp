// The action made from a solution: what it chooses by itself, what it reads out of the sources, and that the first
// stamping run takes nothing away.
#include <gtest/gtest.h>

#include <functional>

#include "actions/RunFixture.h"

namespace qx {
namespace {

constexpr const char* kCs = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}";
constexpr const char* kVc = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}";

std::string VersionScriptOf(const std::string& company, const char* numbers) {
  return "#include <winver.h>\r\n1 VERSIONINFO\r\n FILEVERSION " + std::string(numbers) +
         "\r\n FILEFLAGS 0x2L\r\n FILETYPE 0x2L\r\nBEGIN\r\n BLOCK \"StringFileInfo\"\r\n BEGIN\r\n"
         " BLOCK \"040704b0\"\r\n BEGIN\r\n VALUE \"CompanyName\", \"" +
         company +
         "\"\r\n VALUE \"FileVersion\", \"1.2.0.45\"\r\n VALUE \"Share\", \"50%\"\r\n END\r\n END\r\n"
         " BLOCK \"VarFileInfo\"\r\n BEGIN\r\n VALUE \"Translation\", 0x407, 1200\r\n END\r\nEND\r\n";
}

std::string Attributes(const char* assembly, const char* file) {
  std::string text = "using System.Reflection;\r\n[assembly: AssemblyTitle(\"x\")]\r\n";
  if (*assembly != '\0') text += "[assembly: AssemblyVersion(\"" + std::string(assembly) + "\")]\r\n";
  if (*file != '\0') text += "[assembly: AssemblyFileVersion(\"" + std::string(file) + "\")]\r\n";
  return text;
}

class InitOfAction : public RunFixture {
 protected:
  InitOfAction() {
    Solution("9.00", {"Debug|Any CPU", "Release|Any CPU", "Release|Win32"});
    Project("Lib", Attributes("1.2.*", "1.10.0.0"));
    Project("App", Attributes("1.10.0.0", ""));
    Write("src/Tool/Tool.vcproj",
          "<VisualStudioProject><Files><Filter><File RelativePath=\"Tool.rc\"/></Filter></Files>"
          "</VisualStudioProject>");
    Write("src/Tool/Tool.rc", VersionScriptOf("A", "1,2,0,45"));
    Write("src/More/More.vcproj",
          "<VisualStudioProject><Files><Filter><File RelativePath=\"More.rc\"/></Filter></Files>"
          "</VisualStudioProject>");
    Write("src/More/More.rc", VersionScriptOf("A", "7,0,0,0"));
  }
  void Project(const std::string& name, const std::string& info) {
    Write("src/" + name + "/" + name + ".csproj",
          "<Project><Compile Include=\"AssemblyInfo.cs\"/></Project>");
    Write("src/" + name + "/AssemblyInfo.cs", info);
  }
  void Solution(const std::string& format, const Lines& configurations) {
    const auto line = [](const char* name, const std::string& path, const char* guid, const char* type) {
      return "Project(\"" + std::string(type) + "\") = \"" + name + "\", \"" + path + "\", \"" + guid +
             "\"\r\nEndProject\r\n";
    };
    std::string text = "Microsoft Visual Studio Solution File, Format Version " + format + "\r\n" +
                       line("Lib", "Lib\\Lib.csproj", kLibId, kCs) +
                       line("App", "App\\App.csproj", kAppId, kCs) +
                       line("Tool", "Tool\\Tool.vcproj", kToolId, kVc) +
                       line("More", "More\\More.vcproj", kGoneId, kVc) + "Global\r\n";
    if (!configurations.empty()) text += "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n";
    for (const std::string& name : configurations) text += "\t\t" + name + " = " + name + "\r\n";
    if (!configurations.empty()) text += "\tEndGlobalSection\r\n";
    Write("src/App.sln", text + "EndGlobal\r\n");
  }

  FromFileAnswer Init(bool stamps = false, const std::string& configuration = {}) {
    action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
    return action->SetUpFromFile({solution(), Path("src/"), configuration, stamps});
  }
  std::string Versions() {
    std::string text;
    for (const ActionVersion& version : action->GetVersions()) text += version.value + " ";
    return text;
  }
  std::string FaultOf(const std::string& configuration) {
    try {
      Init(false, configuration);
      return "";
    } catch (const Exception& fault) {
      return fault.Message();
    }
  }
};

// Stamping would make CR LF of every one of their lines, unless the host is told to keep them.
TEST_F(InitOfAction, CountsTheSourcesThatEndLinesInLineFeeds) {
  EXPECT_EQ(Init().filesWithLineFeeds, 0);
  Write("src/Lib/AssemblyInfo.cs", "[assembly: AssemblyVersion(\"1.2.0.0\")]\n");
  std::string script = VersionScriptOf("A", "1,2,0,45");
  std::erase(script, '\r');
  Write("src/Tool/Tool.rc", script);
  EXPECT_EQ(Init().filesWithLineFeeds, 2);
}

TEST_F(InitOfAction, TakesSolutions) {
  TQXVSDotNetAction bare;
  EXPECT_EQ(FromFileOf(bare), &bare);
  EXPECT_TRUE(bare.TakesFile("/a/App.SLN"));
  EXPECT_FALSE(bare.TakesFile("/a/App.csproj"));
}

TEST_F(InitOfAction, ChoosesTheProductByTheFormat) {
  for (const auto& [format, version] :
       {std::pair("7.00", TVSDotNetVersion::vs2002), std::pair("8.00", TVSDotNetVersion::vs2003),
        std::pair("9.00", TVSDotNetVersion::vs2005)}) {
    Solution(format, {"Release"});
    Init();
    EXPECT_EQ(action->Settings().vstudioVersion, version) << format;
  }
  Solution("10.00", {"Release"});
  EXPECT_EQ(FaultOf(""), solution() +
                             " is of format 10.00; only 7.00, 8.00 and 9.00 are built, those of Visual "
                             "Studio 2002, 2003 and 2005");
}

TEST_F(InitOfAction, ChoosesAReleaseConfiguration) {
  const std::pair<Lines, std::string> rows[] = {
      {{"Debug|Any CPU", "Release|Win32", "Release|Any CPU", "Release|Mixed Platforms"},
       "Release|Mixed Platforms"},
      {{"Release|Win32", "Release|Any CPU"}, "Release|Any CPU"},
      {{"Debug|Win32", "release|win32"}, "release|win32"},
      {{"Debug", "Release"}, "Release"},
      {{"Debug|x64", "Release|x64"}, "Debug|x64"},
  };
  for (const auto& [configurations, chosen] : rows) {
    Solution("9.00", configurations);
    EXPECT_TRUE(Init().warnings.empty());
    EXPECT_EQ(action->Settings().solutionConfiguration, chosen);
  }
  Solution("9.00", {});
  EXPECT_EQ(Init().warnings, (Lines{solution() + " has no configurations; the compiler gets an empty one"}));
  EXPECT_EQ(action->Settings().solutionConfiguration, "");
}

TEST_F(InitOfAction, TakesTheConfigurationThatIsAskedFor) {
  Init(false, "debug|any cpu");
  EXPECT_EQ(action->Settings().solutionConfiguration, "Debug|Any CPU");
  Init(false, "Release");
  EXPECT_EQ(action->Settings().solutionConfiguration, "Release|Any CPU");
  EXPECT_EQ(FaultOf("Relaese|Win32"),
            solution() +
                " has no configuration \"Relaese|Win32\"; supported: Debug|Any CPU, Release|Any CPU, "
                "Release|Win32 (nearest: Release|Win32)");
}

TEST_F(InitOfAction, CountsOneFileAsOne) {
  Write("src/Lib/Lib.csproj", "<Project/>");
  EXPECT_EQ(Init().decisions.at(3),
            "AssemblyVersion: 1.10.0.0, file version 1.10.0.0: the highest in 1 AssemblyInfo file");
}

TEST_F(InitOfAction, TakesTheHighestNumbersOfTheSources) {
  const FromFileAnswer answer = Init();
  EXPECT_EQ(Versions(), "1.10.0.0 1.10.0.0 1.2.0.45 ");
  EXPECT_EQ(action->GetSolution(), "App.sln");
  EXPECT_FALSE(action->Settings().updateAssemblyInfo || action->Settings().updateWin32Resource);
  EXPECT_EQ(answer.decisions,
            (Lines{"Solution: App.sln, of format 9.00", "VStudioVersion: vs2005",
                   "SolutionConFiguration: Release|Any CPU",
                   "AssemblyVersion: 1.10.0.0, file version 1.10.0.0: the highest in 2 AssemblyInfo files",
                   "FileVersion: 1.2.0.45, of " + Path("src/Tool/Tool.rc")}));
  Project("App", Attributes("v1.2", "2.0.0.0.0"));
  Project("Lib", Attributes("1.2.*", ""));
  Init();
  EXPECT_EQ(Versions(), "1.2.0.0 1.2.0.0 1.2.0.45 ");
}

TEST_F(InitOfAction, WithStampingRaisesTheBuildNumbersAndKeepsTheStrings) {
  EXPECT_TRUE(Init(true).warnings.empty());
  EXPECT_TRUE(action->Settings().updateAssemblyInfo && action->Settings().updateWin32Resource);
  EXPECT_TRUE(action->GetAutoIncAssemblyBuildNo() && action->GetAutoIncBuild());
  EXPECT_TRUE(action->Settings().linkAssemblyFileVersionInfo);
  EXPECT_EQ(action->GetLocale(), 0x407);
  EXPECT_EQ(action->GetCodePage(), 1200);
  EXPECT_TRUE(action->GetIsDLL() && action->GetIsPreRelease());
  EXPECT_EQ(action->GetVersionInfoKeys(), "CompanyName=A\r\nFileVersion=1.2.0.45\r\nShare=50%%\r\n");
  action->SetSolution(solution());
  for (const CheckFinding& finding : action->CheckRun().findings)
    EXPECT_NE(finding.severity, CheckSeverity::Error) << finding.subject << finding.message;

  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(Versions(), "1.10.1.0 1.10.0.0 1.2.0.46 ");
  EXPECT_NE(Read("src/Lib/AssemblyInfo.cs").find("AssemblyFileVersion(\"1.10.1.0\")"), std::string::npos);
  for (const char* name : {"src/Tool/Tool.rc", "src/More/More.rc"}) {
    const std::string script = Read(name);
    for (const char* part :
         {"FILEVERSION 1,2,0,46", "\"CompanyName\", \"A", "\"Share\", \"50%", "040704", "FILETYPE 0x2L"})
      EXPECT_NE(script.find(part), std::string::npos) << part << "\n" << script;
  }
}

TEST_F(InitOfAction, LeavesOutWhatStampingWouldTakeFrom) {
  Write("src/More/More.rc", VersionScriptOf("B", "7,0,0,0"));
  Project("App", Attributes("", ""));
  const FromFileAnswer answer = Init(true);
  EXPECT_EQ(action->Settings().applyAssemblyInfoTo, TVSDotNetBuildType::btSelectedProjects);
  EXPECT_EQ(action->Settings().assemblySelectedProjects.Items(), Lines{kLibId});
  EXPECT_EQ(action->Settings().applyResourceInfoTo, TVSDotNetBuildType::btSelectedProjects);
  EXPECT_EQ(action->Settings().resourceSelectedProjects.Items(), Lines{kToolId});
  ASSERT_EQ(answer.warnings.size(), 2u);
  EXPECT_EQ(answer.warnings[0], "1 AssemblyInfo files say no version and are left out of the stamping");
  EXPECT_TRUE(answer.warnings[1].starts_with(Path("src/More/More.rc") + " has strings of its own"));
  EXPECT_FALSE(action->Settings().linkAssemblyFileVersionInfo);
  EXPECT_TRUE(action->GetAutoIncAssemblyFileBuildNo());
}

TEST_F(InitOfAction, SaysSoWhereNothingCanBeStamped) {
  Project("Lib", Attributes("", ""));
  Project("App", Attributes("", ""));
  Write("src/Tool/Tool.rc", "1 VERSIONINFO\r\nBEGIN\r\n BEGIN\r\n");
  Write("src/More/More.rc", "");
  const FromFileAnswer answer = Init(true);
  ASSERT_EQ(answer.warnings.size(), 2u);
  EXPECT_TRUE(answer.warnings[0].starts_with(Path("src/Tool/Tool.rc") + " is left out of the stamping: "));
  EXPECT_EQ(answer.warnings[1], "Nothing is stamped: no source of the solution says a version");
  EXPECT_FALSE(action->Settings().updateAssemblyInfo || action->Settings().updateWin32Resource);
}

TEST_F(InitOfAction, APercentSignInANameIsNoVariable) {
  Solution("9.00", {"100%|Win32"});
  std::filesystem::rename(root_ / "src/App.sln", root_ / "src/App 50%.sln");
  action->SetUpFromFile({Path("src/App 50%.sln"), Path("src/"), "", false});
  EXPECT_EQ(action->GetSolution(), "App 50%%.sln");
  EXPECT_EQ(action->Settings().solutionConfiguration, "100%%|Win32");
}

}  // namespace
}  // namespace qx
