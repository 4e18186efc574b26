// What a host that is killed leaves running: nothing, though nobody asks its programs to end.
#include <windows.h>

#include <thread>

#include "host/cli/testdata/CliFixture.h"
#include "platform/WindowsText.h"

namespace qx::cli {
namespace {

class KilledHost : public CliTest {
 protected:
  void WaitForBeats(std::size_t count) const {
    for (int i = 0; i < 600 && !(Exists("pulse") && Content("pulse").size() >= count); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
};

TEST_F(KilledHost, TakesItsTreeAlong) {
  Project("p.xml", {{"Deed=tdRun", std::string("Lines=") + QX_TEST_CHILD +
                                       ";ignore-requests spawn:5 ignore-requests spawn:1 beat:" +
                                       PathOf("pulse") + " exit:0 exit:0 sleep:60000"}});
  std::wstring line = system::ToWide("\"" + ProgramFile("qxhost") + "\" --package \"" + PackageFile("tiny") +
                                     "\" --options \"" + PathOf("options.xml") + "\" run p.xml");
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  ASSERT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder_.c_str(),
                             &start, &started));
  WaitForBeats(4);
  EXPECT_TRUE(Exists("pulse"));
  EXPECT_TRUE(TerminateProcess(started.hProcess, 9));
  WaitForSingleObject(started.hProcess, 10'000);
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  std::this_thread::sleep_for(std::chrono::milliseconds(1000));
  const std::string before = Content("pulse");
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  EXPECT_EQ(Content("pulse"), before) << "somebody lives";
}

}  // namespace
}  // namespace qx::cli
