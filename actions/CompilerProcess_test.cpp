// What the action asks of a compiler's process, and in which order: a program of its own, whose CreateQXProcess stands
// in for the host's and takes the calls down.
#include <gtest/gtest.h>

#include <chrono>

#include "actions/Qxvsdotnetaction.h"
#include "host/testing/TestFolder.h"
#include "host/testing/TestHost.h"
#include "plugin/Qxprocess.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

using Lines = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

struct Notes {
  Lines calls;
  Clock::time_point released;
  IQXProcessCallback* callback = nullptr;
};
Notes notes;

class NotedProcess final : public Implements<IQXProcess> {
 public:
  ~NotedProcess() override {
    notes.calls.push_back("released");
    notes.released = Clock::now();
  }
  void SetExecutable(const std::string& path) override { notes.calls.push_back("executable " + path); }
  void SetStartingDirectory(const std::string& folder) override { notes.calls.push_back("folder " + folder); }
  void SetParameters(const std::string& parameters) override {
    notes.calls.push_back("parameters " + parameters);
  }
  void SetRedirectOutput(bool redirect) override {
    notes.calls.push_back(redirect ? "redirects output" : "keeps output");
  }
  void SetHideWindow(bool hide) override { notes.calls.push_back(hide ? "hides window" : "shows window"); }
  void SetCallback(IQXProcessCallback* callback) override {
    notes.calls.push_back("callback");
    notes.callback = callback;
  }
  void SetStopEvent(TEvent* event) override {
    notes.calls.push_back(event != nullptr ? "stop event" : "no stop event");
  }
  int Execute() override {
    notes.calls.push_back("executes");
    return 0;
  }
};

class CompilerProcess : public testing::Test {
 protected:
  CompilerProcess() {
    notes = {};
    action->Settings().vstudioVersion = TVSDotNetVersion::vs2003;
  }
  // Builds a solution that nobody looks into.
  bool Build() {
    const std::string solution = folder.Write(
        "App.sln", "Microsoft Visual Studio Solution File, Format Version 8.00\r\nGlobal\r\nEndGlobal\r\n");
    const InterfacePtr<IVSDotNetSolution> opened = OpenSolution(solution);
    return action->BuildAll(*opened, "App.sln", "vs/devenv.com", "Release|Mixed");
  }
  const TestFolder folder;
  TestHost host;
  std::unique_ptr<TQXVSDotNetAction> action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
};

TEST_F(CompilerProcess, IsSetUpInThisOrderAndHasNoWindow) {
  EXPECT_TRUE(Build());
  EXPECT_EQ(notes.calls, (Lines{"executable vs/devenv.com", "parameters /build \"Release|Mixed\" \"App.sln\"",
                                "redirects output", "hides window", "folder ", "stop event", "callback",
                                "executes", "released"}));
  EXPECT_EQ(notes.callback, action.get());
}

TEST_F(CompilerProcess, IsLetGoOfBeforeAPause) {
  EXPECT_TRUE(Build());
  EXPECT_GE(Clock::now() - notes.released, std::chrono::milliseconds(10));
}

// A product that comes later is built as 2005 is.
TEST_F(CompilerProcess, IsToldTheSyntaxOfMSBuildFrom2005On) {
  action->Settings().useMSBuild = true;
  const auto parameters = [&](int version) {
    notes = {};
    action->Settings().vstudioVersion = static_cast<TVSDotNetVersion>(version);
    EXPECT_TRUE(Build());
    return notes.calls.at(1);
  };
  constexpr int k2005 = static_cast<int>(TVSDotNetVersion::vs2005);
  EXPECT_TRUE(parameters(k2005 - 1).starts_with("parameters /build")) << notes.calls.at(1);
  for (const int version : {k2005, k2005 + 1}) {
    EXPECT_NE(parameters(version).find("/p:Configuration="), std::string::npos) << notes.calls.at(1);
  }
}

}  // namespace

void CreateQXProcess(InterfacePtr<IQXProcess>& process) { process = MakeInterface<NotedProcess>(); }

}  // namespace qx
