// What only holds on Windows, or can only be seen there.
#include <gtest/gtest.h>
#include <windows.h>

#include "host/process/ChildProcess.h"

namespace qx {
namespace {

std::string OutputOf(ChildProcess child) {
  std::string text;
  child.onOutput = [&](std::string_view line) { text += std::string(line) + "\n"; };
  child.Run();
  return text;
}

TEST(ChildProcessWindows, TheParameterStringArrivesAsItStands) {
  ChildProcess child;
  child.executable = QX_TEST_CHILD;
  const std::string odd = R"(command-line out:\n  "a""b\\" '  /p:Configuration="Re lease";X="bin\" )";
  child.parameters = odd;
  std::string executable = QX_TEST_CHILD;
  for (char& c : executable) c = c == '/' ? '\\' : c;
  const std::string output = OutputOf(child);
  EXPECT_EQ(output.substr(0, output.find('\n')), "\"" + executable + "\" " + odd);
}

TEST(ChildProcessWindows, TextsAreUtf8) {
  ChildProcess child;
  child.executable = QX_TEST_CHILD;
  child.parameters = "args \xc3\xa4\xe2\x82\xac";
  EXPECT_EQ(OutputOf(child), "[\xc3\xa4\xe2\x82\xac]\n");
}

TEST(ChildProcessWindows, ExitCodesKeepAllTheirBits) {
  ChildProcess child;
  child.executable = QX_TEST_CHILD;
  child.parameters = "exit:70000";
  EXPECT_EQ(child.Run(), 70000);
  child.parameters = "exit:-1073741819";
  EXPECT_EQ(child.Run(), -1073741819);
}

TEST(ChildProcessWindows, AChildThatSharesTheConsoleIsStoppedToo) {
  TEvent stop;
  ChildProcess child;
  child.executable = QX_TEST_CHILD;
  child.hideWindow = false;
  child.stop = &stop;
  child.onOutput = [&](std::string_view) { stop.SetEvent(); };
  child.parameters = "out:x\\n ignore-requests sleep:60000";
  const ULONGLONG start = GetTickCount64();
  EXPECT_EQ(child.Run(), kTerminatedExitCode);
  EXPECT_LT(GetTickCount64() - start, 3000u);
}

TEST(ChildProcessWindows, LeavesNoHandleBehind) {
  ChildProcess child;
  child.executable = QX_TEST_CHILD;
  child.parameters = "out:x err:y";
  child.Run();
  DWORD before = 0;
  DWORD after = 0;
  GetProcessHandleCount(GetCurrentProcess(), &before);
  for (int i = 0; i < 10; ++i) child.Run();
  GetProcessHandleCount(GetCurrentProcess(), &after);
  EXPECT_LE(after, before + 2);  // the C++ runtime keeps some for its threads
}

}  // namespace
}  // namespace qx
