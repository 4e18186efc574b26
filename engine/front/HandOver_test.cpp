#include "engine/front/HandOver.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace qx {
namespace {

namespace fs = std::filesystem;

// A folder of the test's own, which is the current folder for as long as the test runs.
class HandOver : public testing::Test {
 protected:
  HandOver() : before_(fs::current_path()) {
    std::string name = (fs::temp_directory_path() / "handover-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    fs::current_path(folder_);
  }
  ~HandOver() override {
    fs::current_path(before_);
    fs::remove_all(folder_);
  }

  static void Write(const fs::path& name, const std::string& text) {
    if (name.has_parent_path()) fs::create_directories(name.parent_path());
    std::ofstream(name, std::ios::binary) << text;
  }

  // A stand-in engine that writes its name, its process id and its arguments, one a line, and ends with `code`.
  static void WriteEngine(const fs::path& name, int code = 0) {
    Write(name, "#!/bin/sh\necho " + name.filename().string() +
                    " $$\nfor a in \"$@\"; do echo \"<$a>\"; done\nexit " + std::to_string(code) + "\n");
    fs::permissions(name, fs::perms::owner_all);
  }

  fs::path folder_;

 private:
  fs::path before_;
};

TEST(HandOverSwitch, KnowsSwitchesOfBothKindsAndResponseFiles) {
  for (const char* text :
       {"/t:Build", "-t:Build", "/p:OutputPath=bin/Release", "/nologo", "/flp1:logfile=a/b.log", "/?",
        "--help", "@more.rsp", "/p:Configuration=Release;Platform=Any CPU"}) {
    EXPECT_TRUE(IsSwitch(text)) << text;
  }
}

TEST(HandOverSwitch, TakesAPathFromTheRootForAFile) {
  for (const char* text :
       {"/home/me/App.sln", "/App.sln", "App.sln", "Lib\\Lib.csproj", "C:\\src\\App.sln", ""}) {
    EXPECT_FALSE(IsSwitch(text)) << text;
  }
}

TEST_F(HandOver, LeavesANameThatExistsAlone) {
  Write("Lib\\Lib.csproj", "");  // one name with a backslash in it, beside the folder's file
  Write("Lib/Lib.csproj", "");
  EXPECT_EQ(FindProjectFile("Lib\\Lib.csproj"), "Lib\\Lib.csproj");
  EXPECT_EQ(FindProjectFile("Lib/Lib.csproj"), "Lib/Lib.csproj");
}

TEST_F(HandOver, TurnsBackslashes) {
  Write("src/Lib/Lib.csproj", "");
  EXPECT_EQ(FindProjectFile("src\\Lib\\Lib.csproj"), "src/Lib/Lib.csproj");
  EXPECT_EQ(FindProjectFile(".\\src\\..\\src/Lib\\Lib.csproj"), "./src/../src/Lib/Lib.csproj");
}

TEST_F(HandOver, LooksFoldersUpWithoutRegardToCase) {
  Write("Source/LIB/Lib.CsProj", "");
  EXPECT_EQ(FindProjectFile("source\\Lib\\lib.csproj"), "Source/LIB/Lib.CsProj");
  EXPECT_EQ(FindProjectFile(folder_.string() + "\\SOURCE\\lib\\LIB.CSPROJ"),
            folder_.string() + "/Source/LIB/Lib.CsProj");
}

TEST_F(HandOver, PrefersTheExactFolderAndThenTheFirstInByteOrder) {
  Write("lib/App.sln", "");
  Write("LIB/App.sln", "");
  Write("Lib/App.sln", "");
  EXPECT_EQ(FindProjectFile("lib\\App.sln"), "lib/App.sln");
  EXPECT_EQ(FindProjectFile("lIB\\App.sln"), "LIB/App.sln");
}

TEST_F(HandOver, KeepsWhatIsNotFoundAsWritten) {
  Write("Lib/Lib.csproj", "");
  EXPECT_EQ(FindProjectFile("lib\\Gone\\App.csproj"), "Lib/Gone/App.csproj");
  EXPECT_EQ(FindProjectFile(""), "");
}

TEST_F(HandOver, TouchesTheProjectFileAndThePathsInPropertiesOnly) {
  Write("Lib/Lib.csproj", "");
  const std::vector<std::string> command = EngineCommand(
      {"/opt/dotnet", {"msbuild"}},
      {"/nologo", "Lib\\Lib.csproj", "/p:OutputPath=bin\\Release;Text=a\\b", "Lib\\Lib.csproj"});
  EXPECT_EQ(command, (std::vector<std::string>{"/opt/dotnet", "msbuild", "/nologo", "Lib/Lib.csproj",
                                               "/p:OutputPath=bin/Release;Text=a\\b", "Lib\\Lib.csproj"}));
}

TEST_F(HandOver, TakesTheFirstEngineOfTheOrderWhereverItStands) {
  WriteEngine("a/xbuild");
  EXPECT_EQ(FindEngine("a:b").value().program, "a/xbuild");
  WriteEngine("b/dotnet");
  EXPECT_EQ(FindEngine("a:b").value().program, "b/dotnet");
  EXPECT_EQ(FindEngine("a:b").value().arguments, std::vector<std::string>{"msbuild"});
  WriteEngine("b/msbuild");
  EXPECT_EQ(FindEngine("a:b").value().program, "b/msbuild");
  EXPECT_TRUE(FindEngine("a:b").value().arguments.empty());
}

TEST_F(HandOver, PassesOverFoldersAndFilesThatAreNoPrograms) {
  fs::create_directories("a/msbuild");
  Write("a/dotnet", "not a program");
  EXPECT_FALSE(FindEngine("a"));
  WriteEngine("xbuild");
  EXPECT_EQ(FindEngine("a:").value().program, "./xbuild");
}

}  // namespace
}  // namespace qx
