// What cannot be built is said, with the project and the reason.
#include "engine/dotnet/NetBuild.h"

#include "engine/dotnet/NetFixture.h"

namespace qx {
namespace {

using Status = BuiltProject::Status;

constexpr const char* kBasic2003 =
    "<VisualStudioProject><VisualBasic><Build><Settings AssemblyName=\"B\" OutputType=\"Exe\">"
    "<Config Name=\"Debug\" OutputPath=\"bin\"/></Settings></Build></VisualBasic></VisualStudioProject>";
constexpr const char* kBasic2005 =
    "<Project xmlns=\"http://schemas.microsoft.com/developer/msbuild/2003\">"
    "<PropertyGroup><OutputPath>bin</OutputPath></PropertyGroup>"
    "<Import Project=\"$(MSBuildBinPath)\\Microsoft.VisualBasic.targets\"/></Project>";

class NetBuild : public NetFixture {};

TEST_F(NetBuild, RefusesAProjectOfAServer) {
  ProjectTask task;
  task.file = "http://localhost/Shop/Shop.csproj";
  const NetRun run = Build(task);
  EXPECT_EQ(run.built.status, Status::Failed);
  EXPECT_EQ(
      run.built.reason,
      "it is on a web server (http://localhost/Shop/Shop.csproj); only projects on disk can be built here");
}

TEST_F(NetBuild, RefusesVisualBasicWithoutACompiler) {
  if (Has("vbnc") || Has("msbuild") || Has("dotnet")) GTEST_SKIP() << "a Visual Basic compiler is installed";
  folder_.Write("B.vbproj", kBasic2003);
  BuiltProject built = Build("B.vbproj", "Debug").built;
  EXPECT_EQ(built.reason, kNoBasicCompiler);
  EXPECT_EQ(built.limit, "vb");
  QX_NEEDS("xbuild");
  folder_.Write("B.vbproj", kBasic2005);
  built = Build("B.vbproj", "Debug").built;
  EXPECT_EQ(built.reason, kNoBasicCompiler);
  EXPECT_EQ(built.limit, "vb");
}

// A compiler that writes down what it is asked.
TEST_F(NetBuild, AsksAVisualBasicCompilerThatIsThere) {
  folder_.Write("bin/vbnc",
                "#!/bin/sh\nfile=\"${1#@}\"\ncp \"$file\" asked.rsp\nout=$(sed -n "
                "'s/^\"-out:\\(.*\\)\"$/\\1/p' \"$file\")\n"
                "echo program > \"$out\"\n");
  std::filesystem::permissions(folder_ / "bin/vbnc", std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  setenv("PATH", ((folder_ / "bin:") + path).c_str(), 1);
  folder_.Write("B.vbproj", kBasic2003);
  const NetRun run = Build("B.vbproj", "Debug");
  setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(run.built.status, Status::Succeeded) << run.printed << run.built.reason;
  EXPECT_NE(folder_.Read("asked.rsp").find("\"-target:exe\"\n"), std::string::npos);
  EXPECT_EQ(folder_.Read("bin/B.exe"), "program\n");
}

TEST_F(NetBuild, RefusesJSharp) {
  folder_.Write("J.vjsproj", "<VisualStudioProject><VISUALJSHARP/></VisualStudioProject>");
  EXPECT_EQ(Build("J.vjsproj", "Debug").built.reason,
            "J# cannot be compiled here: there is no compiler for it");
}

TEST_F(NetBuild, RefusesWhatCannotBeRead) {
  folder_.Write("P.csproj", "<VisualStudioProject>");
  EXPECT_TRUE(Build("P.csproj", "Debug").built.reason.starts_with("Error parsing project file : "));
  EXPECT_TRUE(Build("Gone.csproj", "Debug").built.reason.starts_with("Cannot read "));
  folder_.Write("P.txt", "");
  EXPECT_EQ(Build("P.txt", "Debug").built.reason,
            "it is no project of C#, Visual Basic or J#: " + (folder_ / "P.txt"));
}

}  // namespace
}  // namespace qx
