// The program itself: what scripts rely on is its output, its complaints and its exit code.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/TestFolder.h"

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
  const std::string rc = folder / "missing.rc";
  EXPECT_NE(Refusal("version-info \"" + rc + "\" --json").find(rc), std::string::npos);
}

TEST_F(Program, TellsItsVersionAndHowItIsUsed) {
  EXPECT_TRUE(Run("--version").out.starts_with("vsinspect "));
  const std::string help = Run("--help").out;
  for (const char* part :
       {"vsinspect solution FILE.sln", "vsinspect version-info FILE.rc", "--json", "Exit code"}) {
    EXPECT_NE(help.find(part), std::string::npos) << part;
  }
  EXPECT_TRUE(Run("solution --help").status == 0);
}

TEST_F(Program, RefusesWhatItDoesNotKnowAndNamesWhatItDoes) {
  EXPECT_EQ(Refusal(""), "vsinspect: a command is wanted: solution or version-info\nTry vsinspect --help.\n");
  EXPECT_EQ(
      Refusal("solutions x"),
      "vsinspect: unknown command solutions: solution and version-info are known\nTry vsinspect --help.\n");
  EXPECT_EQ(Refusal("solution x --xml"),
            "vsinspect: unknown option --xml: --json is known\nTry vsinspect --help.\n");
  EXPECT_EQ(Refusal("solution"), "vsinspect: solution wants one FILE.sln\nTry vsinspect --help.\n");
  EXPECT_EQ(Refusal("version-info a b"),
            "vsinspect: version-info wants one FILE.rc\nTry vsinspect --help.\n");
}

}  // namespace
}  // namespace qx
