#include "host/report/ServiceLog.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace qx {
namespace {

// The log in one system's form.
class Told : public LogSink {
 public:
  Told(std::string_view system, const DiagnosticLog& diagnostics)
      : log_(*FindServiceSystem(system), diagnostics) {}
  void Take(const LogRecord& record) override { log_.Append(text, record); }
  std::string text;

 private:
  ServiceLog log_;
};

std::string Tell(std::string_view system, const std::function<void(ActionLog& log)>& fill) {
  ActionLog log;
  auto& diagnostics = static_cast<DiagnosticLog&>(log.AddSink(std::make_unique<DiagnosticLog>()));
  auto& told = static_cast<Told&>(log.AddSink(std::make_unique<Told>(system, diagnostics)));
  fill(log);
  return told.text;
}

void Fill(ActionLog& log) {
  log.AddBegin(2, "Build", 4);
  log.AddMessage(2, "------ Build started: Project: App, Configuration: Debug ------");
  const InterfacePtr<IQXActionLogMessage> message = CreateLogMessage();
  message->SetHeading("Output");
  message->AppendDetail("plain\na.cpp(1) : error C1: x");
  message->AppendDetail("::b.cpp(2) : warning C2: y");
  log.AddStatus(2, *message);
  log.AddMessage(2, "========== Build: 0 succeeded, 1 failed ==========");
  log.AddException(2, "It broke");
  log.AddResult(2, "Build", false, 1.25);
  log.AddSummary("1 error\n",
                 R"({"kind":"summary","versions":[{"name":"A","to":"1.2"},{"name":"B","to":"3"}]})");
}

TEST(ServiceLog, TellsTeamCityOfBlocksProjectsAndErrors) {
  EXPECT_EQ(Tell("teamcity", Fill),
            "##teamcity[progressMessage '2 of 4: Build']\n"
            "##teamcity[blockOpened name='2. Build']\n"
            "##teamcity[compilationStarted compiler='App']\n"
            "------ Build started: Project: App, Configuration: Debug ------\n"
            "Output\n"
            "    plain\n"
            "##teamcity[message text='    a.cpp(1) : error C1: x' status='ERROR']\n"
            "    ::b.cpp(2) : warning C2: y\n"
            "========== Build: 0 succeeded, 1 failed ==========\n"
            "##teamcity[compilationFinished compiler='App']\n"
            "It broke\n"
            "##teamcity[buildProblem description='It broke']\n"
            "Build: failed (1.3 s)\n"
            "##teamcity[buildProblem description='2. Build failed']\n"
            "##teamcity[blockClosed name='2. Build']\n"
            "1 error\n"
            "##teamcity[progressMessage 'The run has ended']\n"
            "##teamcity[buildNumber '1.2']\n");
}

TEST(ServiceLog, TellsGitHubOfGroupsAndErrors) {
  EXPECT_EQ(Tell("github", Fill),
            "::group::2. Build\n"
            "------ Build started: Project: App, Configuration: Debug ------\n"
            "Output\n"
            "    plain\n"
            "    a.cpp(1) : error C1: x\n"
            "::error file=a.cpp,line=1,title=C1::x\n"
            "    : :b.cpp(2) : warning C2: y\n"
            "========== Build: 0 succeeded, 1 failed ==========\n"
            "It broke\n::error::It broke\n"
            "Build: failed (1.3 s)\n::error::2. Build failed\n::endgroup::\n"
            "1 error\n::notice title=A::1.2\n::notice title=B::3\n");
}

TEST(ServiceLog, TellsAzureOfProgressAndErrors) {
  EXPECT_EQ(Tell("azure", Fill),
            "##vso[task.setprogress value=25;]2 of 4: Build\n##[group]2. Build\n"
            "------ Build started: Project: App, Configuration: Debug ------\n"
            "Output\n"
            "    plain\n"
            "    a.cpp(1) : error C1: x\n"
            "##vso[task.logissue type=error;sourcepath=a.cpp;linenumber=1;code=C1;]x\n"
            "    : :b.cpp(2) : warning C2: y\n"
            "========== Build: 0 succeeded, 1 failed ==========\n"
            "It broke\n##vso[task.logissue type=error;]It broke\n"
            "Build: failed (1.3 s)\n##vso[task.logissue type=error;]2. Build failed\n##[endgroup]\n"
            "1 error\n##vso[task.setprogress value=100;]The run has ended\n"
            "##vso[build.updatebuildnumber]1.2\n");
}

TEST(ServiceLog, TellsOfValidationErrors) {
  const auto fill = [](ActionLog& log) { log.AddValidation(1, "Solution", "is missing"); };
  EXPECT_EQ(Tell("github", fill), "Solution: is missing\n::error::Solution: is missing\n");
}

}  // namespace
}  // namespace qx
