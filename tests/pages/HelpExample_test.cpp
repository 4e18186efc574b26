// The example of the help page, "Build some projects and stamp a version that counts up", followed to the
// letter by somebody who knows nothing else: through the pages, then two runs, with a stand-in for devenv.com.
#include <filesystem>

#include "tests/pages/PagesOnDisk.h"

namespace qx {
namespace {

// Three projects, each with its attributes, and their solution.
void WriteSolution(const PagesOnDisk& disk) {
  const std::string csproj = "<Project><Compile Include=\"AssemblyInfo.cs\"/></Project>";
  const std::string attributes =
      "using System.Reflection;\r\n"
      "[assembly: AssemblyTitle(\"kept\")]\r\n"
      "[assembly: AssemblyVersion(\"1.0.*\")]\r\n";
  for (const char* name : {"Any", "One", "Two"}) {
    disk.folder.Write(std::string(name) + "/" + name + ".csproj", csproj);
    disk.folder.Write(std::string(name) + "/AssemblyInfo.cs", attributes);
  }
  std::string solution = "Microsoft Visual Studio Solution File, Format Version 9.00\r\n";
  for (const char* name : {"Any", "One", "Two"})
    solution += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"" + std::string(name) + "\", \"" +
                name + "\\" + name + ".csproj\", \"{00000000-0000-0000-0000-000000000" + name +
                "}\"\r\nEndProject\r\n";
  disk.folder.Write("Example.sln",
                    solution +
                        "Global\r\nGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n"
                        "Release|Any CPU = Release|Any CPU\r\nEndGlobalSection\r\nEndGlobal\r\n");
}

TEST(HelpExample, BuildsSelectedProjectsAndCountsTheirVersionUp) {
  PagesOnDisk disk;
  WriteSolution(disk);
  std::filesystem::create_directories(disk.folder / "vs");
  std::filesystem::copy_file(QX_RECORDER, disk.folder / "vs/devenv.com");
  ASSERT_EQ(disk.Host({"options", "DevEnv2005Location=" + (disk.folder / "vs")}).code, 0);
  disk.Add(kBuild, {});

  // clang-format off
  const Words commands{
      "answer file Example.sln", "button Solution.txtSolution 1",  // 1
      "select Solution.cboConfigs 0", "select Solution.cboVSVersion 2", "click Solution.chkUseMSBuild",
      "click Solution.optBuildSelectedProjects",  // 2
      "click Solution.btnUncheckAll", "tick Solution.lstProjects 1 on", "tick Solution.lstProjects 2 on",
      "click Assembly Info.chkUpdateAssemblyInfo",  // 3
      "click Assembly Info.chkUpdateAssemblyVersion",  // 4
      "text Assembly Info.txtAssemblyMajor 2", "text Assembly Info.txtAssemblyMinor 1",
      "text Assembly Info.txtAssemblyBuild 0", "text Assembly Info.txtAssemblyRevision 0",
      "click Assembly Info.chkAutoIncAssemblyVersion",
      "click Assembly Info.chkUpdateFileVersion", "click Assembly Info.chkLinkVersions",  // 5
      "write"};  // 7
  // clang-format on
  for (const Json& answer : disk.Drive(kBuild, commands)) EXPECT_EQ(answer, Json({{"ok", true}}));

  for (const char* version : {"2.1.0.1", "2.1.0.2"}) {
    const test::ProgramResult run = disk.Host({"run", "p.xml"});
    EXPECT_EQ(run.code, 0) << run.out << run.err;
    EXPECT_NE(run.out.find("Processing Project : One"), std::string::npos);
    EXPECT_NE(run.out.find("Processing Project : Two"), std::string::npos);
    EXPECT_EQ(run.out.find("Processing Project : Any"), std::string::npos);
    for (const char* name : {"Any", "One", "Two"}) {
      const std::string stamped = disk.folder.Read(std::string(name) + "/AssemblyInfo.cs");
      EXPECT_NE(stamped.find("[assembly: AssemblyVersion(\"" + std::string(version) + "\")]\r\n"),
                std::string::npos)
          << stamped;
      EXPECT_NE(stamped.find("[assembly: AssemblyFileVersion(\"" + std::string(version) + "\")]\r\n"),
                std::string::npos)
          << stamped;
      EXPECT_NE(stamped.find("AssemblyTitle(\"kept\")"), std::string::npos) << stamped;
    }
  }
  const std::string record = disk.folder.Read("vs/record");
  EXPECT_NE(record.find("Release|Any CPU"), std::string::npos) << record;
  EXPECT_NE(record.find("One\\One.csproj"), std::string::npos) << record;
}

}  // namespace
}  // namespace qx
