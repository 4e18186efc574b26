#include "projects/net/NetOutput.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

constexpr const char* kTargets = "<Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/>";

NetOutput Lies(const TestFolder& folder, const std::string& text, const NetSelection& selection = {}) {
  return WhereOutputLies(ReadNetProject(folder.Write("P/Project.csproj", text), selection));
}

std::string Old(const std::string& path, const std::string& type = "Library") {
  return "<VisualStudioProject><CSHARP><Build><Settings AssemblyName=\"Name.Part\" OutputType=\"" + type +
         "\"><Config Name=\"Debug\" OutputPath=\"" + path +
         "\"/></Settings></Build></CSHARP></VisualStudioProject>";
}

// Windows has its own delimiters.
std::string Native(std::string path) {
  for (char& c : path) c = c == '\\' || c == '/' ? (QX_SOURCE_DIR[1] == ':' ? '\\' : '/') : c;
  return path;
}

TEST(NetOutput, LiesWhereAProjectOf2003Says) {
  const TestFolder folder;
  NetSelection debug;
  debug.configuration = "Debug";
  EXPECT_EQ(Lies(folder, Old("..\\build\\debug\\"), debug).path,
            Native(folder / "build/debug/Name.Part.dll"));
  EXPECT_EQ(Lies(folder, Old(".\\", "WinExe"), debug).path, Native(folder / "P/Name.Part.exe"));
  EXPECT_EQ(Lies(folder, Old("bin", "Exe"), debug).path, Native(folder / "P/bin/Name.Part.exe"));
}

TEST(NetOutput, TakesTheCaseThatFoldersHave) {
  const TestFolder folder;
  folder.Write("P/BIN/debug/x", "");
  NetSelection debug;
  debug.configuration = "Debug";
  const std::string path = Lies(folder, Old("bin\\Debug\\"), debug).path;
  if (QX_SOURCE_DIR[1] == ':') GTEST_SKIP() << "on Windows both names are the same folder's: " << path;
  EXPECT_EQ(path, folder / "P/BIN/debug/Name.Part.dll");
}

TEST(NetOutput, IsUnknownWithoutTheConfiguration) {
  const TestFolder folder;
  NetSelection release;
  release.configuration = "Release";
  const NetOutput output = Lies(folder, Old("bin"), release);
  EXPECT_EQ(output.path, "");
  EXPECT_EQ(output.reason, "the project has no such configuration");
}

TEST(NetOutput, LiesWhereMsBuildPutsIt) {
  const TestFolder folder;
  const std::string begin = "<Project><PropertyGroup><OutputPath>bin\\$(Configuration)\\</OutputPath>";
  NetSelection release;
  release.configuration = "Release";
  EXPECT_EQ(Lies(folder, begin + "</PropertyGroup>" + kTargets + "</Project>", release).path,
            Native(folder / "P/bin/Release/Project.exe"));
  EXPECT_EQ(Lies(folder,
                 begin + "<OutDir>out</OutDir><OutputType>library</OutputType></PropertyGroup>" + kTargets +
                     "</Project>",
                 release)
                .path,
            Native(folder / "P/out/Project.dll"));
  EXPECT_EQ(Lies(folder,
                 begin + "</PropertyGroup>" + kTargets +
                     "<PropertyGroup><OutputPath>late</OutputPath></PropertyGroup></Project>",
                 release)
                .path,
            Native(folder / "P/bin/Release/Project.exe"));
}

struct Unknown {
  const char* text;
  const char* reason;
};
class NetOutputUnknown : public testing::TestWithParam<Unknown> {};

TEST_P(NetOutputUnknown, IsSaidWithItsReason) {
  const TestFolder folder;
  const NetOutput output = Lies(folder, GetParam().text);
  EXPECT_EQ(output.path, "");
  EXPECT_EQ(output.reason, GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Projects, NetOutputUnknown,
    testing::Values(
        Unknown{"<Project><PropertyGroup><OutputPath>bin</OutputPath></PropertyGroup>"
                "<Import Project=\"gone.props\"/>"
                "<Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>",
                "OutputPath is not certain: the import of \"gone.props\" may set it: it cannot be read"},
        Unknown{"<Project><Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>",
                "the project sets no OutputPath for this configuration and platform"},
        Unknown{"<Project><PropertyGroup><OutputPath>bin</OutputPath></PropertyGroup></Project>",
                "OutputPath is not certain: it imports no targets of the product"},
        Unknown{"<Project><PropertyGroup>"
                "<OutputPath Condition=\"'$(OS)'=='Unix'\">bin</OutputPath></PropertyGroup>"
                "<Import Project=\"$(MSBuildToolsPath)\\Microsoft.CSharp.targets\"/></Project>",
                "OutputPath is not certain: the condition \"'$(OS)'=='Unix'\" cannot be decided: $(OS) "
                "depends on where it is built"},
        Unknown{"<Project><PropertyGroup><OutputPath>bin</OutputPath>"
                "<AssemblyName>@(X)</AssemblyName></PropertyGroup>"
                "<Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>",
                "The file's name is not certain: \"@(X)\" is known to the build alone"}));

}  // namespace
}  // namespace qx
