#include "engine/ChildCommand.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

struct Ran {
  ChildResult result;
  std::vector<std::string> lines;
};

Ran Shell(const std::string& script, ChildCommand command = {}) {
  Ran ran;
  command.arguments = {"sh", "-c", script};
  ran.result = RunChild(command, [&ran](std::string_view line) { ran.lines.emplace_back(line); });
  return ran;
}

TEST(ChildCommand, GivesBothOutputsInTheirOrderLineByLine) {
  const Ran ran = Shell("echo one; echo two >&2; printf 'three\\r\\n\\nlast'; exit 7");
  EXPECT_EQ(ran.lines, (std::vector<std::string>{"one", "two", "three", "", "last"}));
  EXPECT_EQ(ran.result.code, 7);
  EXPECT_EQ(ran.result.reason, "");
}

TEST(ChildCommand, RunsInItsFolderWithItsEnvironmentAndNoInput) {
  const TestFolder folder;
  const Ran ran =
      Shell("pwd; echo $COLOUR $HOME; cat", {{}, folder.Path(), {{"COLOUR", "blue"}, {"HOME", "/nowhere"}}});
  ASSERT_EQ(ran.lines.size(), 2U);
  EXPECT_EQ(ran.lines[0] + "/", folder.Path());
  EXPECT_EQ(ran.lines[1], "blue /nowhere");
}

TEST(ChildCommand, PassesArgumentsWithoutAShell) {
  std::vector<std::string> lines;
  RunChild({{"printf", "%s\\n", "a b", "$HOME", "'\"&;"}, "", {}},
           [&](std::string_view line) { lines.emplace_back(line); });
  EXPECT_EQ(lines, (std::vector<std::string>{"a b", "$HOME", "'\"&;"}));
}

TEST(ChildCommand, TellsTheSignalThatEndedIt) { EXPECT_EQ(Shell("kill -9 $$").result.code, 137); }

TEST(ChildCommand, DoesNotWaitForWhatTheChildLeavesBehind) {
  const auto begin = std::chrono::steady_clock::now();
  const auto run = Shell("sleep 20 & echo $!; echo last; printf end");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  ASSERT_EQ(run.lines.size(), 3U);
  EXPECT_EQ(run.lines[2], "end");
  kill(std::stoi(run.lines[0]), SIGKILL);
}

TEST(ChildCommand, SaysWhyAProgramDidNotStart) {
  const auto ignore = [](std::string_view) {};
  EXPECT_EQ(RunChild({{"no-such-program-here"}, "", {}}, ignore).reason,
            "no-such-program-here was not found on the PATH");
  EXPECT_EQ(RunChild({{"/nowhere/tool"}, "", {}}, ignore).reason,
            "cannot start /nowhere/tool: No such file or directory");
  EXPECT_EQ(RunChild({}, ignore).code, -1);
}

}  // namespace
}  // namespace qx
