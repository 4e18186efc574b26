// What only holds outside Windows, or can only be seen there.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "host/process/ChildProcess.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

Lines OutputOf(ChildProcess child) {
  Lines lines;
  child.onOutput = [&](std::string_view line) { lines.emplace_back(line); };
  child.Run();
  return lines;
}

std::string ErrorOf(const ChildProcess& child) {
  try {
    child.Run();
  } catch (const Exception& error) {
    return error.Message();
  }
  return "(none)";
}

class ChildProcessPosix : public testing::Test {
 protected:
  ChildProcessPosix() {
    char name[] = "/tmp/qx-child-XXXXXX";
    folder_ = mkdtemp(name);
    child_.executable = QX_TEST_CHILD;
  }
  ~ChildProcessPosix() override { fs::remove_all(folder_); }
  std::string Write(const std::string& name, const std::string& text, mode_t mode) {
    const std::string path = folder_ + "/" + name;
    std::ofstream(path) << text;
    chmod(path.c_str(), mode);
    return path;
  }

  std::string folder_;
  ChildProcess child_;
};

TEST_F(ChildProcessPosix, ExitBySignalIsOneHundredTwentyEightAndTheSignal) {
  child_.parameters = "signal:15";
  EXPECT_EQ(child_.Run(), 128 + SIGTERM);
  child_.parameters = "signal:9";
  EXPECT_EQ(child_.Run(), 128 + SIGKILL);
}

TEST_F(ChildProcessPosix, EveryExitCodePasses) {
  for (int code = 0; code < 256; ++code) {
    child_.parameters = "exit:" + std::to_string(code);
    ASSERT_EQ(child_.Run(), code);
  }
}

TEST_F(ChildProcessPosix, ErrorsTellTheReason) {
  child_.executable = folder_ + "/missing.com";
  EXPECT_EQ(ErrorOf(child_), "Cannot start \"" + child_.executable + "\": No such file or directory");
  child_.executable = folder_;
  EXPECT_EQ(ErrorOf(child_), "Cannot start \"" + folder_ + "\": Is a directory");
  child_.executable = Write("plain", "text", 0644);
  EXPECT_EQ(ErrorOf(child_), "Cannot start \"" + child_.executable + "\": Permission denied");
  child_.executable = QX_TEST_CHILD;
  child_.directory = folder_ + "/plain";
  EXPECT_EQ(ErrorOf(child_),
            "Cannot start \"" QX_TEST_CHILD "\" in the folder \"" + child_.directory + "\": Not a directory");
}

TEST_F(ChildProcessPosix, NothingIsRunThroughAShell) {
  child_.executable = Write("commands", "echo from a shell\n", 0755);
  EXPECT_EQ(ErrorOf(child_), "Cannot start \"" + child_.executable + "\": Exec format error");
}

TEST_F(ChildProcessPosix, AForbiddenStartingFolderIsNamed) {
  const std::string closed = folder_ + "/closed";
  mkdir(closed.c_str(), 0);
  chmod(folder_.c_str(), 0755);
  child_.directory = closed;
  const bool isRoot = geteuid() == 0;  // whom nothing is forbidden
  ASSERT_EQ(seteuid(isRoot ? 65534 : geteuid()), 0);
  const std::string error = ErrorOf(child_);
  ASSERT_EQ(seteuid(isRoot ? 0 : geteuid()), 0);
  EXPECT_EQ(error, "Cannot start \"" QX_TEST_CHILD "\" in the folder \"" + closed + "\": Permission denied");
}

TEST_F(ChildProcessPosix, FindsAFileByItsWindowsName) {
  fs::create_directories(folder_ + "/Common7/IDE");
  fs::create_symlink(QX_TEST_CHILD, folder_ + "/Common7/IDE/devenv.com");
  child_.executable = folder_ + "\\common7\\ide\\DevEnv.COM";
  child_.directory = folder_ + "\\COMMON7\\";
  child_.parameters = "cwd";
  EXPECT_EQ(OutputOf(child_), Lines{fs::canonical(folder_).string() + "/Common7"});
}

TEST_F(ChildProcessPosix, ARelativePathCountsFromTheHostsFolder) {
  const fs::path before = fs::current_path();
  fs::create_symlink(QX_TEST_CHILD, folder_ + "/tool");
  fs::current_path(folder_);
  child_.executable = "./tool";
  child_.directory = "/";
  child_.parameters = "cwd";
  const Lines output = OutputOf(child_);
  fs::current_path(before);
  EXPECT_EQ(output, Lines{"/"});
}

TEST_F(ChildProcessPosix, ABareNameIsLookedUpAlongThePath) {
  child_.executable = "env";
  EXPECT_FALSE(OutputOf(child_).empty());
}

TEST_F(ChildProcessPosix, LeavesNoDescriptorBehind) {
  child_.parameters = "out:x err:y";
  child_.Run();
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 20; ++i) {
    child_.executable = i % 4 == 3 ? folder_ + "/missing" : QX_TEST_CHILD;
    if (i % 4 == 3) {
      ErrorOf(child_);
    } else {
      child_.Run();
    }
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

// A build of a thousand actions has an event for each.
TEST_F(ChildProcessPosix, EventsHoldNoDescriptorsWhileNobodyWaits) {
  const std::size_t before = OpenDescriptors();
  std::vector<TEvent> events(5000);
  for (TEvent& event : events) event.SetEvent();
  child_.stop = &events.front();
  EXPECT_EQ(child_.Run(), kTerminatedExitCode) << "signalled beforehand";
  child_.parameters = "exit:3";
  EXPECT_EQ(child_.Run(), 3);
  EXPECT_EQ(OpenDescriptors(), before);
  EXPECT_TRUE(events.back().WaitFor(0));
}

TEST_F(ChildProcessPosix, LeavesNoZombieBehind) {
  child_.parameters = "exit:0";
  child_.Run();
  TEvent stop;
  child_.parameters = "sleep:60000";
  child_.stop = &stop;
  std::thread stopper([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    stop.SetEvent();
  });
  EXPECT_EQ(child_.Run(), kTerminatedExitCode);
  stopper.join();
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(ChildProcessPosix, WorksWithoutStandardStreamsOfItsOwn) {
  int saved[3];
  for (int i = 0; i < 3; ++i) saved[i] = dup(i);
  for (int i = 0; i < 3; ++i) close(i);
  child_.parameters = "out:one err:two stdin";
  Lines output;
  Lines error;
  child_.onOutput = [&](std::string_view line) { output.emplace_back(line); };
  child_.onError = [&](std::string_view line) { error.emplace_back(line); };
  const int code = child_.Run();
  for (int i = 0; i < 3; ++i) {
    dup2(saved[i], i);
    close(saved[i]);
  }
  EXPECT_EQ(code, 0);
  EXPECT_EQ(output, Lines{"one0"});
  EXPECT_EQ(error, Lines{"two"});
}

TEST_F(ChildProcessPosix, SignalsArriveInTheChildAsEver) {
  // The host blocks one and ignores another; neither may reach the child.
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto handler = signal(SIGINT, SIG_IGN);
  child_.parameters = "signal:15";
  const int byTerm = child_.Run();
  child_.parameters = "signal:2";
  const int byInt = child_.Run();
  signal(SIGINT, handler);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(byTerm, 128 + SIGTERM);
  EXPECT_EQ(byInt, 128 + SIGINT);
}

// Whatever a process leaves behind (its parents, its session, its environment, its ears), it stays in the tree.
TEST_F(ChildProcessPosix, NothingEscapesAStop) {
  const std::string pulse = folder_ + "/pulse";
  const auto size = [&] { return fs::exists(pulse) ? fs::file_size(pulse) : 0; };
  const std::string beat = "spawn:1 beat:" + pulse + " exit:0";
  for (const std::string& orders : std::vector<std::string>{
           "no-environment spawn:3 " + beat + " sleep:60000",
           "new-session no-environment spawn:5 new-session " + beat + " exit:0 sleep:60000",
           "ignore-requests new-session no-environment spawn:9 new-session spawn:6 ignore-requests "
           "new-session " +
               beat + " exit:0 exit:0 sleep:60000"}) {
    fs::remove(pulse);
    TEvent stop;
    child_.stop = &stop;
    child_.parameters = orders;
    std::chrono::steady_clock::time_point signalled;
    std::thread stopper([&] {
      for (int i = 0; i < 1000 && size() == 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
      signalled = std::chrono::steady_clock::now();
      stop.SetEvent();
    });
    EXPECT_EQ(child_.Run(), kTerminatedExitCode);
    stopper.join();
    EXPECT_LT(std::chrono::steady_clock::now() - signalled, std::chrono::milliseconds(2000));
    const auto before = size();
    EXPECT_GT(before, 0u) << orders;
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    EXPECT_EQ(size(), before) << orders;
  }
}

// Processes that each begin the next one and end, faster than anybody looks.
TEST_F(ChildProcessPosix, AChainOfForksEndsToo) {
  const std::string pulse = folder_ + "/pulse";
  child_.executable = "/bin/sh";
  child_.parameters = "-c \"f() { echo >> " + pulse + "; (f &) ; }; trap '' TERM; f; sleep 60\"";
  TEvent stop;
  child_.stop = &stop;
  std::thread stopper([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    stop.SetEvent();
  });
  EXPECT_EQ(child_.Run(), kTerminatedExitCode);
  stopper.join();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const auto before = fs::file_size(pulse);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(fs::file_size(pulse), before);
}

TEST_F(ChildProcessPosix, AChildThatKillsItsKeeperEndsWithEverythingItStarted) {
  const std::string pulse = folder_ + "/pulse";
  child_.parameters =
      "no-environment spawn:3 new-session spawn:1 beat:" + pulse + " sleep:300 kill-parent sleep:60000";
  EXPECT_EQ(ErrorOf(child_),
            "The exit code of \"" QX_TEST_CHILD "\" is lost: the process that kept it was killed");
  const auto before = fs::file_size(pulse);
  EXPECT_GT(before, 0u);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_EQ(fs::file_size(pulse), before);
}

// What outlives a child that ended by itself may live on, and is nobody's of ours.
TEST_F(ChildProcessPosix, ADaemonLivesOnWhenItsParentsEnded) {
  const std::string pulse = folder_ + "/pulse";
  child_.executable = "/bin/sh";
  child_.parameters =
      "-c \"setsid sh -c 'echo $$ > " + pulse + "; exec sleep 30' > /dev/null 2>&1 & sleep 0.3\"";
  EXPECT_EQ(child_.Run(), 0);
  pid_t daemon = 0;
  std::ifstream(pulse) >> daemon;
  ASSERT_GT(daemon, 1);
  EXPECT_EQ(kill(daemon, SIGKILL), 0) << "it runs";
}

// A daemon without parents, session and environment does not hold up the stop, and what it wrote before arrives
// without additions.
TEST_F(ChildProcessPosix, AStreamHeldByADaemonDoesNotHoldUpTheStop) {
  TEvent stop;
  child_.stop = &stop;
  child_.parameters =
      "new-session no-environment spawn:4 new-session spawn:2 out:left sleep:4000 exit:0 sleep:100 exit:0";
  Lines output;
  child_.onOutput = [&](std::string_view line) { output.emplace_back(line); };
  std::chrono::steady_clock::time_point signalled;
  std::thread stopper([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    signalled = std::chrono::steady_clock::now();
    stop.SetEvent();
  });
  EXPECT_EQ(child_.Run(), kTerminatedExitCode);
  EXPECT_LT(std::chrono::steady_clock::now() - signalled, std::chrono::milliseconds(2000));
  stopper.join();
  EXPECT_EQ(output, Lines{"left"});
}

}  // namespace
}  // namespace qx
