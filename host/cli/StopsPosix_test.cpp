// A stop comes about within two seconds wherever the program is, and ends it with the exit code of a stop.
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <thread>

#include "host/cli/testdata/SignalFixture.h"
#include "platform/Posix.h"

namespace qx::cli {
namespace {

class Stops : public SignalTest {
 protected:
  void MakeFifo(const std::string& name) const { ASSERT_EQ(mkfifo(PathOf(name).c_str(), 0600), 0); }

  // Starts it, sends the signal once it has had so long, and gives its exit code.
  int CodeAfterSignal(const Words& words, int signal, const std::string& out = "out.txt",
                      Milliseconds after = Milliseconds(400)) const {
    const pid_t child = Start(words, out);
    std::this_thread::sleep_for(after);
    kill(child, signal);
    return CodeWithinTwoSeconds(child);
  }
};

// The system would write everything into it that a run has in memory.
TEST_F(Stops, AProcessWithASecretLeavesNoCore) {
  rlimit limit{};
  getrlimit(RLIMIT_CORE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_CORE, &limit);
  const auto leavesCore = [&](const Words& assignments) {
    std::filesystem::remove(PathOf("p.xml"));
    Project("p.xml", {assignments});
    const std::string out = "out" + std::to_string(assignments.size());
    const pid_t child = Start({"run", "p.xml"}, PathOf(out));
    WaitFor(out, "begun");
    kill(child, SIGSEGV);
    int status = 0;
    waitpid(child, &status, 0);
    return WCOREDUMP(status) != 0;
  };
  if (!leavesCore({"Deed=tdSleep", "Text=begun"})) GTEST_SKIP() << "this system writes no cores";
  EXPECT_FALSE(leavesCore({"Deed=tdSleep", "Text=begun", "Password=open sesame"}));
}

TEST_F(Stops, AReaderThatReadsNoLongerHoldsNothingUp) {
  Project("p.xml", {{"Deed=tdFlood", "Seconds=1000"}});
  MakeFifo("unread");
  for (const int signal : {SIGINT, SIGTERM}) {
    const system::Descriptor reader(open(PathOf("unread").c_str(), O_RDONLY | O_NONBLOCK));
    const int before = Count();
    EXPECT_EQ(CodeAfterSignal({"run", "p.xml", "--log-file", "log.txt"}, signal, "unread"), 5);
    EXPECT_EQ(Count(), before + 1);
    EXPECT_TRUE(Holds(Content("log.txt"), "Tiny Task: failed")) << "the log file has the end";
    EXPECT_FALSE(Exists("p.xml.lock"));
  }
}

TEST_F(Stops, AReaderThatReadsNoLongerDoesNotKeepTheTimeOutFromEndingTheRun) {
  Project("p.xml", {{"Deed=tdFlood", "Seconds=1000"}});
  MakeFifo("unread");
  const system::Descriptor reader(open(PathOf("unread").c_str(), O_RDONLY | O_NONBLOCK));
  EXPECT_EQ(CodeWithinTwoSeconds(Start({"run", "p.xml", "--timeout", "0.3"}, "unread")), 5);
}

TEST_F(Stops, ALogFileThatNobodyReadsDoesNotKeepTheTimeOutFromEndingTheRun) {
  Project("p.xml", {{"Deed=tdSleep"}});
  MakeFifo("log");
  EXPECT_EQ(CodeWithinTwoSeconds(Start({"run", "p.xml", "--log-file", "log", "--timeout", "0.3"}, "out.txt")),
            5);
  EXPECT_EQ(CodeAfterSignal({"run", "p.xml", "--log-file", "log"}, SIGINT), 5);
}

TEST_F(Stops, ANamedPipeThatIsReadIsALogFile) {
  Project("p.xml", {{"Text=through the pipe"}});
  MakeFifo("log");
  std::string read;
  std::thread reader([&] {
    std::ifstream pipe(PathOf("log"));
    read.assign(std::istreambuf_iterator<char>(pipe), {});
  });
  EXPECT_EQ(CodeWithinTwoSeconds(Start({"run", "p.xml", "--log-file", "log"}, "out.txt")), 0);
  reader.join();
  EXPECT_TRUE(Holds(read, "through the pipe")) << read;
}

TEST_F(Stops, AValidationThatHangsIsLeft) {
  Project("p.xml", {{"Verdict=tvHang"}});
  EXPECT_EQ(CodeAfterSignal({"run", "p.xml"}, SIGINT), 5);
  EXPECT_EQ(CodeAfterSignal({"validate", "p.xml"}, SIGTERM), 5);
  EXPECT_EQ(CodeWithinTwoSeconds(Start({"run", "p.xml", "--timeout", "0.1"}, "out.txt")), 5);
  EXPECT_EQ(Count(), 0);
}

TEST_F(Stops, AnActionThatDoesNotHearIsLeftWithAWord) {
  Project("p.xml", {{"Deed=tdDeaf", "Text=deaf"}});
  EXPECT_EQ(CodeAfterSignal({"run", "p.xml", "--log-file", "log.txt"}, SIGINT), 5);
  EXPECT_TRUE(Holds(Content("log.txt"), "deaf"));
  EXPECT_EQ(Host({"set", "p.xml", "Deed=tdSucceed"}).code, 0) << "the lock went with it";
}

TEST_F(Stops, AKilledHostTakesItsTreeAlong) {
  const std::string pulse = PathOf("pulse");
  Project("p.xml", {{"Deed=tdRun",
                     std::string("Lines=") + QX_TEST_CHILD +
                         ";ignore-requests new-session no-environment spawn:5 new-session spawn:1 beat:" +
                         pulse + " exit:0 exit:0 sleep:60000"}});
  const pid_t child = Start({"run", "p.xml"}, "out.txt");
  WaitFor("pulse", "....");
  kill(child, SIGKILL);
  EXPECT_EQ(ExitCode(child), -SIGKILL);
  std::this_thread::sleep_for(Milliseconds(500));
  const std::string before = Content("pulse");
  EXPECT_FALSE(before.empty());
  std::this_thread::sleep_for(Milliseconds(200));
  EXPECT_EQ(Content("pulse"), before);
}

TEST_F(Stops, AScriptIsLeftWhateverItDoes) {
  for (const char* text :
       {"while true do os.execute('sleep 1') end", "while true do end",
        "while true do pcall(function() while true do end end) end", "io.popen('sleep 60'):read()"}) {
    for (const int signal : {SIGINT, SIGTERM})
      EXPECT_EQ(CodeAfterSignal({"script", "-e", text}, signal), 5) << text;
  }
}

TEST_F(Stops, WhatAScriptStartedEndsWithIt) {
  for (const char* call : {"os.execute", "io.popen"}) {
    for (const int signal : {SIGINT, SIGKILL}) {
      std::filesystem::remove(folder_ / "pulse");
      const std::string text =
          std::string(call) +
          "('trap \"\" INT TERM; (while :; do echo x >> pulse; sleep 0.02; done) & wait')";
      const pid_t child = Start({"script", "-e", "local p = " + text + " p:read()"}, "out.txt");
      WaitFor("pulse", "x\nx");
      kill(child, signal);
      EXPECT_EQ(CodeWithinTwoSeconds(child), signal == SIGKILL ? -SIGKILL : 5);
      std::this_thread::sleep_for(Milliseconds(300));
      const std::string before = Content("pulse");
      std::this_thread::sleep_for(Milliseconds(200));
      EXPECT_EQ(Content("pulse"), before) << text;
    }
  }
}

TEST_F(Stops, AScriptLearnsHowItsProgramsEnded) {
  const auto result = Host({"script", "-e",
                            "print(io.popen('exit 4'):close()) print(os.execute('exit 3')) "
                            "print(os.execute('kill -9 $$'))"});
  EXPECT_EQ(result.out, "nil\texit\t4\nnil\texit\t3\nnil\tsignal\t9\n");
}

}  // namespace
}  // namespace qx::cli
