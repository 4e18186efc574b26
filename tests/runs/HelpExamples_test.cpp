// The examples of the command line's help, typed as they stand: each does something and exits with 0.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "platform/files/Files.h"
#include "tests/support/RunProgram.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr const char* kSolution =
    "\r\nMicrosoft Visual Studio Solution File, Format Version 9.00\r\n"
    "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"App\", \"App.csproj\", "
    "\"{11111111-0000-0000-0000-000000000001}\"\r\nEndProject\r\nGlobal\r\n"
    "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n"
    "\t\tRelease|Any CPU = Release|Any CPU\r\n\tEndGlobalSection\r\nEndGlobal\r\n";

// A solution, a stand-in for the compiler, and what the examples name, in a folder of the test's own.
class HelpExamples : public testing::Test {
 protected:
  void SetUp() override {
    before_ = fs::current_path();
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    folder_ = fs::canonical(fs::temp_directory_path()) / ("qx-help-" + name);
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "vs");
    fs::current_path(folder_);
    fs::copy_file(QX_RECORDER, folder_ / "vs/devenv.com");
    fs::copy_file(QX_PACKAGE, folder_ / "mine.so");
    ReplaceFile(PathOf("App.csproj"), "<Project><Compile Include=\"AssemblyInfo.cs\"/></Project>");
    ReplaceFile(PathOf("AssemblyInfo.cs"),
                "using System.Reflection;\r\n[assembly: AssemblyVersion(\"1.0.0.0\")]\r\n");
    ReplaceFile(PathOf("App.sln"), kSolution);
    ReplaceFile(PathOf("tools.lua"), "assert(... == '/opt/tools')\n");
    ReplaceFile(PathOf("commands.txt"), "pages\nquit\n");
    // The stand-in makes no program that could be looked at.
    Must({"options", "DevEnv2005Location=" + PathOf("vs"), "CheckBuilt=off"});
    Must({"init", "App.sln", "nightly.xml", "--stamp"});
    Must({"set", "nightly.xml", "UseMSBuild=False"});
    Must({"var", "nightly.xml", "ROOT=."});
  }
  void TearDown() override {
    fs::current_path(before_);
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).make_preferred().string(); }
  test::ProgramResult Host(Words words) const {
    words.insert(words.begin(), {"--options", PathOf("options.xml"), "--package", QX_PACKAGE});
    return test::RunProgram(QX_HOST, words, folder_.string());
  }
  void Must(const Words& words) const {
    const test::ProgramResult result = Host(words);
    ASSERT_EQ(result.code, 0) << words[0] << ": " << result.err;
  }

  // "qxhost ..." typed into the system's shell; what it printed where it did not exit with 0.
  std::string FaultOf(const std::string& line) const {
    const bool ownPackage = line.find("--package") != std::string::npos;
    // Both shells take it so: one of them strips a quote that the line begins with.
    const std::string program = "cd . && \"" + fs::path(QX_HOST).make_preferred().string() +
                                "\" --options \"" + PathOf("options.xml") + "\"" +
                                (ownPackage ? "" : " --package \"" + std::string(QX_PACKAGE) + "\"");
    const std::string command = program + line.substr(std::string("qxhost").size()) + " >said.txt 2>&1";
    return std::system(command.c_str()) == 0 ? "" : ReadFile(PathOf("said.txt"));
  }

  fs::path before_, folder_;
};

// The lines of a help text that are typed, and the names of its commands.
Words ExamplesIn(const std::string& help) {
  Words examples;
  std::istringstream in(help);
  for (std::string line; std::getline(in, line);) {
    const bool isCommand = line.starts_with("  qxhost ") && line.find("ACTION") == std::string::npos;
    if (isCommand) examples.push_back(line.substr(2));
  }
  return examples;
}
Words CommandsIn(const std::string& help) {
  Words commands;
  std::istringstream in(help.substr(0, help.find("Global options:")));
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("  ") && line[2] >= 'a' && line[2] <= 'z')
      commands.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return commands;
}

TEST_F(HelpExamples, OfEachCommandWork) {
  const std::string help = Host({"--help"}).out;
  const Words commands = CommandsIn(help);
  EXPECT_GT(commands.size(), 20u) << help;
  for (const std::string& command : commands) {
    const Words examples = ExamplesIn(Host({"help", command}).out);
    ASSERT_EQ(examples.size(), 1u) << command;
    if (command == "edit") continue;  // opens a window; its own tests start it
    if (command == "new") RemoveFile(PathOf("nightly.xml"));
    EXPECT_EQ(FaultOf(examples[0]), "") << examples[0];
    if (command == "remove") Must({"add", "nightly.xml", "Run MSTest"});
    if (command != "new") continue;
    RemoveFile(PathOf("nightly.xml"));
    Must({"init", "App.sln", "nightly.xml", "--stamp"});
    Must({"set", "nightly.xml", "UseMSBuild=False"});
  }
}

TEST_F(HelpExamples, FromASolutionInTwoCommandsWork) {
  const Words examples = ExamplesIn(Host({"--help"}).out);
  ASSERT_GE(examples.size(), 3u);
  EXPECT_EQ(examples[0], "qxhost init App.sln --stamp");
  for (const std::string& example : examples) {
    if (example.ends_with("nightly.xml")) continue;  // beside those that ACTION stands in
    EXPECT_EQ(FaultOf(example), "") << example;
  }
  EXPECT_NE(ReadFile(PathOf("AssemblyInfo.cs")).find("1.0.1.0"), std::string::npos);
}

}  // namespace
}  // namespace qx
