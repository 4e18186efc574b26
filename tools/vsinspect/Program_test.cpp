// The program itself: what scripts rely on is its output, its complaints and its exit code.
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

struct Outcome {
  int status;  // as std::system gives it: the exit code on Windows, the code times 256 elsewhere
  std::string out, complaint;
};
constexpr int kRefused = QX_EXIT_2;

class Program : public testing::Test {
 protected:
  Outcome Run(const std::string& arguments) const {
    const std::string streams = " > \"" + (folder / "out") + "\" 2> \"" + (folder / "err") + "\"";
    const int status = std::system((QX_VSINSPECT + (" " + arguments) + streams).c_str());
    std::string complaint = folder.Read("err");
    std::erase(complaint, '\r');
    return {status, folder.Read("out"), complaint};
  }
  // What stands on stderr; a refusal writes nothing to stdout.
  std::string Refusal(const std::string& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, kRefused) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    return outcome.complaint;
  }
  TestFolder folder;
};

TEST_F(Program, ShowsASolution) {
  const std::string file = folder.Write(
      "a b.sln", "Microsoft Visual Studio Solution File, Format Version 9.00\r\nGlobal\r\nEndGlobal\r\n");
  const Outcome text = Run("solution \"" + file + "\"");
  EXPECT_TRUE(text.status == 0) << text.complaint;
  EXPECT_NE(text.out.find("projects: 0"), std::string::npos) << text.out;
  const Outcome json = Run("solution --json \"" + file + "\"");
  EXPECT_TRUE(json.status == 0);
  EXPECT_NE(json.out.find("\"configurations\":null,\"projects\":[]}"), std::string::npos) << json.out;
}

TEST_F(Program, GivesTheReadersOwnMessage) {
  EXPECT_EQ(Refusal("solution \"" + folder.Write("a.sln", "hello\r\n") + "\""),
            "Invalid Solution File Format : hello\n");
  EXPECT_EQ(Refusal("solution \"" + folder.Write("b.sln", "") + "\""), "List index out of bounds (0)\n");
  const std::string missing = folder / "missing.sln";
  EXPECT_TRUE(Refusal("solution \"" + missing + "\"").starts_with("Cannot read " + missing + ": "));
  const std::string text = folder.Write("c.exe", "hello");
  EXPECT_EQ(Refusal("binary \"" + text + "\""),
            "Cannot read " + text + ": it is no Windows program: it does not begin with MZ\n");
  const std::string rc = folder / "missing.rc";
  EXPECT_NE(Refusal("version-info \"" + rc + "\" --json").find(rc), std::string::npos);
}

TEST_F(Program, TellsItsVersionAndHowItIsUsed) {
  EXPECT_TRUE(Run("--version").out.starts_with("vsinspect "));
  const std::string help = Run("--help").out;
  for (const char* part : {"vsinspect solution FILE.sln", "vsinspect version-info FILE.rc",
                           "vsinspect binary FILE", "vsinspect built FILE.sln", "--json", "Exit code"}) {
    EXPECT_NE(help.find(part), std::string::npos) << part;
  }
  EXPECT_TRUE(Run("solution --help").status == 0);
}

constexpr const char* kOneProject =
    "Microsoft Visual Studio Solution File, Format Version "
    "9.00\r\nProject(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = "
    "\"A\", \"None.vcproj\", \"{AAAAAAAA-0000-0000-0000-000000000001}\"\r\nEndProject\r\nGlobal\r\n"
    "GlobalSection(SolutionConfiguration) = preSolution\r\nDebug = "
    "Debug\r\nEndGlobalSection\r\nEndGlobal\r\n";

TEST_F(Program, EndsWithOneWhenAProgramIsNotAsItShouldBe) {
  const std::string empty = folder.Write("empty.sln",
                                         "Microsoft Visual Studio Solution File, Format Version "
                                         "9.00\r\nGlobal\r\nGlobalSection(SolutionConfiguration) = "
                                         "preSolution\r\nDebug = Debug\r\nEndGlobalSection\r\nEndGlobal\r\n");
  EXPECT_EQ(Run("built \"" + empty + "\" --configuration Debug").status, 0);
  const std::string one = folder.Write("one.sln", kOneProject);
  const Outcome json = Run("built \"" + one + "\" --configuration=Debug --json");
  EXPECT_EQ(json.status, QX_EXIT_2 / 2);
  EXPECT_NE(json.out.find("\"status\":\"unknown\""), std::string::npos) << json.out;
  EXPECT_EQ(Refusal("built \"" + one + "\" --configuration Release"),
            one + " has no configuration \"Release\": it has Debug\n");
  EXPECT_EQ(Refusal("built \"" + one + "\""),
            "vsinspect: built wants --configuration NAME, one of the solution's\nTry vsinspect --help.\n");
}

TEST_F(Program, RefusesWhatItDoesNotKnowAndNamesWhatItDoes) {
  EXPECT_EQ(
      Refusal(""),
      "vsinspect: a command is wanted: solution, version-info, binary or built\nTry vsinspect --help.\n");
  EXPECT_EQ(Refusal("solutions x"),
            "vsinspect: unknown command solutions: solution, version-info, binary and built are known\nTry "
            "vsinspect --help.\n");
  EXPECT_EQ(Refusal("solution x --xml"),
            "vsinspect: unknown option --xml: --json is known\nTry vsinspect --help.\n");
  EXPECT_EQ(Refusal("solution"), "vsinspect: solution wants one FILE.sln\nTry vsinspect --help.\n");
  EXPECT_EQ(Refusal("version-info a b"),
            "vsinspect: version-info wants one FILE.rc\nTry vsinspect --help.\n");
}

}  // namespace
}  // namespace qx
