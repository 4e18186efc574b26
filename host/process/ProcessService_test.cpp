#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/process/ProcessRehearsal.h"
#include "plugin/Qxprocess.h"

namespace qx {
namespace {

using Lines = std::vector<std::string>;

class Callback final : public AnswersUncounted<IQXProcessCallback> {
 public:
  explicit Callback(bool requiresSync) : requiresSync_(requiresSync) {}
  virtual ~Callback() = default;

  bool RequiresSync() override { return requiresSync_; }
  void OnStdOutData(IQXProcess& process, std::string_view text) override {
    output.emplace_back(text);
    outputProcess = &process;
    outputThread = std::this_thread::get_id();
    if (text == "throw") throw std::runtime_error("from the callback");
  }
  void OnStdErrData(IQXProcess&, std::string_view text) override {
    error.emplace_back(text);
    errorThread = std::this_thread::get_id();
  }

  Lines output;
  Lines error;
  IQXProcess* outputProcess = nullptr;
  std::thread::id outputThread;
  std::thread::id errorThread;

 private:
  bool requiresSync_;
};

InterfacePtr<IQXProcess> TestProcess(const std::string& parameters) {
  InterfacePtr<IQXProcess> process;
  CreateQXProcess(process);
  process->SetExecutable(QX_TEST_CHILD);
  process->SetParameters(parameters);
  process->SetRedirectOutput(true);
  process->SetHideWindow(true);
  return process;
}

TEST(ProcessRehearsal, LeavesOtherThreadsTheirProcessesUnlessTheyJoin) {
  const ProcessRehearsal rehearsal;
  EXPECT_EQ(TestProcess("exit:1")->Execute(), 0);
  std::thread other([] { EXPECT_EQ(TestProcess("exit:2")->Execute(), 2); });
  other.join();
  std::thread helper([&] {
    const ProcessRehearsal::Joined joined(rehearsal);
    EXPECT_EQ(TestProcess("exit:3")->Execute(), 0);
  });
  helper.join();
  ASSERT_EQ(rehearsal.Commands().size(), 2U);
  EXPECT_EQ(rehearsal.Commands()[0].parameters, "exit:1");
  EXPECT_EQ(rehearsal.Commands()[1].parameters, "exit:3");
}

TEST(ProcessService, RunsAndTellsTheCallback) {
  Callback callback(false);
  TEvent stop;
  const InterfacePtr<IQXProcess> process = TestProcess("out:one\\ntwo err:three exit:6");
  process->SetStopEvent(&stop);
  process->SetCallback(&callback);
  EXPECT_EQ(process->Execute(), 6);
  EXPECT_EQ(callback.output, (Lines{"one", "two"}));
  EXPECT_EQ(callback.error, Lines{"three"});
  EXPECT_EQ(callback.outputProcess, process.get());
}

TEST(ProcessService, WithoutSyncTheCallbackComesOnReaderThreads) {
  Callback callback(false);
  const InterfacePtr<IQXProcess> process = TestProcess("out:a err:b");
  process->SetCallback(&callback);
  process->Execute();
  EXPECT_NE(callback.outputThread, std::this_thread::get_id());
  EXPECT_NE(callback.errorThread, std::this_thread::get_id());
  EXPECT_NE(callback.outputThread, callback.errorThread);
}

TEST(ProcessService, WithSyncTheCallbackComesOnTheCallersThread) {
  Callback callback(true);
  const InterfacePtr<IQXProcess> process = TestProcess("out:a\\nb err:c");
  process->SetCallback(&callback);
  process->Execute();
  EXPECT_EQ(callback.outputThread, std::this_thread::get_id());
  EXPECT_EQ(callback.errorThread, std::this_thread::get_id());
  EXPECT_EQ(callback.output, (Lines{"a", "b"}));
}

TEST(ProcessService, WhatTheCallbackThrowsComesOutOfExecute) {
  for (const bool sync : {false, true}) {
    Callback callback(sync);
    const InterfacePtr<IQXProcess> process = TestProcess("out:throw\\nmore\\n sleep:60000");
    process->SetCallback(&callback);
    EXPECT_THROW(process->Execute(), std::runtime_error);
    EXPECT_EQ(callback.output, Lines{"throw"});
  }
}

TEST(ProcessService, StopGivesTheTerminatedExitCode) {
  TEvent stop;
  const InterfacePtr<IQXProcess> process = TestProcess("sleep:60000");
  process->SetStopEvent(&stop);
  std::thread stopper([&] { stop.SetEvent(); });
  EXPECT_EQ(process->Execute(), kTerminatedExitCode);
  stopper.join();
}

TEST(ProcessService, RunsAgainWithWhatItWasTold) {
  const InterfacePtr<IQXProcess> process = TestProcess("exit:1");
  EXPECT_EQ(process->Execute(), 1);
  process->SetParameters("exit:2");
  EXPECT_EQ(process->Execute(), 2);
}

TEST(ProcessService, AnErrorNamesTheProgram) {
  const InterfacePtr<IQXProcess> process = TestProcess("");
  process->SetExecutable("no/such/devenv.com");
  try {
    process->Execute();
    FAIL() << "nothing was raised";
  } catch (const Exception& error) {
    EXPECT_TRUE(error.Message().starts_with("Cannot start \"no/such/devenv.com\": ")) << error.Message();
  }
}

}  // namespace
}  // namespace qx
