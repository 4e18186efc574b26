// What the action tells of a run before it: each finding by what causes it, the projects and the files to stamp.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "actions/RunFixture.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr const char* kInfo =
    "using System.Reflection;\r\n[assembly: AssemblyVersion(\"1.0.*\")]\r\n"
    "[assembly: AssemblyFileVersion(\"1.2.0.0\")]\r\n[assembly: AssemblyTitle(\"x\")]\r\n";
constexpr const char* kScript =
    "1 VERSIONINFO\r\n FILEVERSION 1,2,0,45\r\nBEGIN\r\n BLOCK \"StringFileInfo\"\r\n BEGIN\r\n"
    " BLOCK \"040904b0\"\r\n BEGIN\r\n VALUE \"CompanyName\", \"A\"\r\n END\r\n END\r\nEND\r\n";

std::string ProjectLines(const char* name, const std::string& path, const char* guid, const char* type) {
  return "Project(\"" + std::string(type) + "\") = \"" + name + "\", \"" + path + "\", \"" + guid +
         "\"\r\nEndProject\r\n";
}

class CheckOfAction : public RunFixture {
 protected:
  CheckOfAction() {
    constexpr const char* kCs = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}";
    constexpr const char* kVc = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}";
    constexpr const char* kFolder = "{2150E333-8FDC-42A3-9474-1A3956D46DE8}";
    Write("src/App.sln",
          "\r\nMicrosoft Visual Studio Solution File, Format Version 9.00\r\n" +
              ProjectLines("Lib", "Lib\\Lib.csproj", kLibId, kCs) +
              ProjectLines("Tool", "Tool\\Tool.vcproj", kToolId, kVc) +
              ProjectLines("Docs", "Docs", "{AA}", kFolder) +
              "Global\r\n\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n"
              "\t\tDebug|Win32 = Debug|Win32\r\n\t\tRelease|Win32 = Release|Win32\r\n\tEndGlobalSection\r\n"
              "\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n" +
              Mapping(kLibId, "Debug", true) + Mapping(kLibId, "Release", true) +
              Mapping(kToolId, "Debug", true) + Mapping(kToolId, "Release", false) +
              "\tEndGlobalSection\r\nEndGlobal\r\n");
    Write("src/Lib/Lib.csproj", "<Project><Compile Include=\"AssemblyInfo.cs\"/></Project>");
    Write("src/Lib/AssemblyInfo.cs", kInfo);
    Write("src/Tool/Tool.vcproj",
          "<VisualStudioProject><Files><Filter><File RelativePath=\"Tool.rc\"/></Filter></Files>"
          "</VisualStudioProject>");
    Write("src/Tool/Tool.rc", kScript);
    action->SetSolution(solution());
    Use(TVSDotNetVersion::vs2005);
    action->Settings().solutionConfiguration = "Debug|Win32";
  }
  static std::string Mapping(const char* guid, const std::string& name, bool isBuilt) {
    const std::string key = "\t\t" + std::string(guid) + "." + name + "|Win32.";
    return key + "ActiveCfg = " + name + "|Win32\r\n" +
           (isBuilt ? key + "Build.0 = " + name + "|Win32\r\n" : "");
  }
  void Stamp() {
    action->Settings().updateAssemblyInfo = true;
    action->Settings().updateWin32Resource = true;
    for (const auto attribute : {AssemblyAttribute::Version, AssemblyAttribute::FileVersion})
      Update(attribute);
    action->SetVersions("2.0.0.0");
  }
  void Update(AssemblyAttribute attribute) {
    action->Settings().updateAttribute[static_cast<std::size_t>(attribute)] = true;
  }

  // "error SUBJECT: MESSAGE" of each error and warning.
  Lines Findings() {
    Lines lines;
    for (const CheckFinding& finding : action->CheckRun().findings) {
      if (finding.severity == CheckSeverity::Info) continue;
      lines.push_back((finding.severity == CheckSeverity::Error ? "error " : "warning ") + finding.subject +
                      ": " + finding.message);
    }
    return lines;
  }
  static std::string Told(const CheckReport& report) {
    std::string text;
    for (const CheckedProject& project : report.projects)
      text +=
          project.name + " " + project.language + (project.builds ? " built\n" : " " + project.reason + "\n");
    return text;
  }
};

TEST_F(CheckOfAction, FindsNothingWhereAllIsWell) {
  Stamp();
  EXPECT_EQ(CheckOf(*action), action.get());
  EXPECT_EQ(Findings(), Lines{});
}

TEST_F(CheckOfAction, TellsTheEngineAndTheFormat) {
  Lines infos;
  for (const CheckFinding& finding : action->CheckRun().findings)
    infos.push_back(finding.subject + ": " + finding.message);
  EXPECT_EQ(infos, (Lines{"VStudioVersion: The engine is " + devenv(),
                          "Solution: " + solution() + " is of format 9.00"}));
}

TEST_F(CheckOfAction, TellsWhichProjectsAreBuiltAndWhyNotTheOthers) {
  EXPECT_EQ(Told(action->CheckRun()),
            "Lib C# built\nTool Visual C++ built\nDocs Folder it is a solution folder\n");
  action->Settings().solutionConfiguration = "release|win32";
  Select({kLibId});
  EXPECT_EQ(
      Told(action->CheckRun()),
      "Lib C# built\nTool Visual C++ it is not among the selected projects\nDocs Folder it is a solution "
      "folder\n");
  Select({kLibId, kToolId});
  EXPECT_NE(Told(action->CheckRun()).find("Tool Visual C++ the configuration Release|Win32 leaves it out\n"),
            std::string::npos);
  action->Settings().buildAction = TVSDotNetBuildAction::baClean;
  EXPECT_NE(Told(action->CheckRun()).find("Lib C# the run cleans and builds nothing\n"), std::string::npos);
}

TEST_F(CheckOfAction, AMissingProjectFileIsAWarning) {
  fs::remove(root_ / "src/Lib/Lib.csproj");
  EXPECT_EQ(Findings(), (Lines{"warning Lib.csproj: The project's file is not there"}));
  EXPECT_TRUE(
      Told(action->CheckRun()).starts_with("Lib C# its file is not there: " + Path("src/Lib/Lib.csproj")));
}

TEST_F(CheckOfAction, TellsWhichFilesAreStampedAndWhatStandsThere) {
  Stamp();
  const auto stamps = action->CheckRun().stamps;
  ASSERT_EQ(stamps.size(), 2u);
  EXPECT_EQ(stamps[0].file + " " + stamps[0].project + " " + stamps[0].kind + " " + stamps[0].assemblyFrom +
                " " + stamps[0].fileFrom,
            Path("src/Lib/AssemblyInfo.cs") + " Lib AssemblyInfo 1.0.* 1.2.0.0");
  EXPECT_EQ(stamps[1].file + " " + stamps[1].project + " " + stamps[1].kind + " " + stamps[1].assemblyFrom +
                " " + stamps[1].fileFrom,
            Path("src/Tool/Tool.rc") + " Tool ResourceScript  1.2.0.45");
  action->Settings().applyAssemblyInfoTo = action->Settings().applyResourceInfoTo =
      TVSDotNetBuildType::btSelectedProjects;
  EXPECT_TRUE(action->CheckRun().stamps.empty());
}

TEST_F(CheckOfAction, ChangesNeitherFilesNorTheAction) {
  Stamp();
  action->SetAutoIncAssemblyBuildNo(true);
  action->SetAutoIncBuild(true);
  action->CheckRun();
  EXPECT_EQ(action->GetAssemblyVersion(), "2|0|0|0");
  EXPECT_EQ(action->GetBuildVer(), 0);
  EXPECT_EQ(Read("src/Lib/AssemblyInfo.cs"), kInfo);
  EXPECT_EQ(Read("src/Tool/Tool.rc"), kScript);
  EXPECT_FALSE(Exists("src/Lib/AssemblyInfo.cs.bak") || Exists("src/Tool/Tool.rc.orig"));
  EXPECT_FALSE(Exists("vs/record"));
  EXPECT_TRUE(host.Lines().empty());
}

TEST_F(CheckOfAction, EachFaultOfTheSettingsHasItsFinding) {
  const std::string sln = solution();
  struct Row {
    std::function<void()> spoil;
    Lines found;
  };
  VSDotNetSettings& settings = action->Settings();
  const Row rows[] = {
      {[&] { settings.solutionConfiguration = "Debgu|Win32"; },
       {"error SolutionConFiguration: The solution has no configuration \"Debgu|Win32\" (nearest: "
        "Debug|Win32)"}},
      {[&] { settings.solutionConfiguration = "%NO_SUCH%"; },
       {"error SolutionConFiguration: Undefined variable : NO_SUCH"}},
      {[&] { settings.solutionConfiguration = ""; },
       {"warning SolutionConFiguration: None is set: the compiler takes Debug|Win32"}},
      {[&] { Use(TVSDotNetVersion::vs2003); },
       {"warning VStudioVersion: The solution is of format 9.00, which is that of vs2005, but vs2003 is to "
        "build it"}},
      {[&] { settings.updateAttribute = {}; },
       {"warning UpdateAssemblyInfo: No attribute is chosen to be stamped"}},
      {[&] { Select({}); }, {"error SelectedProjects: No project is selected"}},
      {[&] { Select({kGoneId}); },
       {"error SelectedProjects: The project " + std::string(kGoneId) +
        " is no longer in the solution: it and those behind it are not built"}},
      {[&] {
         Select({kLibId, kGoneId});
       },
       {"warning SelectedProjects: The project " + std::string(kGoneId) +
        " is no longer in the solution: it and those behind it are not built"}},
      {[&] { settings.attributeText[0] = "%NO_SUCH%"; },
       {"warning AssemblyTitle: Undefined variable : NO_SUCH"}},
      {[&] {
         settings.attributeText[0] = "%NO_SUCH%";
         Update(AssemblyAttribute::Title);
       },
       {"error AssemblyTitle: Undefined variable : NO_SUCH"}},
      {[&] { action->SetVersionInfoKeys("A=%NO_SUCH%\r\n"); },
       {"error VersionInfoKeys: Undefined variable : NO_SUCH"}},
      {[&] { settings.webDavPasswordEncrypted = "no secret"; }, {"warning WebDAVPassword: "}},
      {[&] { fs::remove(root_ / "vs/devenv.com"); },
       {"error VStudioVersion: The engine is not there: " + devenv()}},
      {[&] { action->SetSolution(Path("src/None.sln")); },
       {"error Solution: There is no such file: " + Path("src/None.sln")}},
      {[&] { Write("src/App.sln", "nonsense\r\n"); },
       {"error Solution: Invalid Solution File Format : nonsense"}},
  };
  const std::string before = Read("src/App.sln");
  Stamp();
  const VSDotNetSettings good = settings;
  for (const Row& row : rows) {
    row.spoil();
    const Lines found = Findings();
    ASSERT_EQ(found.size(), row.found.size()) << row.found[0] << (found.empty() ? "" : "\n" + found.back());
    EXPECT_TRUE(found[0].starts_with(row.found[0])) << found[0] << "\n" << row.found[0];
    settings = good;
    action->SetSolution(sln);
    action->SetVersionInfoKeys("");
    Write("src/App.sln", before);
    fs::copy_file(QX_RECORDER, root_ / "vs/devenv.com", fs::copy_options::overwrite_existing);
  }
}

TEST_F(CheckOfAction, VersionsThatAreNoneAreErrors) {
  Stamp();
  const auto found = [&](const char* version) {
    action->SetAssemblyVersion(version);
    const Lines lines = Findings();
    return lines.empty() ? "" : lines[0];
  };
  for (const char* good : {"1|2|3|4", "1|2", "1|0|*", "65534|65534|65534|65534", "%V%"}) {
    host.variables.SetOverride("V", "1.2.3.4");
    EXPECT_EQ(found(good), "") << good;
  }
  EXPECT_EQ(found("1.2.3.4"), "error AssemblyVersion: The major part \"1.2.3.4\" is no number");
  EXPECT_EQ(found("v1|beta|x|y"),
            "error AssemblyVersion: \"v1.beta.x.y\" would be stamped: the major part \"v1\" is no number "
            "from 0 to 65534");
  EXPECT_EQ(found("1|70000|0|0"),
            "error AssemblyVersion: \"1.70000.0.0\" would be stamped: the minor part \"70000\" is no number "
            "from 0 to "
            "65534");
  EXPECT_EQ(found("1|0|*|"),
            "error AssemblyVersion: \"1.0.*.\" would be stamped: the build part \"*\" is no number "
            "from 0 to 65534");
  EXPECT_EQ(found("|||"), "error AssemblyVersion: \"...\" would be stamped: no part of it is set");
  EXPECT_EQ(found("1|2|3|4|5"),
            "error AssemblyVersion: \"1.2.3.4.5\" would be stamped: it has more than four parts");
  action->Settings().updateAssemblyInfo = false;
  EXPECT_EQ(found("v1|beta|x|y"), "");
}

TEST_F(CheckOfAction, VersionsAreThoseThatTheRunWillHaveRaised) {
  Stamp();
  action->SetAssemblyVersion("1|0|65534|0");
  EXPECT_EQ(Findings(), Lines{});
  action->SetAutoIncAssemblyBuildNo(true);
  EXPECT_EQ(Findings(),
            (Lines{"error AssemblyVersion: \"1.0.65535.0\" would be stamped: the build part \"65535\" is no "
                   "number from 0 to 65534"}));
  action->SetAssemblyVersion("1|0|*|0");
  EXPECT_EQ(Findings(),
            (Lines{"warning AutoIncAssemblyBuildNumber: The part \"*\" is no number: raising makes 1 of "
                   "it"}));
}

TEST_F(CheckOfAction, ABuildVersionAtItsLimitIsAnError) {
  Stamp();
  action->SetBuildVer(65535);
  EXPECT_EQ(Findings(), Lines{});
  action->SetAutoIncBuild(true);
  EXPECT_EQ(Findings(),
            (Lines{"error BuildVersion: 65536 would be stamped, which is no number from 0 to 65535"}));
  action->SetBuildVer(2147483647);
  EXPECT_EQ(Findings(),
            (Lines{"error BuildVersion: 2147483648 would be stamped, which is no number from 0 to 65535"}));
  action->SetBuildVer(-1);
  action->SetMajorVer(-1);
  EXPECT_EQ(Findings(),
            (Lines{"error MajorVersion: -1 would be stamped, which is no number from 0 to 65535"}));
}

TEST_F(CheckOfAction, FilesThatCannotBeStampedAreErrors) {
  Stamp();
  const fs::path info = root_ / "src/Lib/AssemblyInfo.cs", script = root_ / "src/Tool/Tool.rc";
  for (const fs::path& file : {info, script}) {
    fs::permissions(file, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    EXPECT_EQ(Findings(), (Lines{"error " + file.filename().string() + ": Cannot write " +
                                 fs::path(file).make_preferred().string() + ": the file is read-only"}));
    fs::permissions(file, fs::perms::owner_write, fs::perm_options::add);
  }
  action->SetVersionInfoKeys("CompanyName=\xD0\x96\r\n");
  Write("src/Tool/Tool.rc", "#pragma code_page(1252)\r\n" + std::string(kScript));
  ASSERT_EQ(Findings().size(), 1u);
  EXPECT_TRUE(Findings()[0].starts_with("error Tool.rc: ")) << Findings()[0];
  Write("src/Tool/Tool.rc", "1 VERSIONINFO\r\n BEGIN\r\n BEGIN\r\n");
  ASSERT_EQ(Findings().size(), 1u);
  EXPECT_TRUE(Findings()[0].starts_with("error Tool.rc: ")) << Findings()[0];
  Write("src/Tool/Tool.rc", kScript);
  action->SetVersionInfoKeys("");
  fs::remove(info);
  ASSERT_EQ(Findings().size(), 1u);
  EXPECT_TRUE(Findings()[0].starts_with("error AssemblyInfo.cs: Cannot read ")) << Findings()[0];
}

TEST_F(CheckOfAction, AttributesThatAFileLacksAreWarnings) {
  Stamp();
  for (const auto attribute : {AssemblyAttribute::Company, AssemblyAttribute::Copyright}) Update(attribute);
  EXPECT_EQ(
      Findings(),
      (Lines{"warning AssemblyInfo.cs: It has no line for AssemblyCopyright, and none is ever appended"}));
  Write("src/Lib/AssemblyInfo.cs", "[assembly: AssemblyVersion(\"1.0.0.0\")]\r\n");
  EXPECT_EQ(Findings()[0],
            "warning AssemblyInfo.cs: AssemblyCompany, AssemblyFileVersion would be appended, but the "
            "file does not name System.Reflection");
  Write("src/Lib/AssemblyInfo.cs", "// nothing\r\n");
  EXPECT_EQ(Findings(),
            (Lines{"warning AssemblyInfo.cs: The file has no line with an assembly attribute: what is "
                   "appended, no compiler takes"}));
}

TEST_F(CheckOfAction, ProjectsThatAreNoLongerThereToBeStampedAreWarnings) {
  Stamp();
  VSDotNetSettings& settings = action->Settings();
  settings.applyAssemblyInfoTo = settings.applyResourceInfoTo = TVSDotNetBuildType::btSelectedProjects;
  settings.assemblySelectedProjects = settings.resourceSelectedProjects = TStringList(Lines{kGoneId});
  const std::string gone = "The project " + std::string(kGoneId) + " is no longer in the solution";
  EXPECT_EQ(Findings(), (Lines{"warning AssemblySelectedProjects: " + gone,
                               "warning ResourceSelectedProjects: " + gone}));
}

// What leaves the solution's tree is stamped by its own name alone, and told of either way.
TEST_F(CheckOfAction, ReferencesThatLeaveTheTreeAreNamed) {
  Stamp();
  action->Settings().updateWin32Resource = false;
  Write("other/victim.txt", kInfo);
  Write("other/AssemblyInfo.cs", kInfo);
  Write("src/Lib/Lib.csproj",
        "<Project><Compile Include=\"AssemblyInfo.\\..\\..\\..\\other\\victim.txt\"/></Project>");
  EXPECT_EQ(Findings(), (Lines{"warning victim.txt: Lib refers to it as its AssemblyInfo file: it is none, "
                               "lies outside the solution's folder, and is not stamped"}));
  EXPECT_TRUE(action->CheckRun().stamps.empty());
  Write("src/Lib/Lib.csproj", "<Project><Compile Include=\"..\\..\\other\\AssemblyInfo.cs\"/></Project>");
  EXPECT_EQ(Findings(), Lines());
  const CheckReport report = action->CheckRun();
  ASSERT_EQ(report.stamps.size(), 1u);
  const auto told = std::find_if(report.findings.begin(), report.findings.end(), [](const CheckFinding& one) {
    return one.message == "Lib refers to it, which lies outside the solution's folder: it is stamped there";
  });
  ASSERT_NE(told, report.findings.end());
  EXPECT_EQ(told->subject, "AssemblyInfo.cs");
  EXPECT_TRUE(told->severity == CheckSeverity::Info);
}

TEST_F(CheckOfAction, ASolutionOfALaterFormatIsAWarning) {
  Write("src/App.sln",
        "Microsoft Visual Studio Solution File, Format Version 10.00\r\nGlobal\r\nEndGlobal\r\n");
  action->Settings().solutionConfiguration = "";
  EXPECT_EQ(
      Findings(),
      (Lines{"warning VStudioVersion: The solution is of format 10.00, which is none of 7.00, 8.00 and 9.00",
             "warning SolutionConFiguration: The solution has no configurations"}));
}

// A folder that was detected once is kept, so programs that moved are looked for where they were.
TEST_F(CheckOfAction, SaysHowAnEngineThatMovedIsFoundAgain) {
  fs::remove(root_ / "vs/devenv.com");
  const std::vector<CheckFinding> findings = action->CheckRun().findings;
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings.front().hint, "name its folder in the options, or empty it there to have it looked for");
}

TEST_F(CheckOfAction, UnderMSBuildLooksForThatEngine) {
  UseMSBuild();
  EXPECT_EQ(Findings(), Lines{});
  fs::remove(root_ / "vs/MSBuild.exe");
  EXPECT_EQ(Findings(), (Lines{"error UseMSBuild: The engine is not there: " + msbuild()}));
}

}  // namespace
}  // namespace qx
