// What signals do to a run, and what comes through a pipe: Ctrl-C and the end of the session stop it politely, and one that is killed at any
// moment leaves its build project whole.
#include <random>
#include <thread>

#include "host/cli/testdata/SignalFixture.h"

namespace qx::cli {
namespace {

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
