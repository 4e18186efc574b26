// "Run MSTest" through qxhost and the package, with a stand-in for MSTest.exe that writes real results files.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files/Files.h"
#include "tests/support/RunProgram.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

class MSTestRun : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::temp_directory_path() / ("qx mstest " + std::string(test.name()));
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "bin out");
    ASSERT_EQ(Host({"options", std::string("MSTestLocation=") + QX_MSTEST}).code, 0);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }
  test::ProgramResult Host(Words words) const {
    words.insert(words.begin(), {"--package", QX_PACKAGE, "--options", PathOf("options.xml")});
    return test::RunProgram(QX_HOST, words, folder_.string());
  }
  // Runs an assembly of these tests.
  test::ProgramResult Run(const std::string& tests, Words settings = {"OutputFileName=run 1.trx"},
                          Words options = {}) const {
    ReplaceFile(PathOf("bin out/Tests.dll"), tests);
    RemoveFile(PathOf("build.xml"));
    EXPECT_EQ(Host({"new", PathOf("build.xml")}).code, 0);
    settings.insert(settings.begin(), {"add", PathOf("build.xml"), "Run MSTest",
                                       "AssemblyFileName=" + PathOf("bin out/Tests.dll")});
    EXPECT_EQ(Host(settings).code, 0);
    options.insert(options.begin(), {"run", PathOf("build.xml")});
    return Host(options);
  }
  static bool Holds(const test::ProgramResult& result, const std::string& text) {
    return (result.out + result.err).find(text) != std::string::npos;
  }

  fs::path folder_;
};

TEST_F(MSTestRun, SucceedsAndSumsUp) {
  const test::ProgramResult result = Run("Adds Passed\nMultiplies Passed\n");
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_TRUE(Holds(result, "Test results: 2 passed, 0 failed in 1.500 s\n")) << result.out;
}

TEST_F(MSTestRun, FailsWhenATestFails) {
  const test::ProgramResult result = Run("Adds Passed\nDivides Failed\n");
  EXPECT_EQ(result.code, 1) << result.out << result.err;
  EXPECT_TRUE(Holds(result, "Test results: 1 passed, 1 failed in 1.500 s\n")) << result.out;
  EXPECT_TRUE(Holds(result, "returned Error code : 1")) << result.out;
}

TEST_F(MSTestRun, NamesEveryOtherOutcome) {
  const test::ProgramResult result = Run("A Inconclusive\nB Aborted\nC Timeout\nD NotExecuted\nE Passed\n");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Holds(
      result,
      "Test results: 1 passed, 0 failed, 1 Inconclusive, 1 Aborted, 1 Timeout, 1 NotExecuted in 1.500 s"))
      << result.out;
}

TEST_F(MSTestRun, SaysThatNothingWasExecuted) {
  const test::ProgramResult result = Run("A NotExecuted\n");
  EXPECT_EQ(result.code, 0) << "the summary changes no outcome";
  EXPECT_TRUE(Holds(result, "Test results: no test was executed, 1 NotExecuted\n")) << result.out;
}

TEST_F(MSTestRun, NamesADamagedResultsFileAndKeepsTheOutcome) {
  const test::ProgramResult result = Run("damage\nAdds Passed\n");
  EXPECT_EQ(result.code, 0) << result.out;
  EXPECT_TRUE(Holds(result, "Test results: ")) << result.out;
  EXPECT_TRUE(Holds(result, "run 1.trx cannot be read: ")) << result.out;
}

TEST_F(MSTestRun, SumsUpNoFileOfAnEarlierRun) {
  EXPECT_EQ(Run("Adds Passed\n").code, 0);
  const test::ProgramResult again = Run("Adds Passed\n");
  EXPECT_EQ(again.code, 1);
  EXPECT_TRUE(Holds(again, "already exists.")) << again.out;
  EXPECT_FALSE(Holds(again, "Test results: ")) << again.out;
}

TEST_F(MSTestRun, GivesItsArgumentsInOrderWithBlanksInPaths) {
  ReplaceFile(PathOf("a b.testrunconfig"), "");
  const test::ProgramResult result = Run("Adds Passed\n", {"ConfigFileName=" + PathOf("a b.testrunconfig"),
                                                           "OutputFileName=" + PathOf("r 1.trx")});
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  const std::size_t container =
      result.out.find("Argument: /testcontainer:" + PathOf("bin out/Tests.dll") + "\n");
  const std::size_t output = result.out.find("Argument: /resultsfile:" + PathOf("r 1.trx") + "\n");
  const std::size_t config = result.out.find("Argument: /runconfig:" + PathOf("a b.testrunconfig") + "\n");
  EXPECT_LT(container, output) << result.out;
  EXPECT_LT(output, config) << result.out;
  EXPECT_NE(config, std::string::npos) << result.out;
}

TEST_F(MSTestRun, LeavesEmptyValuesOut) {
  const test::ProgramResult result = Run("Adds Passed\n", {});
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_FALSE(Holds(result, "/resultsfile:"));
  EXPECT_FALSE(Holds(result, "/runconfig:"));
  EXPECT_FALSE(Holds(result, "Test results: "));
}

TEST_F(MSTestRun, StartsInTheAssemblysFolder) {
  EXPECT_EQ(Run("Adds Passed\n").code, 0);
  EXPECT_TRUE(FileExists(PathOf("bin out/run 1.trx")));
}

TEST_F(MSTestRun, EndsWithTheHostsTimeout) {
  const test::ProgramResult result = Run("wait\n", {"OutputFileName=run 1.trx"}, {"--timeout", "1"});
  EXPECT_EQ(result.code, 5) << result.out << result.err;
  EXPECT_TRUE(Holds(result, "Action Terminated by User.")) << result.out;
}

TEST_F(MSTestRun, IsNotRunAsLongAsItIsNotSet) {
  ASSERT_EQ(Host({"options", "MSTestLocation="}).code, 0);
  const test::ProgramResult result = Run("Adds Passed\n", {"AssemblyFileName="});
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(Holds(result, "MSTest Locatation: MSTest.exe location not set in Tools->Options"))
      << result.out << result.err;
  EXPECT_TRUE(Holds(result, "MSTest Locatation: MSTest.exe not found, check location in Tools->Options"));
  EXPECT_TRUE(Holds(result, "Assembly Filename: Assembly Filename is blank"));
}

}  // namespace
}  // namespace qx
