// A stop comes about within two seconds wherever the program is, and ends it with the exit code of a stop. What signals
// do to a run besides, and what comes through a pipe: one that is killed at any moment leaves its build project whole.
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <random>
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
  if (!leavesCore({"Deed=tdSleep", "Text=begun"}))
    GTEST_SKIP() << "no cores are written here, by the system's limits or by a sanitizer";
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

using Signals = SignalTest;

TEST_F(Signals, InterruptTerminateAndHangUpStopTheRunAndSave) {
  int runs = 0;
  Project("p.xml", {{"Deed=tdSleep"}, {"Text=never"}});
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const pid_t child = Start({"run", "p.xml"}, "out.txt");
    WaitFor("p.xml.lock", "");
    std::this_thread::sleep_for(Milliseconds(200));
    kill(child, signal);
    kill(child, signal);  // the impatient second time
    EXPECT_EQ(ExitCode(child), 5);
    EXPECT_TRUE(Holds(Content("out.txt"), "Stopped"));
    EXPECT_FALSE(Holds(Content("out.txt"), "never"));
    EXPECT_EQ(Count(), ++runs);
  }
}

TEST_F(Signals, AChildAndItsGrandchildEndWithTheRun) {
  Project("p.xml", {{"Deed=tdRun", "Lines=/bin/sh;-c \"sleep 300 & echo $! > grandchild; wait\""}});
  const pid_t child = Start({"run", "p.xml"}, "out.txt");
  WaitFor("grandchild", "\n");
  const pid_t grandchild = std::stoi(Content("grandchild"));
  kill(child, SIGINT);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(ExitCode(child), 5);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  EXPECT_TRUE(Holds(Content("out.txt"), "Exit code 999")) << Content("out.txt");
  EXPECT_FALSE(Runs(grandchild));
}

TEST_F(Signals, ARunWhoseOutputNobodyReadsStillSaves) {
  Project("p.xml", {{}});
  EXPECT_EQ(ExitCode(Start({"run", "p.xml"}, "closed")), 0);
  EXPECT_EQ(Count(), 1);
}

TEST_F(Signals, ALockOfAKilledRunIsNoLock) {
  Project("p.xml", {{"Deed=tdSleep"}});
  const pid_t child = Start({"run", "p.xml"}, "out.txt");
  WaitFor("p.xml.lock", "");
  std::this_thread::sleep_for(Milliseconds(100));
  kill(child, SIGKILL);
  EXPECT_EQ(ExitCode(child), -SIGKILL);
  EXPECT_EQ(Host({"set", "p.xml", "Deed=tdSucceed"}).code, 0);
}

// Whatever the moment, the file is the one before or the one after, byte for byte.
TEST_F(Signals, KilledAtAnyMomentLeavesTheProjectWhole) {
  constexpr int kKills = 200;
  Project("p.xml", {{"Text=" + std::string(20000, 'x')}});
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 5; ++i) ASSERT_EQ(ExitCode(Start({"run", "p.xml"}, "out.txt")), 0);
  const auto usual =
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin) / 5;
  std::string before = Content("p.xml");
  std::mt19937 random(20060612);
  int finished = 0;
  int killed = 0;
  for (int i = 0; i < kKills; ++i) {
    const int count = Count();
    std::string after = before;
    const std::string was = ">" + std::to_string(count) + "<";
    after.replace(after.find(was), was.size(), ">" + std::to_string(count + 1) + "<");
    const pid_t child = Start({"run", "p.xml"}, "out.txt");
    std::this_thread::sleep_for(
        std::chrono::microseconds(random() % static_cast<unsigned long>(usual.count() * 5 / 4)));
    kill(child, SIGKILL);
    (ExitCode(child) == -SIGKILL ? killed : finished)++;
    const std::string now = Content("p.xml");
    ASSERT_TRUE(now == before || now == after) << "after kill " << i;
    before = now;
  }
  std::printf("%d runs killed, %d had finished, %d counted\n", killed, finished, Count());
  EXPECT_GT(killed, kKills / 4);
  EXPECT_GT(Count(), 5);  // some came as far as saving
  EXPECT_EQ(Host({"run", "p.xml"}).code, 0);
}

TEST_F(Signals, RunsAtOnceLoseNoIncrement) {
  Project("p.xml", {{}});
  std::vector<std::thread> runners;
  std::atomic<int> done{0};
  for (int i = 0; i < 4; ++i) {
    runners.emplace_back([&] {
      for (int round = 0; round < 10; ++round) {
        const int code = Host({"run", "p.xml"}).code;
        EXPECT_TRUE(code == 0 || code == 2) << code;
        if (code == 0) ++done;
      }
    });
  }
  for (std::thread& runner : runners) runner.join();
  EXPECT_GT(done, 0);
  EXPECT_EQ(Count(), done);
}

// Outside Windows an export stands in for the registry.
using RegistrySetting = CliTest;

TEST_F(RegistrySetting, OfAFileThatIsGoneIsNamedAndCanBeMended) {
  Write("r.reg", "REGEDIT4\r\n");
  ASSERT_EQ(Host({"options", "Registry=r.reg"}).code, 0);
  EXPECT_EQ(Host({"options", "Registry=none.reg"}).code, 2);
  std::filesystem::remove(folder_ / "r.reg");
  const auto refused = Host({"actions"});
  EXPECT_EQ(refused.code, 2);
  EXPECT_TRUE(Holds(refused.err, "options.xml: ") && Holds(refused.err, "r.reg")) << refused.err;
  EXPECT_TRUE(Holds(Host({"options"}).err, "warning: "));
  EXPECT_EQ(Host({"options", "Registry="}).code, 0);
  EXPECT_EQ(Host({"actions"}).code, 0);
}

// What a shell sends through a pipe.
using StandardInput = CliTest;

TEST_F(StandardInput, DriveAnswersLineByLineUntilItEnds) {
  Project("p.xml", {{"Text=one"}});
  const std::string host =
      "'" + ProgramFile("qxhost") + "' --package '" + PackageFile("tiny") + "' --options o.xml drive p.xml";
  const auto result = test::RunProgram(
      "/bin/sh", {"-c", "printf 'pages\\r\\n\\ntext Tiny Page.txtText two\\nwrite' | " + host},
      folder_.string());
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "[\"Tiny Page\"]\n{\"ok\":true}\n{\"ok\":true}\n");
  EXPECT_TRUE(Holds(Content("p.xml"), ">two<"));
}

}  // namespace
}  // namespace qx::cli
