// Builds small projects with the real compilers and looks at what comes out.
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <regex>
#include <thread>

#include "engine/ChildCommand.h"
#include "engine/CommandSteps.h"
#include "engine/Project.h"
#include "engine/vc/Toolchain.h"
#include "host/testing/TestFolder.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Status = BuiltProject::Status;

// Text of a project of one configuration.
struct ProjectText {
  std::string name = "App";
  std::string type = "1";
  std::string platform = "x64";
  std::string attributes;  // more of the configuration
  std::string tools;
  std::string files;
  std::string intermediate = "$(ConfigurationName)";

  std::string Text() const {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VisualStudioProject ProjectType=\"Visual C++\" "
           "Version=\"8,00\" Name=\"" +
           std::regex_replace(name, std::regex("&"), "&amp;") +
           "\"><Configurations><Configuration Name=\"Release|" + platform +
           "\" OutputDirectory=\"$(ConfigurationName)\" IntermediateDirectory=\"" + intermediate +
           "\" ConfigurationType=\"" + type + "\" " + attributes + ">" + tools +
           "</Configuration></Configurations><Files>" + files + "</Files></VisualStudioProject>";
  }
};

std::string Tool(const std::string& name, const std::string& attributes) {
  return "<Tool Name=\"" + name + "\" " + attributes + "/>";
}
std::string File(const std::string& path) { return "<File RelativePath=\"" + path + "\"/>"; }

// What cannot be found that a build for the platform needs; empty: nothing.
std::string MissingFor(const std::string& platform) {
  try {
    ToolchainFor(platform);
    NinjaProgram();
  } catch (const Exception& missing) {
    return missing.Message();
  }
  return "";
}

class VcBuild : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string missing = MissingFor("x64"); !missing.empty()) GTEST_SKIP() << missing;
  }

  // The project's file is NAME.vcproj in `place`, a folder below the test's with its delimiter.
  BuiltProject Build(const ProjectText& project, const std::string& place = "",
                     std::vector<const BuiltProject*> needs = {}, Goal goal = Goal::Build) {
    ProjectTask task;
    task.name = project.name;
    task.file = folder_ / (place + project.name + ".vcproj");
    if (!folder_.Has(place + project.name + ".vcproj") ||
        folder_.Read(place + project.name + ".vcproj") != project.Text()) {
      folder_.Write(place + project.name + ".vcproj", project.Text());
    }
    task.configuration = "Release";
    task.platform = project.platform;
    task.solutionFile = folder_ / "All.sln";
    task.needs = std::move(needs);
    task.goal = goal;
    task.launcher = launcher_;
    ConsoleText console;
    BuiltProject built = BuildVisualCpp(task, console);
    printed_ = console.Text();
    return built;
  }

  // What a program prints, without line ends; empty without Wine. What Wine itself tells, such as that it makes
  // its first folder, goes to the other stream.
  static std::string Run(const std::string& program) {
    std::string out;
    RunChild(
        {{"sh", "-c", "exec \"$@\" 2>/dev/null", "sh", WineProgram(), program}, "", {{"WINEDEBUG", "-all"}}},
        [&](std::string_view line) { out += line; });
    return out;
  }
  static bool CanRun() { return !WineProgram().empty(); }
  // Where there is a Wine to start it with; else it says that there is none.
  static void ExpectPrints(const std::string& program, const std::string& text) {
    if (!CanRun()) std::printf("wine is not installed: %s was built and not started\n", program.c_str());
    EXPECT_EQ(CanRun() ? Run(program) : text, text);
  }

  bool Printed(const std::string& text) const { return printed_.find(text) != std::string::npos; }
  int PrintedLines(const std::string& line) const {
    int count = 0;
    for (std::size_t at = 0; (at = ("\n" + printed_).find("\n" + line + "\n", at)) != std::string::npos; ++at)
      ++count;
    return count;
  }

  TestFolder folder_;
  std::string printed_, launcher_;
};

TEST_F(VcBuild, ProgramIsBuiltOnceAndThenUpToDate) {
  folder_.Write("a.c", "#include \"A.h\"\n#include <stdio.h>\nint main(void) { puts(TEXT); return 0; }\n");
  folder_.Write("b.cpp", "int other() { return 1; }\n");
  folder_.Write("a.h", "#define TEXT \"first\"\n");
  ProjectText project;
  project.files = File("a.c") + File("B.CPP");
  BuiltProject built = Build(project);
  ASSERT_EQ(built.status, Status::Succeeded) << printed_;
  EXPECT_EQ(built.output, folder_ / "Release/App.exe");
  EXPECT_EQ(PrintedLines("a.c") + PrintedLines("b.cpp") + PrintedLines("Linking..."), 3) << printed_;
  EXPECT_EQ(Build(project).status, Status::UpToDate);
  EXPECT_EQ(printed_, "");
  ExpectPrints(built.output, "first");

  folder_.Write("a.h", "#define TEXT \"second one\"\n");
  EXPECT_EQ(Build(project).status, Status::Succeeded);
  EXPECT_EQ(printed_, "a.c\nLinking...\n");
  ExpectPrints(built.output, "second one");
  EXPECT_EQ(folder_.Read("a.h"), "#define TEXT \"second one\"\n");
}

TEST_F(VcBuild, CleanRemovesWhatWasMadeAndRebuildMakesItAnew) {
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.files = File("a.c");
  ASSERT_EQ(Build(project).status, Status::Succeeded) << printed_;
  folder_.Write("Release/mine.txt", "");
  EXPECT_EQ(Build(project, "", {}, Goal::Rebuild).status, Status::Succeeded);
  EXPECT_EQ(printed_, "a.c\nLinking...\n");
  EXPECT_EQ(Build(project, "", {}, Goal::Clean).status, Status::Succeeded);
  EXPECT_FALSE(folder_.Has("Release/App.exe"));
  EXPECT_FALSE(folder_.Has("Release/App.objects"));
  EXPECT_TRUE(folder_.Has("Release/mine.txt"));
}

TEST_F(VcBuild, LibrariesReachThoseThatNeedThem) {
  folder_.Write("lib/low.c", "int low(void) { return 40; }\n");
  folder_.Write("lib/high.cpp",
                "extern \"C\" int low(void);\nextern \"C\" int high() { return low() + 1; }\n");
  folder_.Write("dll/dll.c", "int high(void);\nint __stdcall exported(void) { return high() + 1; }\n");
  folder_.Write("dll/Dll.def", "LIBRARY\r\nVERSION 1.0\r\nEXPORTS\r\n  exported @1 PRIVATE\r\n");
  folder_.Write("app/main.cpp",
                "#include <cstdio>\nextern \"C\" int __stdcall exported(void);\n"
                "int main() { std::printf(\"%d\", exported()); }\n");
  ProjectText low{"low", "4", "x64", "", "", File("low.c")};
  ProjectText high{
      "high",          "4", "x64", "", Tool("VCLibrarianTool", "AdditionalDependencies=\"LOW.lib\""),
      File("high.cpp")};
  ProjectText dll{
      "dll",
      "2",
      "x64",
      "",
      Tool("VCLinkerTool", "ModuleDefinitionFile=\".\\dll.DEF\" ImportLibrary=\"..\\imp\\Dll.lib\""),
      File("dll.c")};
  ProjectText app{
      "app",           "1", "x64", "", Tool("VCLinkerTool", "OutputFile=\"..\\dll\\Release\\app.exe\""),
      File("main.cpp")};
  const BuiltProject builtLow = Build(low, "lib/");
  ASSERT_EQ(builtLow.status, Status::Succeeded) << printed_;
  const BuiltProject builtHigh = Build(high, "lib/", {&builtLow});
  ASSERT_EQ(builtHigh.status, Status::Succeeded) << printed_;
  EXPECT_EQ(builtHigh.libraries, std::vector<std::string>{builtLow.output});
  const BuiltProject builtDll = Build(dll, "dll/", {&builtHigh});
  ASSERT_EQ(builtDll.status, Status::Succeeded) << printed_;
  EXPECT_EQ(builtDll.importLibrary, folder_ / "imp/Dll.lib");
  const BuiltProject builtApp = Build(app, "app/", {&builtDll});
  ASSERT_EQ(builtApp.status, Status::Succeeded) << printed_;
  ExpectPrints(builtApp.output, "42");
  const BuiltProject again = Build(high, "lib/", {&builtLow});
  EXPECT_EQ(again.status, Status::UpToDate);
  EXPECT_EQ(again.libraries, builtHigh.libraries);
}

TEST_F(VcBuild, StdcallExportsOfWin32KeepTheirPlainName) {
  if (const std::string missing = MissingFor("Win32"); !missing.empty()) GTEST_SKIP() << missing;
  folder_.Write("d.c", "int __stdcall plain(int a) { return a; }\n");
  folder_.Write("d.def", "EXPORTS plain\n");
  folder_.Write("m.c", "int __stdcall plain(int a);\nint main(void) { return plain(0); }\n");
  ProjectText dll{"d", "2", "Win32", "", Tool("VCLinkerTool", "ModuleDefinitionFile=\"d.def\""), File("d.c")};
  const BuiltProject built = Build(dll);
  ASSERT_EQ(built.status, Status::Succeeded) << printed_;
  ProjectText app{"m", "1", "Win32", "", "", File("m.c")};
  EXPECT_EQ(Build(app, "", {&built}).status, Status::Succeeded) << printed_;
}

// The standard library's own headers do not compile where everything is __stdcall.
TEST_F(VcBuild, StdcallByDefaultIsToldAndLeftOut) {
  if (const std::string missing = MissingFor("Win32"); !missing.empty()) GTEST_SKIP() << missing;
  folder_.Write("a.cpp", "#include <stdio.h>\n#include <string>\nint main() { return std::stoi(\"0\"); }\n");
  ProjectText project;
  project.platform = "Win32";
  project.tools = Tool("VCCLCompilerTool", "CallingConvention=\"2\"");
  project.files = File("a.cpp");
  EXPECT_EQ(Build(project).status, Status::Succeeded) << printed_;
  EXPECT_TRUE(Printed("App : warning PRJ0041: /Gz is left out: ")) << printed_;
  EXPECT_FALSE(Printed("warning C")) << printed_;
}

TEST_F(VcBuild, OddNamesDoNoHarm) {
  const std::string place = "größe [1] & 'so' $x/";
  folder_.Write(place + "src/a b.cpp", "#include <cstdio>\nint main() { std::puts(TEXT SIGN); }\n");
  folder_.Write(place + "src/it's.c", "int one;\n");
  folder_.Write(place + "lib/it's.c", "int two;\n");
  ProjectText project;
  project.name = "App & 'Co' $(x)";
  project.tools = Tool("VCCLCompilerTool",
                       "PreprocessorDefinitions=\"&quot;TEXT=\\&quot;a;b $HOME "
                       "`x`\\&quot;&quot;;SIGN=\\&quot;x&amp;y\\&quot;\"");
  project.tools += Tool("VCLinkerTool", "OutputFile=\"$(OutDir)\\out [&amp;] 1,2.exe\"");
  project.files = File("src\\a b.cpp") + File("src\\it's.c") + File("lib\\it's.c");
  const BuiltProject built = Build(project, place);
  ASSERT_EQ(built.status, Status::Succeeded) << built.reason << printed_;
  EXPECT_EQ(built.output, folder_ / (place + "Release/out [&] 1,2.exe"));
  ExpectPrints(built.output, "a;b $HOME `x`x&y");
  EXPECT_EQ(Build(project, place).status, Status::UpToDate);
}

TEST_F(VcBuild, ResourcesAreTranslatedAndTheScriptIsNot) {
  const std::string script =
      "#include \"AFXRES.H\"\r\n#include \"Resource.h\"\r\n#pragma code_page(1252)\r\n"
      "IDI_MAIN ICON DISCARDABLE \"res\\\\App.ICO\"\r\n"
      "VS_VERSION_INFO VERSIONINFO MOVEABLE\r\n FILEVERSION 1,2,3,4\r\nBEGIN\r\n BLOCK "
      "\"StringFileInfo\"\r\n BEGIN\r\n"
      "  BLOCK \"040904e4\"\r\n  BEGIN\r\n   VALUE \"FileDescription\", \"Gr\xF6\xDF"
      "e\\0\"\r\n  END\r\n END\r\nEND\r\n"
      "IDD_A DLGINIT\r\nBEGIN\r\n    IDC_B, 0x403, 2, 0\r\n0x0041\r\n    0\r\nEND\r\n"
      "#include \"res\\\\more.rc2\"\r\n";
  folder_.Write("App.rc", script);
  folder_.Write("resource.h", "#define IDI_MAIN 1\n#define IDD_A 2\n#define IDC_B 3\n");
  folder_.Write("res/more.rc2", "STRINGTABLE BEGIN 7 \"seven\" END\n");
  folder_.Write("res/app.ico", std::string("\0\0\1\0\1\0\1\1\2\0\1\0\1\0\x30\0\0\0\x16\0\0\0", 22) +
                                   std::string("\x28\0\0\0\1\0\0\0\2\0\0\0\1\0\1\0", 16) +
                                   std::string(32, '\0'));
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.files = File("a.c") + File("app.rc");
  const BuiltProject built = Build(project);
  ASSERT_EQ(built.status, Status::Succeeded) << printed_;
  EXPECT_EQ(folder_.Read("App.rc"), script);
  const std::string program = folder_.Read("Release/App.exe");
  EXPECT_NE(program.find(std::string("G\0r\0\xF6\0\xDF\0e\0", 10)), std::string::npos);
  EXPECT_NE(program.find(std::string("s\0e\0v\0e\0n\0", 10)), std::string::npos);
  EXPECT_TRUE(Printed("VERSIONINFO")) << printed_;
  folder_.Write("res/more.rc2", "STRINGTABLE BEGIN 7 \"eight\" END\n");
  EXPECT_EQ(Build(project).status, Status::Succeeded);
  EXPECT_NE(folder_.Read("Release/App.exe").find(std::string("e\0i\0g\0h\0t\0", 10)), std::string::npos);
}

TEST_F(VcBuild, ErrorsComeInTheOldFormAndTheNextBuildIsRight) {
  folder_.Write("a.c", "int main(void) { return missing; }\n");
  folder_.Write("b.c", "int b;\n");
  ProjectText project;
  project.files = File("a.c") + File("b.c");
  BuiltProject built = Build(project);
  EXPECT_EQ(built.status, Status::Failed);
  EXPECT_TRUE(Printed((folder_ / "a.c") + "(1,25) : error C2065: 'missing' undeclared")) << printed_;
  EXPECT_EQ(PrintedLines("b.c"), 1) << printed_;  // others are compiled all the same
  folder_.Write("a.c", "int f(void);\nint main(void) { return f(); }\n");
  built = Build(project);
  EXPECT_EQ(built.status, Status::Failed);
  EXPECT_TRUE(Printed("a.obj : error LNK2019: unresolved external symbol f\n")) << printed_;
  EXPECT_TRUE(Printed("LINK : fatal error LNK1120: 1 unresolved externals\n")) << printed_;
  folder_.Write("b.c", "int f(void) { return 0; }\n");
  EXPECT_EQ(Build(project).status, Status::Succeeded) << printed_;
}

// An object that was being written when everything was killed is newer than its source.
TEST_F(VcBuild, HalfWrittenObjectIsMadeAnew) {
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.files = File("a.c");
  ASSERT_EQ(Build(project).status, Status::Succeeded) << printed_;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  folder_.Write("a.c", "int main(void) { return 1; }\n");
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  folder_.Write("Release/App.objects/a.obj", "half");
  EXPECT_EQ(Build(project).status, Status::Succeeded) << printed_;
  EXPECT_EQ(printed_, "a.c\nLinking...\n");
}

TEST_F(VcBuild, MissingThingsAreNamedOnce) {
  ProjectText project;
  project.files = File("gone.c") + File("src\\gone too.cpp") + File("gone.h");
  BuiltProject built = Build(project);
  EXPECT_EQ(built.status, Status::Failed);
  EXPECT_EQ(printed_, "App : error PRJ0002: no such source: gone.c, src\\gone too.cpp\n");

  folder_.Write("a.c", "int main(void) { return 0; }\n");
  project.files = File("a.c");
  project.tools = Tool("VCLinkerTool", "AdditionalDependencies=\"WS2_32.LIB libcmt.lib nowhere.lib\"");
  built = Build(project);
  EXPECT_EQ(built.status, Status::Failed);
  EXPECT_EQ(printed_, "a.c\nLINK : fatal error LNK1104: cannot open file 'nowhere.lib'\n");
}

TEST_F(VcBuild, WhatCannotBeBuiltHereIsRefused) {
  folder_.Write("a.cpp", "#include <AfxWin.h>\n");
  ProjectText project;
  project.files = File("a.cpp");
  BuiltProject built = Build(project);
  EXPECT_EQ(built.status, Status::Failed);
  EXPECT_EQ(built.limit, "mfc");
  EXPECT_EQ(built.reason, "it needs MFC (AfxWin.h), which there is not outside Windows");

  project.attributes = "ManagedExtensions=\"TRUE\"";
  EXPECT_EQ(Build(project).limit, "managed");
  project.attributes = "";
  project.platform = "Itanium";
  EXPECT_EQ(Build(project).reason,
            "the platform \"Itanium\" cannot be built here: there are compilers for Win32 and x64");
  project.platform = "x64";
  project.tools = Tool("VCLinkerTool", "OutputFile=\"D:\\out\\a.exe\"");
  EXPECT_EQ(Build(project).reason, "\"D:/out/a.exe\" lies on a drive, which there is none of here");
  project.tools = "";
  project.files = File("a.idl");
  EXPECT_EQ(Build(project).reason, "a.idl needs the tool MIDL, which there is not outside Windows");
}

TEST_F(VcBuild, WideMainIsFound) {
  folder_.Write(
      "a.cpp",
      "#include <tchar.h>\n#include <stdio.h>\nint _tmain(int, TCHAR**) { puts(\"wide\"); return 0; }\n");
  ProjectText project;
  project.attributes = "CharacterSet=\"1\"";
  project.files = File("a.cpp");
  const BuiltProject built = Build(project);
  ASSERT_EQ(built.status, Status::Succeeded) << printed_;
  ExpectPrints(built.output, "wide");
}

TEST_F(VcBuild, OldLiteralsAndNamesThatMeanTwoFilesCompile) {
  folder_.Write("a/x.cpp",
                "#include \"sub\\which.h\"\n#include <cstdio>\nint y();\n_int64 z = 0x100000000i64;\n"
                "int main() { std::printf(\"%d %d %d\", WHICH, y(), int(z / 4294967296ui64)); }\n");
  folder_.Write("a/sub/which.h", "#define WHICH 1\n");
  folder_.Write("b/y.cpp", "#include \"sub\\which.h\"\nint y() { return WHICH; }\n");
  folder_.Write("b/sub/which.h", "#define WHICH 2\n");
  ProjectText project;
  project.files = File("a\\x.cpp") + File("b\\y.cpp");
  const BuiltProject built = Build(project);
  ASSERT_EQ(built.status, Status::Succeeded) << printed_;
  ExpectPrints(built.output, "1 2 1");
  EXPECT_EQ(Build(project).status, Status::UpToDate);
}

TEST_F(VcBuild, SaysThatNoLibraryIsLoadedLater) {
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.files = File("a.c");
  project.tools = Tool("VCLinkerTool", "DelayLoadDLLs=\"ws2_32.dll;Own.dll\"");
  EXPECT_EQ(Build(project).status, Status::Succeeded) << printed_;
  EXPECT_EQ(PrintedLines("Own.dll is loaded at the start, not when it is first used: ld delays nothing"), 1);
}

TEST_F(VcBuild, OldLiteralsOfCCompileToo) {
  folder_.Write("c/own.h", "#define OWN 3\n");
  folder_.Write("c/big file.c",
                "#include \"own.h\"\n#include <stdio.h>\n#define BIG 0x100000000i64\n"
                "int main(void) { printf(\"%d 10i64\", (int)(BIG / 4294967296ui64) + OWN); return 0; }\n");
  ProjectText project;
  project.files = File("c\\big file.c");
  const BuiltProject built = Build(project);
  ASSERT_EQ(built.status, Status::Succeeded) << printed_;
  ExpectPrints(built.output, "4 10i64");
  EXPECT_EQ(Build(project).status, Status::UpToDate);
  // It is the source that is looked at, and that messages name.
  folder_.Write("c/big file.c", "__int64 x = 1i64;\nint main(void) { return nothing; }\n");
  EXPECT_EQ(Build(project).status, Status::Failed);
  EXPECT_TRUE(Printed((folder_ / "c/big file.c") + "(2,25) : error C2065")) << printed_;
}

TEST_F(VcBuild, EventsAndCustomStepsRunThroughWine) {
  if (!CanRun()) GTEST_SKIP() << "wine is not installed";
  folder_.Write("in put.txt", "#define FROM \"step\"\n");
  folder_.Write(
      "a.c", "#include \"made.h\"\n#include \"early.h\"\nint main(void) { return sizeof FROM + EARLY; }\n");
  ProjectText project;
  project.tools = Tool("VCPreBuildEventTool", "CommandLine=\"echo #define EARLY 1 &gt; early.h\"") +
                  Tool("VCPostBuildEventTool", "CommandLine=\"copy &quot;$(TargetPath)&quot; copied.exe\"");
  project.files = File("a.c") +
                  "<File RelativePath=\"in put.txt\"><FileConfiguration Name=\"Release|x64\"><Tool "
                  "Name=\"VCCustomBuildTool\" CommandLine=\"copy &quot;$(InputPath)&quot; made.h\" "
                  "Outputs=\"made.h\"/></FileConfiguration></File>";
  BuiltProject built = Build(project);
  ASSERT_EQ(built.status, Status::Succeeded) << built.reason << "\n" << printed_;
  EXPECT_EQ(folder_.Read("copied.exe"), folder_.Read("Release/App.exe"));
  EXPECT_TRUE(Printed("Performing Pre-Build Event...\necho #define EARLY 1 > early.h\n")) << printed_;
  EXPECT_EQ(Build(project).status, Status::UpToDate) << printed_;

  project.tools = Tool("VCPostBuildEventTool", "CommandLine=\"copy nothing there\"");
  built = Build(project);
  EXPECT_EQ(built.status, Status::Failed);
  EXPECT_EQ(built.reason, "its post-build event failed");
}

TEST_F(VcBuild, CustomStepsKnowFoldersOfAnyName) {
  if (!CanRun()) GTEST_SKIP() << "wine is not installed";
  const std::string place = "größe & 'so' 日/";
  folder_.Write(place + "in.txt", "#define FROM 0\n");
  folder_.Write(place + "a.c", "#include \"made.h\"\nint main(void) { return FROM; }\n");
  ProjectText project;
  project.tools = Tool("VCPostBuildEventTool",
                       "CommandLine=\"copy &quot;$(TargetPath)&quot; &quot;$(OutDir)\\größe.exe&quot;\"");
  project.files = File("a.c") +
                  "<File RelativePath=\"in.txt\"><FileConfiguration Name=\"Release|x64\"><Tool "
                  "Name=\"VCCustomBuildTool\" CommandLine=\"copy &quot;$(InputPath)&quot; "
                  "&quot;$(ProjectDir)made.h&quot;\" Outputs=\"made.h\"/></FileConfiguration></File>";
  const BuiltProject built = Build(project, place);
  ASSERT_EQ(built.status, Status::Succeeded) << built.reason << "\n" << printed_;
  EXPECT_EQ(folder_.Read(place + "Release/größe.exe"), folder_.Read(place + "Release/App.exe"));
}

TEST_F(VcBuild, FoldersAreThoseThatAreThere) {
  folder_.Write("BIN/other/keep.txt", "");
  folder_.Write("release/keep.txt", "");
  folder_.Write("p/a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.name = "..\\App";
  project.tools = Tool("VCLinkerTool", "OutputFile=\"..\\bin\\Other\\a.exe\"");
  project.files = File("a.c");
  folder_.Write("p/RELEASE/keep.txt", "");
  ProjectTask task;
  task.name = "App";
  task.file = folder_.Write("p/App.vcproj", project.Text());
  task.configuration = "Release";
  task.platform = "x64";
  ConsoleText console;
  const BuiltProject built = BuildVisualCpp(task, console);
  EXPECT_EQ(built.status, Status::Succeeded) << console.Text();
  EXPECT_EQ(built.output, folder_ / "BIN/other/a.exe");
  EXPECT_TRUE(folder_.Has("p/RELEASE/.._App.objects/build.ninja"));
  EXPECT_EQ(folder_.Names(), "BIN p release");
}

TEST_F(VcBuild, OutputsOutsideTheSolutionAreShown) {
  const TestFolder elsewhere;
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.files = File("a.c");
  project.tools = Tool("VCLinkerTool", "OutputFile=\"" + (elsewhere / "x/a.exe") + "\"");
  ASSERT_EQ(Build(project).status, Status::Succeeded) << printed_;
  EXPECT_TRUE(Printed("Output: " + (elsewhere / "x/a.exe") + "\n")) << printed_;
}

// A map file and what lies in the intermediate folder are written as well.
TEST_F(VcBuild, EveryFolderOutsideTheSolutionIsShownAndMade) {
  const TestFolder elsewhere;
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.files = File("a.c");
  project.tools =
      Tool("VCLinkerTool", "GenerateMapFile=\"TRUE\" MapFileName=\"" + (elsewhere / "m/a.map") + "\"");
  project.intermediate = elsewhere / "objects";
  ASSERT_EQ(Build(project).status, Status::Succeeded) << printed_;
  EXPECT_TRUE(Printed("Output: " + (elsewhere / "m/a.map") + "\n")) << printed_;
  EXPECT_TRUE(Printed("Intermediate files: " + (elsewhere / "objects/App.objects/") + "\n")) << printed_;
  Build(project, "", {}, Goal::Clean);
  EXPECT_FALSE(elsewhere.Has("m/a.map"));
  EXPECT_FALSE(elsewhere.Has("objects/App.objects"));
}

TEST_F(VcBuild, NothingIsWrittenToADrive) {
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  ProjectText project;
  project.type = "2";
  project.files = File("a.c");
  project.tools = Tool("VCLinkerTool", "ImportLibrary=\"C:\\lib\\a.lib\"");
  EXPECT_EQ(Build(project).reason, "\"C:/lib/a.lib\" lies on a drive, which there is none of here");
}

TEST_F(VcBuild, LauncherStandsBeforeTheCompiler) {
  const std::string log = folder_ / "launched.txt";
  launcher_ = folder_.Write("launch.sh", "#!/bin/sh\necho x >> '" + log + "'\nexec \"$@\"\n");
  chmod(launcher_.c_str(), 0755);
  folder_.Write("a.c", "int main(void) { return 0; }\n");
  folder_.Write("b.cpp", "int b;\n");
  ProjectText project;
  project.files = File("a.c") + File("b.cpp");
  ASSERT_EQ(Build(project).status, Status::Succeeded) << printed_;
  EXPECT_EQ(folder_.Read("launched.txt"), "x\nx\n");
}

}  // namespace
}  // namespace qx
