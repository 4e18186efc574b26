#include "host/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>

#include "platform/CommandLine.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

// The tests' own child, with its orders (TestChild.cpp).
ChildProcess Child(const Lines& orders) {
  ChildProcess child;
  child.executable = QX_TEST_CHILD;
  for (const std::string& order : orders)
    child.parameters.append(child.parameters.empty() ? "" : " ").append(QuoteArgument(order));
  return child;
}

struct Result {
  int exitCode = -1;
  Lines output;
  Lines error;
  milliseconds time{};
};

Result RunAndCollect(ChildProcess child) {
  Result result;
  child.onOutput = [&](std::string_view line) { result.output.emplace_back(line); };
  child.onError = [&](std::string_view line) { result.error.emplace_back(line); };
  const Clock::time_point start = Clock::now();
  result.exitCode = child.Run();
  result.time = std::chrono::duration_cast<milliseconds>(Clock::now() - start);
  return result;
}

std::string ErrorOf(const ChildProcess& child) {
  try {
    child.Run();
  } catch (const Exception& error) {
    return error.Message();
  }
  return "(none)";
}

// A file in which a process of the tree shows that it lives.
class Pulse {
 public:
  explicit Pulse(const std::string& name)
      : path_(fs::temp_directory_path() / (name + std::to_string(Clock::now().time_since_epoch().count()))) {}
  ~Pulse() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  std::string Order() const { return "beat:" + path_.string(); }
  std::uintmax_t Size() const {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path_, error);
    return error ? 0 : size;
  }
  void AwaitFirst() const {
    while (Size() == 0) std::this_thread::sleep_for(milliseconds(5));
  }
  bool HasStopped() const {
    const std::uintmax_t before = Size();
    std::this_thread::sleep_for(milliseconds(150));
    return Size() == before;
  }

 private:
  fs::path path_;
};

// Runs the child, signals stop once all pulses beat, and returns what came of it; the time counts from the signal.
Result RunAndStop(ChildProcess child, const std::vector<const Pulse*>& pulses) {
  TEvent stop;
  child.stop = &stop;
  Clock::time_point signalled;
  std::thread stopper([&] {
    for (const Pulse* pulse : pulses) pulse->AwaitFirst();
    signalled = Clock::now();
    stop.SetEvent();
  });
  Result result = RunAndCollect(child);
  const Clock::time_point end = Clock::now();
  stopper.join();
  result.time = std::chrono::duration_cast<milliseconds>(end - signalled);
  EXPECT_FALSE(stop.WaitFor(0)) << "the signal was not consumed";
  return result;
}

// ---- output ----

TEST(ChildProcess, DeliversBothStreamsByLine) {
  const Result result = RunAndCollect(Child({"out:one\\r\\n\\ntwo\\n", "err:three\\n"}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.output, (Lines{"one", "", "two"}));
  EXPECT_EQ(result.error, Lines{"three"});
}

TEST(ChildProcess, DeliversALastLineWithoutEnd) {
  const Result result = RunAndCollect(Child({"out:a\\nb", "err:c\\r"}));
  EXPECT_EQ(result.output, (Lines{"a", "b"}));
  EXPECT_EQ(result.error, Lines{"c\r"});
}

TEST(ChildProcess, ALineEndBrokenOverTwoWritesIsOne) {
  const Result result = RunAndCollect(Child({"out:a\\r", "sleep:60", "out:\\nb\\r", "sleep:60", "out:c\\n"}));
  EXPECT_EQ(result.output, (Lines{"a", "b\rc"}));
}

TEST(ChildProcess, BytesOfAnyKindPass) {
  const Result result = RunAndCollect(Child({"out:\\xff\\xfe\\xc3\\n\\x00z\\n\\xc3\\xa4"}));
  EXPECT_EQ(result.output, (Lines{"\xff\xfe\xc3", std::string("\0z", 2), "\xc3\xa4"}));
}

TEST(ChildProcess, AHundredMegabytesOnBothStreamsAtOnceDoNotBlock) {
  constexpr std::size_t kBytes = 100 << 20;
  ChildProcess child = Child({"flood:" + std::to_string(kBytes)});
  std::size_t output = 0;
  std::size_t error = 0;
  std::size_t odd = 0;
  child.onOutput = [&](std::string_view line) { output += line.size() + 1, odd += line.size() != 63; };
  child.onError = [&](std::string_view line) { error += line.size() + 1; };
  EXPECT_EQ(child.Run(), 0);
  EXPECT_EQ(output, kBytes);
  EXPECT_EQ(error, kBytes);
  EXPECT_EQ(odd, 0u);
}

TEST(ChildProcess, DrainsAStreamThatNobodyWants) { EXPECT_EQ(Child({"flood:1000000", "exit:4"}).Run(), 4); }

TEST(ChildProcess, WaitsForWhatAGrandchildWritesAfterTheChildsExit) {
  const Result result = RunAndCollect(Child({"spawn:2", "sleep:400", "out:late", "out:early\\n", "exit:5"}));
  EXPECT_EQ(result.exitCode, 5);
  EXPECT_EQ(result.output, (Lines{"early", "late"}));
}

TEST(ChildProcess, TellsWhenAllThatCameWasHandedOut) {
  ChildProcess child = Child({"out:a\\n", "sleep:300", "out:b\\n"});
  Lines seen;
  std::mutex mutex;
  const auto note = [&](std::string_view what) {
    const std::lock_guard lock(mutex);
    if (what != "idle" || (!seen.empty() && seen.back() != "idle")) seen.emplace_back(what);
  };
  child.onOutput = note;
  child.onIdle = [&] { note("idle"); };
  child.Run();
  EXPECT_EQ(seen, (Lines{"a", "idle", "b", "idle"}));
}

// ---- threads ----

TEST(ChildProcess, OnReaderThreadsEachStreamHasItsOwn) {
  ChildProcess child = Child({"out:a\\nb\\n", "err:c\\nd\\n"});
  std::set<std::thread::id> output;
  std::set<std::thread::id> error;
  child.onOutput = [&](std::string_view) { output.insert(std::this_thread::get_id()); };
  child.onError = [&](std::string_view) { error.insert(std::this_thread::get_id()); };
  child.Run();
  ASSERT_EQ(output.size(), 1u);
  ASSERT_EQ(error.size(), 1u);
  EXPECT_NE(*output.begin(), *error.begin());
  EXPECT_NE(*output.begin(), std::this_thread::get_id());
}

TEST(ChildProcess, OnTheCallingThreadAllLinesComeThere) {
  ChildProcess child = Child({"flood:3000000", "out:last"});
  child.delivery = Delivery::CallingThread;
  std::map<std::thread::id, std::size_t> bytes;
  std::string last;
  child.onOutput = [&](std::string_view line) {
    bytes[std::this_thread::get_id()] += line.size() + 1;
    last = line;
  };
  child.onError = [&](std::string_view line) { bytes[std::this_thread::get_id()] += line.size() + 1; };
  EXPECT_EQ(child.Run(), 0);
  const std::size_t flood = (3000000 + 32767) / 32768 * 32768;
  EXPECT_EQ(bytes, (std::map<std::thread::id, std::size_t>{{std::this_thread::get_id(), 2 * flood + 5}}));
  EXPECT_EQ(last, "last");
}

TEST(ChildProcess, OnTheCallingThreadASlowReceiverHoldsUpTheChild) {
  const Pulse pulse("qx-slow-");
  ChildProcess child = Child({"spawn:2", "flood:4000000", pulse.Order()});
  child.delivery = Delivery::CallingThread;
  TEvent stop;
  child.stop = &stop;
  std::uintmax_t beats = 1;
  child.onOutput = [&, first = true](std::string_view) mutable {
    if (!std::exchange(first, false)) return;
    std::this_thread::sleep_for(milliseconds(600));
    beats = pulse.Size();
    stop.SetEvent();
  };
  EXPECT_EQ(child.Run(), kTerminatedExitCode);
  EXPECT_EQ(beats, 0u) << "four megabytes went somewhere";
}

TEST(ChildProcess, SeveralRunAtTheSameTime) {
  std::array<Result, 4> results;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < results.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::string number = std::to_string(i);
      results[i] = RunAndCollect(Child({"flood:2000000", "out:" + number, "exit:" + number}));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_EQ(results[i].exitCode, static_cast<int>(i));
    EXPECT_EQ(results[i].output.back(), std::to_string(i));
    EXPECT_EQ(results[i].error.size(), results[i].output.size() - 1);
  }
}

TEST(ChildProcess, WhatASinkThrowsEndsTheTreeAndComesOutOfRun) {
  for (const Delivery delivery : {Delivery::ReaderThreads, Delivery::CallingThread}) {
    const Pulse pulse("qx-throw-");
    ChildProcess child =
        Child({"spawn:1", pulse.Order(), "sleep:200", "out:now\\n", "flood:1000000", "sleep:60000"});
    child.delivery = delivery;
    child.onOutput = [](std::string_view line) { throw std::out_of_range("at " + std::string(line)); };
    const Clock::time_point start = Clock::now();
    try {
      child.Run();
      FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "at now");
    }
    EXPECT_LT(Clock::now() - start, milliseconds(10000));
    EXPECT_TRUE(pulse.HasStopped());
  }
}

// ---- what the child is given ----

TEST(ChildProcess, ArgumentsArriveAsWritten) {
  ChildProcess child = Child({"args"});
  child.parameters +=
      R"( "C:\src\App.sln" /t:Build /p:Configuration="Release";Platform="Any CPU";OutputPath="bin\Release" "" $HOME * 'a b')";
  EXPECT_EQ(RunAndCollect(child).output,
            (Lines{R"([C:\src\App.sln])", "[/t:Build]",
                   R"([/p:Configuration=Release;Platform=Any CPU;OutputPath=bin\Release])", "[]", "[$HOME]",
                   "[*]", "['a]", "[b']"}));
}

TEST(ChildProcess, StartsInItsFolder) {
  const fs::path folder = fs::canonical(fs::temp_directory_path());
  ChildProcess child = Child({"cwd"});
  child.directory = (folder / "").string();
  const Result result = RunAndCollect(child);
  ASSERT_EQ(result.output.size(), 1u);
  EXPECT_TRUE(fs::equivalent(result.output.front(), folder)) << result.output.front();
}

TEST(ChildProcess, GetsTheEnvironment) {
  EXPECT_EQ(RunAndCollect(Child({"env:PATH", "env:QX_SURELY_UNSET"})).output,
            (Lines{std::getenv("PATH"), "(unset)"}));
}

TEST(ChildProcess, StandardInputIsEmpty) { EXPECT_EQ(RunAndCollect(Child({"stdin"})).output, Lines{"0"}); }

TEST(ChildProcess, GetsNoOtherDescriptors) {
  // Others run at the same time, whose pipes must not end up in this child.
  std::atomic<bool> over = false;
  std::thread other([&] {
    while (!over) Child({"out:x"}).Run();
  });
  for (int i = 0; i < 10; ++i) EXPECT_EQ(RunAndCollect(Child({"descriptors"})).output, Lines{"0"});
  over = true;
  other.join();
}

// ---- the end ----

TEST(ChildProcess, ExitCodesPass) {
  for (const int code : {0, 1, 2, 127, 128, 200, 255}) {
    EXPECT_EQ(Child({"exit:" + std::to_string(code)}).Run(), code);
  }
}

TEST(ChildProcess, StopEndsTheWholeTree) {
  const Pulse parent("qx-parent-");
  const Pulse grandchild("qx-grandchild-");
  const Result result =
      RunAndStop(Child({"out:hello", "spawn:1", grandchild.Order(), parent.Order()}), {&parent, &grandchild});
  EXPECT_EQ(result.exitCode, kTerminatedExitCode);
  EXPECT_LT(result.time, milliseconds(2000));
  EXPECT_TRUE(parent.HasStopped());
  EXPECT_TRUE(grandchild.HasStopped());
  EXPECT_EQ(result.output, Lines{"hello"}) << "what was written before the end is delivered";
}

TEST(ChildProcess, StopAsksPolitelyFirst) {
  const Pulse pulse("qx-polite-");
  const Result result = RunAndStop(
      Child({"spawn:2", "sleep:500", pulse.Order(), "out:hello\\n", "await-request:good bye", "exit:0"}),
      {&pulse});
  EXPECT_EQ(result.exitCode, kTerminatedExitCode);
  EXPECT_LT(result.time, milliseconds(2000));
  if (result.output == Lines{"hello", "cannot be asked"})
    GTEST_SKIP() << "no desktop here to make a window on";
  EXPECT_EQ(result.output, (Lines{"hello", "good bye"}));
  EXPECT_TRUE(pulse.HasStopped());
}

TEST(ChildProcess, StopEndsThoseWhoDoNotListen) {
  const Pulse parent("qx-parent-");
  const Pulse grandchild("qx-grandchild-");
  const Result result =
      RunAndStop(Child({"ignore-requests", "spawn:2", "ignore-requests", grandchild.Order(), parent.Order()}),
                 {&parent, &grandchild});
  EXPECT_EQ(result.exitCode, kTerminatedExitCode);
  EXPECT_LT(result.time, milliseconds(2000));
  EXPECT_TRUE(parent.HasStopped());
  EXPECT_TRUE(grandchild.HasStopped());
}

TEST(ChildProcess, StopEndsAGrandchildInASessionOfItsOwn) {
  const Pulse parent("qx-parent-");
  const Pulse grandchild("qx-grandchild-");
  const Result result = RunAndStop(Child({"spawn:2", "new-session", grandchild.Order(), parent.Order()}),
                                   {&parent, &grandchild});
  EXPECT_EQ(result.exitCode, kTerminatedExitCode);
  EXPECT_LT(result.time, milliseconds(2000));
  EXPECT_TRUE(parent.HasStopped());
  EXPECT_TRUE(grandchild.HasStopped());
}

TEST(ChildProcess, StopEndsADaemonWhoseParentsAreGone) {
  const Pulse daemon("qx-daemon-");
  const Result result =
      RunAndStop(Child({"spawn:4", "new-session", "spawn:1", daemon.Order(), "exit:0"}), {&daemon});
  EXPECT_EQ(result.exitCode, kTerminatedExitCode);
  EXPECT_LT(result.time, milliseconds(2000));
  EXPECT_TRUE(daemon.HasStopped());
}

TEST(ChildProcess, StopEndsATreeThatWritesAllTheTime) {
  for (const Delivery delivery : {Delivery::ReaderThreads, Delivery::CallingThread}) {
    const Pulse pulse("qx-writer-");
    ChildProcess child = Child({"ignore-requests", "spawn:1", pulse.Order(), "flood:100000000000"});
    child.delivery = delivery;
    const Result result = RunAndStop(child, {&pulse});
    EXPECT_EQ(result.exitCode, kTerminatedExitCode);
    EXPECT_LT(result.time, milliseconds(3000));
    EXPECT_TRUE(pulse.HasStopped());
  }
}

TEST(ChildProcess, IfStopIsSignalledBeforehandNothingIsStarted) {
  const Pulse pulse("qx-never-");
  TEvent stop;
  stop.SetEvent();
  ChildProcess child = Child({pulse.Order()});
  child.stop = &stop;
  EXPECT_EQ(child.Run(), kTerminatedExitCode);
  EXPECT_EQ(pulse.Size(), 0u);
  EXPECT_FALSE(stop.WaitFor(0)) << "the signal was not consumed";
  stop.SetEvent();
  child.executable = "no/such/program";
  EXPECT_EQ(child.Run(), kTerminatedExitCode) << "not even looked for";
}

TEST(ChildProcess, ARunThatEndsByItselfLeavesTheStopEventAlone) {
  TEvent stop;
  ChildProcess child = Child({"exit:3"});
  child.stop = &stop;
  EXPECT_EQ(child.Run(), 3);
  stop.SetEvent();
  EXPECT_EQ(child.Run(), kTerminatedExitCode);
  EXPECT_EQ(child.Run(), 3);
}

TEST(ChildProcess, StoppingOneLeavesTheOtherAlone) {
  const Pulse pulse("qx-one-");
  Result other;
  std::thread thread([&] { other = RunAndCollect(Child({"sleep:800", "out:done", "exit:7"})); });
  EXPECT_EQ(RunAndStop(Child({pulse.Order()}), {&pulse}).exitCode, kTerminatedExitCode);
  thread.join();
  EXPECT_EQ(other.exitCode, 7);
  EXPECT_EQ(other.output, Lines{"done"});
}

// ---- what cannot be started ----

TEST(ChildProcess, AMissingProgramIsNamed) {
  ChildProcess child;
  child.executable = "no/such/folder/devenv.com";
  EXPECT_TRUE(ErrorOf(child).starts_with("Cannot start \"no/such/folder/devenv.com\": ")) << ErrorOf(child);
  child.executable = "qx_no_such_program";
  EXPECT_TRUE(ErrorOf(child).starts_with("Cannot start \"qx_no_such_program\": ")) << ErrorOf(child);
  child.executable = "";
  EXPECT_TRUE(ErrorOf(child).starts_with("Cannot start \"\": ")) << ErrorOf(child);
}

TEST(ChildProcess, AFolderIsNoProgram) {
  ChildProcess child;
  child.executable = fs::temp_directory_path().string();
  EXPECT_TRUE(ErrorOf(child).starts_with("Cannot start \"" + child.executable + "\": ")) << ErrorOf(child);
}

TEST(ChildProcess, AMissingStartingFolderIsNamed) {
  ChildProcess child = Child({"exit:0"});
  child.directory = "no/such/folder";
  EXPECT_TRUE(
      ErrorOf(child).starts_with("Cannot start \"" QX_TEST_CHILD "\" in the folder \"no/such/folder\": "))
      << ErrorOf(child);
}

TEST(ChildProcess, AFileIsNoStartingFolder) {
  ChildProcess child = Child({"exit:0"});
  child.directory = QX_TEST_CHILD;
  EXPECT_TRUE(
      ErrorOf(child).starts_with("Cannot start \"" QX_TEST_CHILD "\" in the folder \"" QX_TEST_CHILD "\": "))
      << ErrorOf(child);
}

TEST(ChildProcess, AZeroByteIsRefusedRatherThanCutOff) {
  ChildProcess child = Child({"exit:0"});
  child.parameters += std::string(1, '\0') + "more";
  EXPECT_EQ(ErrorOf(child), "Cannot start \"" QX_TEST_CHILD "\": a zero byte in its command line");
}

}  // namespace
}  // namespace qx
