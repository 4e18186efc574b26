#include <gtest/gtest.h>

#include <thread>

#include "host/actions/CommandLineBuilder.h"
#include "host/testing/TestHost.h"

namespace qx {
namespace {

using Lines = std::vector<std::string>;

std::string Built(const std::string& argumentSwitch, const std::string& value, TArgumentOption option) {
  const auto builder = CreateCommandLineBuilder();
  builder->Reset("first");
  const auto argument = builder->AddArgument(argumentSwitch, value, option);
  EXPECT_EQ(argument->GetSwitch(), argumentSwitch);
  EXPECT_EQ(argument->GetValue(), value);
  EXPECT_EQ(argument->GetOption(), option);
  return builder->GetCommandLine();
}

TEST(CommandLineBuilder, JoinsSwitchAndValueByTheOption) {
  EXPECT_EQ(Built("/s", "v", TArgumentOption::aoSwitchOnly), "first /s");
  EXPECT_EQ(Built("/s", "v", TArgumentOption::aoValueOnly), "first v");
  EXPECT_EQ(Built("/s", "v", TArgumentOption::aoSeparate), "first /s v");
  EXPECT_EQ(Built("/s:", "v", TArgumentOption::aoJoined), "first /s:v");
  EXPECT_EQ(Built("/s:", "v", TArgumentOption::aoJoinedIfValue), "first /s:v");
}

TEST(CommandLineBuilder, QuotesValuesThatNeedIt) {
  EXPECT_EQ(Built("/s", "a b", TArgumentOption::aoValueOnly), "first \"a b\"");
  EXPECT_EQ(Built("/s", "a b", TArgumentOption::aoSeparate), "first /s \"a b\"");
  EXPECT_EQ(Built("/s:", "a b", TArgumentOption::aoJoined), "first /s:\"a b\"");
  EXPECT_EQ(Built("/s:", "a b", TArgumentOption::aoJoinedIfValue), "first /s:\"a b\"");
}

TEST(CommandLineBuilder, EmptyValues) {
  EXPECT_EQ(Built("/s", "", TArgumentOption::aoValueOnly), "first \"\"");
  EXPECT_EQ(Built("/s", "", TArgumentOption::aoSeparate), "first /s \"\"");
  EXPECT_EQ(Built("/s:", "", TArgumentOption::aoJoined), "first /s:");
  EXPECT_EQ(Built("/s:", "", TArgumentOption::aoJoinedIfValue), "first");
}

TEST(CommandLineBuilder, ResetStartsAnew) {
  const auto builder = CreateCommandLineBuilder();
  builder->AddArgument("/a", "", TArgumentOption::aoSwitchOnly);
  builder->AddArgument("/b", "", TArgumentOption::aoSwitchOnly);
  EXPECT_EQ(builder->GetCommandLine(), "/a /b");
  builder->Reset("");
  EXPECT_EQ(builder->GetCommandLine(), "");
}

class RunChild : public TQXExecuteAbstractAction {
 public:
  std::string executable = QX_TEST_CHILD;
  std::string folder;
  Lines arguments;
  bool expands = true;
  int success = 0;

 protected:
  std::string GetExecutable() override { return executable; }
  std::string GetStartingDir() override { return folder; }
  bool GetCommandLine(ICommandLineBuilder& builder) override {
    for (const std::string& argument : arguments) {
      builder.AddArgument("", argument, TArgumentOption::aoValueOnly);
    }
    return expands;
  }
  bool InterpretResult(int exitCode) override { return exitCode == success; }
};

const TQXActionClass kRunChild{"RunChild",
                               [] { return std::string("Run child"); },
                               {},
                               []() -> std::unique_ptr<TQXAction> { return std::make_unique<RunChild>(); }};

TEST(ExecuteAction, ForwardsOutputAndJudgesTheExitCode) {
  TestHost host;
  const auto action = host.Make<RunChild>(kRunChild);
  action->arguments = {"out:one\\ntwo words\\n"};
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(host.Lines(), (Lines{"one", "two words"}));
}

TEST(ExecuteAction, ForwardsErrorOutput) {
  TestHost host;
  const auto action = host.Make<RunChild>(kRunChild);
  action->arguments = {"err:oops"};
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(host.Lines(), Lines{"oops"});
}

TEST(ExecuteAction, AnotherExitCodeFailsAndIsTold) {
  TestHost host;
  const auto action = host.Make<RunChild>(kRunChild);
  action->arguments = {"exit:3"};
  EXPECT_FALSE(action->Execute());
  EXPECT_EQ(host.Lines(), Lines{QX_TEST_CHILD " returned Error code : 3"});
  action->success = 3;
  EXPECT_TRUE(action->Execute());
}

TEST(ExecuteAction, RunsNothingWithoutACommandLine) {
  TestHost host;
  const auto action = host.Make<RunChild>(kRunChild);
  action->arguments = {"out:x"};
  action->expands = false;
  EXPECT_FALSE(action->Execute());
  EXPECT_EQ(host.Lines(), Lines());
}

TEST(ExecuteAction, AProgramThatIsNotThereFailsAndIsNamed) {
  TestHost host;
  const auto action = host.Make<RunChild>(kRunChild);
  action->executable = "no-such-program-anywhere";
  EXPECT_FALSE(action->Execute());
  ASSERT_EQ(host.Lines().size(), 1U);
  EXPECT_NE(host.Lines()[0].find("no-such-program-anywhere"), std::string::npos) << host.Lines()[0];
}

TEST(ExecuteAction, TerminatesFromAnotherThread) {
  TestHost host;
  const auto action = host.Make<RunChild>(kRunChild);
  action->arguments = {"sleep:60000"};
  EXPECT_TRUE(action->CanTerminate());
  std::thread stopper([&] { action->TerminateAction(); });
  EXPECT_FALSE(action->Execute());
  stopper.join();
  EXPECT_EQ(host.Lines(), Lines{"Action Terminated by User."});
}

}  // namespace
}  // namespace qx
