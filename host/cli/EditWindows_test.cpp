// edit: which program is started, with which words. A copy of the host stands in a folder of its own, and a
// program for the desktop.
#include <windows.h>

#include <thread>

#include "host/cli/testdata/CliFixture.h"
#include "platform/WindowsText.h"

namespace qx::cli {
namespace {

class EditCommand : public CliTest {
 protected:
  void SetUp() override {
    CliTest::SetUp();
    std::filesystem::create_directories(folder_ / "bin");
    for (const auto& entry : std::filesystem::directory_iterator(QX_BINARY_DIR)) {
      const std::string name = entry.path().filename().string();
      if (name == "qxhost.exe" || name.find("qxruntime") == 3 || name == "qxruntime.dll" ||
          name.starts_with("libstdc++") || name.starts_with("libgcc") || name.starts_with("libwinpthread"))
        std::filesystem::copy_file(entry.path(), folder_ / "bin" / name);
    }
  }
  void Install() const {
    std::filesystem::copy_file(ProgramFile("qx_stand_in"), folder_ / "bin/qxhost-desktop.exe");
  }
  // Outside any job, which would end the desktop together with the host. The exit code.
  DWORD Edit(const std::string& words) const {
    std::wstring line = system::ToWide("\"" + PathOf("bin\\qxhost.exe") + "\" " + words);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder_.c_str(), &start,
                        &started))
      return 999;
    DWORD code = 998;
    WaitForSingleObject(started.hProcess, 60'000);
    GetExitCodeProcess(started.hProcess, &code);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return code;
  }
  // What the stand-in wrote when it began; it ends when the file that it waits for is there.
  std::string Began() const {
    for (int i = 0; i < 600 && !Exists("bin/began.txt"); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return Exists("bin/began.txt") ? Content("bin/began.txt") : "it did not begin";
  }
  bool Ended() const {
    Write("bin/end.txt", "");
    for (int i = 0; i < 600 && !Exists("bin/ended.txt"); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return Exists("bin/ended.txt");
  }
};

TEST_F(EditCommand, StartsTheDesktopBesideItAndDoesNotWait) {
  Install();
  ASSERT_EQ(Edit("--package \"a b.dll\" edit p.xml --options o.xml"), 0u);
  EXPECT_FALSE(Exists("bin/ended.txt"));
  EXPECT_EQ(Began(), "--package\n" + PathOf("a b.dll") + "\n--options\n" + PathOf("o.xml") + "\n" +
                         PathOf("p.xml") + "\n");
  EXPECT_TRUE(Ended());
}

TEST_F(EditCommand, FailsWithoutADesktop) {
  const auto result = test::RunProgram(PathOf("bin\\qxhost.exe"), {"edit"}, folder_.string());
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(Holds(result.err, "qxhost-desktop is not installed: there is no ")) << result.err;
  EXPECT_TRUE(Holds(result.err, "bin\\qxhost-desktop.exe, and none on the PATH")) << result.err;
}

}  // namespace
}  // namespace qx::cli
