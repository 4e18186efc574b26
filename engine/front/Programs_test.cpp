// The two programs as they are started: their exit codes, and what becomes of what they do not build themselves.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

struct Outcome {
  int code;
  pid_t pid;
  std::string output;
};

// Runs a program in a folder with `path` as its PATH; both its outputs in one text.
Outcome Start(const std::string& program, const std::string& folder, const std::string& path,
              const std::vector<std::string>& arguments) {
  std::vector<std::string> texts = {program};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(texts.size() + 1);
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  std::string variable = "PATH=" + path;
  char* environment[] = {variable.data(), nullptr};

  int ends[2];
  if (pipe(ends) != 0) return {-1, 0, "no pipe"};
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(ends[1], STDOUT_FILENO);
    dup2(ends[1], STDERR_FILENO);
    if (chdir(folder.c_str()) == 0) execve(argv[0], argv.data(), environment);
    _exit(99);
  }
  close(ends[1]);
  std::string output;
  char block[4096];
  for (ssize_t count; (count = read(ends[0], block, sizeof block)) > 0;) {
    output.append(block, static_cast<std::size_t>(count));
  }
  close(ends[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, pid, output};
}

class EnginePrograms : public testing::Test {
 protected:
  Outcome MsBuild(const std::vector<std::string>& arguments) const {
    return Start(QX_MSBUILD, folder_.Path(), "bin", arguments);
  }
  Outcome Devenv(const std::vector<std::string>& arguments) const {
    return Start(QX_DEVENV, folder_.Path(), "bin", arguments);
  }
  void WriteProgram(const std::string& name, const std::string& text) const {
    fs::permissions(folder_.Write(name, text), fs::perms::owner_all);
  }
  // A stand-in engine that writes its name, its process id and its arguments, one a line, and ends with `code`.
  void WriteEngine(const std::string& name, int code = 0) const {
    WriteProgram("bin/" + name, "#!/bin/sh\necho " + name +
                                    " $$\nfor a in \"$@\"; do echo \"<$a>\"; done\nexit " +
                                    std::to_string(code) + "\n");
  }

  TestFolder folder_;
};

TEST_F(EnginePrograms, MsBuildBecomesTheEngineForWhatItDoesNotBuildItself) {
  WriteEngine("xbuild", 7);
  folder_.Write("Lib/Lib.proj", "");
  const Outcome outcome =
      MsBuild({"Lib\\Lib.proj", "/t:Build", "/p:Platform=Any CPU;OutputPath=bin\\Release", "/v:q"});
  EXPECT_EQ(outcome.code, 7);
  EXPECT_EQ(outcome.output,
            "xbuild " + std::to_string(outcome.pid) +
                "\n<Lib/Lib.proj>\n</t:Build>\n</p:Platform=Any CPU;OutputPath=bin/Release>\n</v:q>\n");
}

TEST_F(EnginePrograms, MsBuildHandsTheVerbToTheSecondEngine) {
  WriteEngine("dotnet");
  const Outcome outcome = MsBuild({"App.proj"});
  EXPECT_EQ(outcome.output, "dotnet " + std::to_string(outcome.pid) + "\n<msbuild>\n<App.proj>\n");
}

TEST_F(EnginePrograms, MsBuildSaysWhatToInstallWhenThereIsNoEngine) {
  const Outcome outcome = MsBuild({"App.proj"});
  EXPECT_EQ(outcome.code, 127);
  EXPECT_EQ(
      outcome.output,
      "MSBuild.exe: no build engine was found on the PATH (msbuild, dotnet or xbuild). Install one of them: "
      "Debian's package mono-devel has xbuild.\n");
}

TEST_F(EnginePrograms, MsBuildNamesAnEngineThatCannotBeStarted) {
  WriteProgram("bin/xbuild", "#!/nowhere/sh\n");
  const Outcome outcome = MsBuild({"App.proj"});
  EXPECT_EQ(outcome.code, 126);
  EXPECT_EQ(outcome.output, "MSBuild.exe: cannot start bin/xbuild: No such file or directory\n");
}

constexpr const char* kUnsupported =
    "Microsoft Visual Studio Solution File, Format Version 9.00\r\n"
    "Project(\"{54435603-DBB4-11D2-8724-00A0C9A8B90C}\") = \"Setup\", \"Setup.vdproj\", "
    "\"{EB812030-9F2E-4FB7-813D-2E99AE2C5E4E}\"\r\nEndProject\r\nGlobal\r\n"
    "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n\t\tDebug|Win32 = Debug|Win32\r\n"
    "\tEndGlobalSection\r\n\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n"
    "\t\t{EB812030-9F2E-4FB7-813D-2E99AE2C5E4E}.Debug|Win32.ActiveCfg = Debug\r\n"
    "\t\t{EB812030-9F2E-4FB7-813D-2E99AE2C5E4E}.Debug|Win32.Build.0 = "
    "Debug\r\n\tEndGlobalSection\r\nEndGlobal\r\n";

std::string UnsupportedLog(const std::string& projectFile) {
  return "------ Build started: Project: Setup, Configuration: Debug ------\n" + projectFile +
         " : error QXE0001: Setup: setup projects need Visual Studio itself\n\nSetup - 1 error(s), 0 "
         "warning(s)\n\n"
         "========== Build: 0 succeeded, 1 failed, 0 skipped ==========\n";
}

TEST_F(EnginePrograms, ASolutionOfWhichNothingCanBeBuiltFails) {
  folder_.Write("src/App.sln", kUnsupported);
  const std::string log = UnsupportedLog(folder_ / "src/Setup.vdproj");
  const Outcome devenv = Devenv({"/build", "Debug|Win32", "SRC\\app.sln", "/out", "log.txt"});
  EXPECT_EQ(devenv.code, 1);
  EXPECT_EQ(devenv.output, log);
  EXPECT_EQ(folder_.Read("log.txt"), log);
  const Outcome msbuild = MsBuild({"src\\App.sln", "/t:Build", "/p:Configuration=Debug;Platform=Win32"});
  EXPECT_EQ(msbuild.code, 1);
  EXPECT_EQ(msbuild.output, log + "\nBuild FAILED.\n    0 Warning(s)\n    1 Error(s)\n");
}

TEST_F(EnginePrograms, TellsWhatItCannotBegin) {
  folder_.Write("App.sln", kUnsupported);
  const Outcome usage = Devenv({"/build", "Debug"});
  EXPECT_EQ(usage.code, 1);
  EXPECT_NE(usage.output.find("No solution or project was given."), std::string::npos);
  EXPECT_EQ(Devenv({"/build", "Release", "App.sln"}).output,
            "devenv.com : error QXE0001: " + (folder_ / "App.sln") +
                " has no configuration \"Release\". It has: Debug|Win32\n");
  const Outcome target = MsBuild({"App.sln", "/t:Deploy"});
  EXPECT_EQ(target.code, 1);
  EXPECT_NE(target.output.find("only the targets Build, Rebuild and Clean"), std::string::npos);
}

}  // namespace
}  // namespace qx
