#include "built/BuiltPrograms.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"
#include "programs/ProgramFixture.h"

namespace qx {
namespace {

constexpr const char* kApp = "{AAAAAAAA-0000-0000-0000-000000000001}";
constexpr const char* kTool = "{BBBBBBBB-0000-0000-0000-000000000002}";
constexpr const char* kStatic = "{CCCCCCCC-0000-0000-0000-000000000003}";

std::string VcText(const std::string& type) {
  return "<VisualStudioProject ProjectType='Visual C++' Version='8.00' Name='Tool'>"
         "<Platforms><Platform Name='Win32'/></Platforms>"
         "<Configurations><Configuration Name='Release|Win32' OutputDirectory='out' ConfigurationType='" +
         type +
         "'></Configuration></Configurations><Files><Filter Name='r'><File RelativePath='Tool.rc'/></Filter>"
         "<File RelativePath=\"AssemblyInfo.cpp\"/></Files></VisualStudioProject>";
}

std::string Managed(const Numbers& assembly, const Numbers& file) {
  return MakeProgram({0x14C, false, MetadataOf("App", assembly, ""), VersionBlock(file, file)});
}
std::string Native(const Numbers& file) { return MakeProgram({0x14C, false, {}, VersionBlock(file, file)}); }

// A solution of a C# program, a C++ program with a version resource, and a static library; all built as they
// should be.
class BuiltPrograms : public testing::Test {
 protected:
  BuiltPrograms() {
    folder.Write(
        "App/App.csproj",
        "<Project "
        "xmlns=\"http://schemas.microsoft.com/developer/msbuild/2003\"><PropertyGroup><AssemblyName>App"
        "</AssemblyName><OutputType>Exe</OutputType><OutputPath>bin\\</OutputPath></PropertyGroup><ItemGroup>"
        "<Compile Include=\"AssemblyInfo.cs\"/></ItemGroup><Import "
        "Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>");
    SetVersions("1.2.1.0", "1.2.1.5");
    folder.Write("Tool/Tool.vcproj", VcText("1"));
    folder.Write("Tool/Tool.rc", "1 VERSIONINFO\r\n FILEVERSION 1,2,0,7\r\nBEGIN\r\nEND\r\n");
    // A C++ program that is not managed has no use for it.
    folder.Write("Tool/AssemblyInfo.cpp", "[assembly:AssemblyVersionAttribute(\"9.9.9.9\")];");
    folder.Write("Static/Static.vcproj", VcText("4"));
    folder.Write("App/bin/App.exe", Managed({1, 2, 1, 0}, {1, 2, 1, 5}));
    folder.Write("Tool/out/Tool.exe", Native({1, 2, 0, 7}));
    folder.Write("Static/out/Tool.lib", "!<arch>\n");
    WriteSolution("");
  }

  void SetVersions(const std::string& assembly, const std::string& file) {
    folder.Write("App/AssemblyInfo.cs", "[assembly: AssemblyVersion(\"" + assembly +
                                            "\")]\r\n[assembly: AssemblyFileVersion(\"" + file + "\")]\r\n");
    MakeNewer("App/bin/App.exe", 10);
  }
  // The file gets a time so many seconds from now.
  void MakeNewer(const std::string& name, int seconds) {
    const std::string path = folder / name;
    if (!folder.Has(name)) return;
    std::filesystem::last_write_time(
        std::u8string(path.begin(), path.end()),
        std::filesystem::file_time_type::clock::now() + std::chrono::seconds(seconds));
  }
  // `without`: a project that is not built.
  void WriteSolution(const std::string& without) {
    const auto line = [](const std::string& name, const std::string& file, const std::string& guid) {
      return "Project(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = \"" + name + "\", \"" + file + "\", \"" +
             guid + "\"\r\nEndProject\r\n";
    };
    const auto row = [&](const std::string& guid, const std::string& own) {
      const std::string start = "\t\t" + guid + ".Release|Mixed Platforms";
      return start + ".ActiveCfg = " + own + "\r\n" +
             (guid == without ? "" : start + ".Build.0 = " + own + "\r\n");
    };
    solution = folder.Write(
        "App.sln",
        "Microsoft Visual Studio Solution File, Format Version 9.00\r\n" +
            line("App", "App\\App.csproj", kApp) + line("Tool", "Tool\\Tool.vcproj", kTool) +
            line("Static", "Static\\Static.vcproj", kStatic) +
            "Global\r\n\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n\t\tRelease|Mixed "
            "Platforms = Release|Mixed Platforms\r\n\tEndGlobalSection\r\n\tGlobalSection("
            "ProjectConfigurationPlatforms) = postSolution\r\n" +
            row(kApp, "Release|Any CPU") + row(kTool, "Release|Win32") + row(kStatic, "Release|Win32") +
            "\tEndGlobalSection\r\nEndGlobal\r\n");
  }
  std::vector<BuiltProgram> Look() const { return LookAtBuiltPrograms(solution, "Release|Mixed Platforms"); }
  // The first or second project's state and reason.
  std::string App() const { return Told(Look()[0]); }
  std::string Tool() const { return Told(Look()[1]); }
  static std::string Told(const BuiltProgram& program) {
    return std::string(NameOfState(program.state)) + ": " + program.reason;
  }
  std::string Full(const std::string& name) const { return ExpandPath(folder.Path(), name); }
  TestFolder folder;
  std::string solution;
};

TEST_F(BuiltPrograms, AreOkWhenTheyBearWhatTheSourcesSay) {
  const auto programs = Look();
  ASSERT_EQ(programs.size(), 3u);
  for (const BuiltProgram& program : programs) EXPECT_EQ(Told(program), "ok: ") << program.name;
  EXPECT_EQ(programs[0].name + " " + programs[0].path + " " + programs[0].guid,
            std::string("App App\\App.csproj ") + kApp);
  EXPECT_EQ(programs[0].output, Full("App/bin/App.exe"));
  EXPECT_EQ(programs[0].expected.assembly + " " + programs[0].expected.file, "1.2.1.0 1.2.1.5");
  EXPECT_EQ(programs[0].found.assembly + " " + programs[0].found.file, "1.2.1.0 1.2.1.5");
  EXPECT_EQ(programs[1].expected.assembly + " " + programs[1].expected.file, " 1.2.0.7");
  EXPECT_EQ(programs[1].found.assembly + " " + programs[1].found.file, " 1.2.0.7");
  EXPECT_EQ(programs[2].output, Full("Static/out/Tool.lib"));
}

TEST_F(BuiltPrograms, AreMissingWhenTheirFileIs) {
  for (const char* name : {"App/bin/App.exe", "Tool/out/Tool.exe", "Static/out/Tool.lib"}) {
    std::filesystem::remove(folder / name);
  }
  for (const BuiltProgram& program : Look()) {
    EXPECT_EQ(Told(program), "missing: it is not there: the build did not make it, build the project");
    EXPECT_NE(program.output, "");
    EXPECT_TRUE(IsFault(program.state));
  }
  EXPECT_EQ(Look()[0].expected.assembly, "1.2.1.0");
}

TEST_F(BuiltPrograms, AreStaleWhenOlderThanTheFileOfTheirVersion) {
  MakeNewer("App/AssemblyInfo.cs", 100);
  MakeNewer("Tool/Tool.rc", 100);
  const std::string advice = ": it was not built anew, build the project again";
  EXPECT_EQ(App(), "stale: it is older than " + Full("App/AssemblyInfo.cs") + advice);
  EXPECT_EQ(Tool(), "stale: it is older than " + Full("Tool/Tool.rc") + advice);
}

TEST_F(BuiltPrograms, AreNotStaleForAFileThatGivesThemNoVersion) {
  MakeNewer("Tool/AssemblyInfo.cpp", 100);
  MakeNewer("App/App.csproj", 100);
  EXPECT_EQ(App() + " " + Tool(), "ok:  ok: ");
}

TEST_F(BuiltPrograms, DifferWhenTheyBearOtherVersions) {
  SetVersions("1.2.2.0", "1.2.1.5");
  const std::string info = Full("App/AssemblyInfo.cs"), advice = ": build the project again";
  EXPECT_EQ(App(), "differs: its assembly version is 1.2.1.0, but " + info + " says 1.2.2.0" + advice);
  SetVersions("1.2.1.0", "1.2.1.6");
  EXPECT_EQ(App(), "differs: its file version is 1.2.1.5, but " + info + " says 1.2.1.6" + advice);
  folder.Write("App/bin/App.exe", MakeProgram({}));
  MakeNewer("App/bin/App.exe", 20);
  EXPECT_EQ(App(), "differs: its assembly version is none, but " + info +
                       " says 1.2.1.0, its file version is none, but " + info + " says 1.2.1.6" + advice);
  folder.Write("Tool/out/Tool.exe", Native({1, 2, 0, 8}));
  EXPECT_EQ(Tool(),
            "differs: its file version is 1.2.0.8, but " + Full("Tool/Tool.rc") + " says 1.2.0.7" + advice);
}

// A part above 65535 has no place in a program: 70000 is 4464 there.
TEST_F(BuiltPrograms, DifferWhenAPartIsTooLarge) {
  SetVersions("1.2.1.0", "1.2.1.70000");
  folder.Write("App/bin/App.exe", Managed({1, 2, 1, 0}, {1, 2, 1, 4464}));
  MakeNewer("App/bin/App.exe", 20);
  EXPECT_TRUE(App().starts_with("differs: its file version is 1.2.1.4464, but ")) << App();
}

TEST_F(BuiltPrograms, DifferWhenTheyAreNoProgramsAnyMore) {
  folder.Write("App/bin/App.exe", Managed({1, 2, 1, 0}, {1, 2, 1, 5}).substr(0, 600));
  EXPECT_EQ(App(), "differs: Cannot read " + Full("App/bin/App.exe") +
                       ": it is cut off: its CLI metadata lies behind its end: build the project again");
}

TEST_F(BuiltPrograms, AreNotComparedWithWhatTheSourcesDoNotSay) {
  folder.Write("App/AssemblyInfo.cs", "[assembly: AssemblyVersion(\"1.*\")]\r\n");
  folder.Write("Tool/Tool.rc", "1 VERSIONINFO\r\n FILEVERSION VERSION_NUMBERS\r\nBEGIN\r\nEND\r\n");
  MakeNewer("App/bin/App.exe", 10);
  MakeNewer("Tool/out/Tool.exe", 10);
  EXPECT_EQ(App() + " " + Tool(), "ok:  ok: ");
  EXPECT_EQ(Look()[0].expected.assembly, "1.*");
  EXPECT_EQ(Look()[0].expected.file, "");
  EXPECT_EQ(Look()[0].found.file, "1.2.1.5");
}

TEST_F(BuiltPrograms, OfManagedCppAreComparedWithTheirAttributes) {
  folder.Write("Tool/out/Tool.exe", Managed({9, 9, 9, 9}, {1, 2, 0, 7}));
  EXPECT_EQ(Tool(), "ok: ");
  folder.Write("Tool/out/Tool.exe", Managed({9, 9, 9, 8}, {1, 2, 0, 7}));
  EXPECT_TRUE(Tool().starts_with("differs: its assembly version is 9.9.9.8, but ")) << Tool();
}

TEST_F(BuiltPrograms, AreSkippedWhenTheSolutionOrTheBuildLeavesThemOut) {
  WriteSolution(kTool);
  std::filesystem::remove(folder / "Tool/out/Tool.exe");
  EXPECT_EQ(Tool(), "skipped: the solution does not build it in the configuration Release|Mixed Platforms");
  EXPECT_FALSE(IsFault(Look()[1].state));
  const auto programs = LookAtBuiltPrograms(solution, "Release|Mixed Platforms", {},
                                            [](const std::string& guid) { return guid == kStatic; });
  EXPECT_EQ(Told(programs[0]), "skipped: it is not among the projects that are built");
  EXPECT_EQ(Told(programs[2]), "ok: ");
}

TEST_F(BuiltPrograms, AreLookedForWhereTheEngineWasTold) {
  const auto programs = LookAtBuiltPrograms(solution, "Release|Mixed Platforms", {{"OutputPath", "drop\\"}});
  EXPECT_EQ(programs[0].state, BuiltState::Missing);
  EXPECT_EQ(programs[0].output, Full("App/drop/App.exe"));
  EXPECT_EQ(programs[1].state, BuiltState::Ok);
}

TEST_F(BuiltPrograms, OfAnUnknownConfigurationAreRefused) {
  EXPECT_EQ(MessageOf([&] { LookAtBuiltPrograms(solution, "Nightly"); }),
            solution + " has no configuration \"Nightly\": it has Release|Mixed Platforms");
  EXPECT_EQ(MessageOf([&] { LookAtBuiltPrograms(solution, "Relase|Mixed Platforms"); }),
            solution +
                " has no configuration \"Relase|Mixed Platforms\": it has Release|Mixed Platforms "
                "(nearest: Release|Mixed Platforms)");
  EXPECT_EQ(LookAtBuiltPrograms(solution, "release").size(), 3u);
}

TEST(VersionAgrees, TakesStarsForAnyNumberAndMissingPartsForZero) {
  const BinaryVersion numbers = {1, 2, 3, 4};
  for (const char* written : {"1.2.3.4", "1.2.3.*", "1.2.*", "1.*", "*", "1.2.*.", " 1. 2.3.4 "}) {
    EXPECT_TRUE(VersionAgrees(written, numbers)) << written;
  }
  for (const char* written :
       {"1.2.3.5", "1.2.3", "1.3.*", "1.2.3.4.0", "", "1.2.x.4", "1.2.65539.4", "1.2.3."}) {
    EXPECT_FALSE(VersionAgrees(written, numbers)) << written;
  }
  EXPECT_TRUE(VersionAgrees("1.2", {1, 2, 0, 0}));
  EXPECT_FALSE(VersionAgrees("1.2", {1, 2, 0, 1}));
}

}  // namespace
}  // namespace qx
