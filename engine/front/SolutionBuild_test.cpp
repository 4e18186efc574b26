#include "engine/front/SolutionBuild.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

#include "host/testing/TestFolder.h"
#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Names = std::vector<std::string>;
using Status = BuiltProject::Status;

struct ProjectText {
  std::string name, file;
  Names needs;
  bool isBuilt = true;
};

std::string SolutionText(const std::string& format, const std::vector<ProjectText>& projects) {
  std::string blocks, mappings;
  for (const ProjectText& project : projects) {
    const std::string guid = "{0000000" + project.name + "-0000-0000-0000-000000000000}";
    blocks += "Project(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = \"" + project.name + "\", \"" +
              project.file + "\", \"" + guid +
              "\"\r\n\tProjectSection(ProjectDependencies) = postProject\r\n";
    for (const std::string& need : project.needs) {
      const std::string other = "{0000000" + need + "-0000-0000-0000-000000000000}";
      blocks += "\t\t" + other + " = " + other + "\r\n";
    }
    blocks += "\tEndProjectSection\r\nEndProject\r\n";
    mappings += "\t\t" + guid + ".Release.ActiveCfg = Release|Win32\r\n";
    if (project.isBuilt) mappings += "\t\t" + guid + ".Release.Build.0 = Release|Win32\r\n";
  }
  return "Microsoft Visual Studio Solution File, Format Version " + format + "\r\n" + blocks +
         "Global\r\n\tGlobalSection(SolutionConfiguration) = preSolution\r\n\t\tRelease = Release\r\n"
         "\tEndGlobalSection\r\n\tGlobalSection(ProjectConfiguration) = postSolution\r\n" +
         mappings + "\tEndGlobalSection\r\nEndGlobal\r\n";
}

// Stand-ins that note what they are asked, write an output, and fail where they are told to.
class SolutionBuildTest : public testing::Test {
 protected:
  SolutionBuildTest() {
    const auto build = [this](const ProjectTask& task, Console& console) {
      tasks_.push_back(task);
      std::string needs;
      for (const BuiltProject* need : task.needs) needs += need->name;
      asked_.push_back(task.name + "(" + needs + ")");
      BuiltProject built;
      built.status = status_[task.name];
      if (errors_.contains(task.name)) console.Line("a.cpp(1) : error C2065: text");
      built.reason = "stand-in";
      built.limit = limits_[task.name];
      if (!outputs_.contains(task.name)) outputs_[task.name] = folder_.Write(task.name + ".exe", "");
      built.output = outputs_[task.name];
      return built;
    };
    builders_.visualCpp = builders_.dotNet = build;
    for (const char* file : {"A.vcproj", "B.vcproj", "C.vcproj", "D.csproj"}) folder_.Write(file, "");
  }

  bool Build(const std::string& solution, BuildRequest request = {}) {
    request.file = folder_.Write("App.sln", solution);
    if (request.configuration.empty()) request.configuration = "Release";
    return CarryOut(request, settings_, builders_, console_);
  }
  bool Says(const std::string& line) const {
    return ("\n" + console_.Text()).find("\n" + line + "\n") != std::string::npos;
  }

  TestFolder folder_;
  Builders builders_;
  FrontSettings settings_;
  ConsoleText console_;
  std::map<std::string, Status> status_ = {
      {"A", Status::Succeeded}, {"B", Status::Succeeded}, {"C", Status::Succeeded}, {"D", Status::Succeeded}};
  std::map<std::string, std::string> limits_, outputs_;
  std::set<std::string> errors_;
  std::vector<ProjectTask> tasks_;
  Names asked_;
};

TEST_F(SolutionBuildTest, BuildsInOrderAndHandsOnWhatWasBuilt) {
  EXPECT_TRUE(Build(
      SolutionText("8.00", {{"A", "A.vcproj", {"B"}}, {"B", "B.vcproj", {"D"}}, {"D", "D.csproj", {}}})));
  EXPECT_EQ(asked_, (Names{"D()", "B(D)", "A(DB)"}));
  EXPECT_EQ(tasks_[0].configuration, "Release");
  EXPECT_EQ(tasks_[0].platform, "Win32");
  EXPECT_EQ(tasks_[0].solutionFile, folder_ / "App.sln");
}

TEST_F(SolutionBuildTest, PrintsWhatTheProductsOf2003Print) {
  status_["A"] = Status::UpToDate;
  errors_ = {"B"};
  status_["B"] = Status::Failed;
  EXPECT_FALSE(Build(
      SolutionText("8.00", {{"A", "A.vcproj", {}}, {"B", "B.vcproj", {}}, {"C", "C.vcproj", {}, false}})));
  EXPECT_EQ(
      console_.Text(),
      "------ Build started: Project: A, Configuration: Release Win32 ------\n\nA - 0 error(s), 0 "
      "warning(s)\n\n"
      "------ Build started: Project: B, Configuration: Release Win32 ------\na.cpp(1) : error C2065: text\n"
      "B: stand-in\n\nB - 1 error(s), 0 warning(s)\n\n"
      "------ Skipped Build: Project: C, Configuration: Release Win32 ------\n"
      "Project not selected to build for this solution configuration\n"
      "---------------------- Done ----------------------\n\n"
      "    Build: 1 succeeded, 1 failed, 1 skipped\n");
}

TEST_F(SolutionBuildTest, ClosesInTheFormOfEachFormatAndGoal) {
  BuildRequest request;
  Build(SolutionText("7.00", {{"A", "A.vcproj", {}}}), request);
  EXPECT_TRUE(Says("    Build: 1 succeeded, 0 failed, 0 skipped"));
  request.goal = Goal::Rebuild;
  Build(SolutionText("9.00", {{"A", "A.vcproj", {}}}), request);
  EXPECT_TRUE(Says("========== Rebuild All: 1 succeeded, 0 failed, 0 skipped =========="));
  EXPECT_EQ(tasks_.back().goal, Goal::Rebuild);
  request.goal = Goal::Clean;
  Build(SolutionText("9.00", {{"A", "A.vcproj", {}}}), request);
  EXPECT_TRUE(Says("------ Clean started: Project: A, Configuration: Release Win32 ------"));
  EXPECT_TRUE(Says("========== Clean: 1 succeeded, 0 failed, 0 skipped =========="));
}

TEST_F(SolutionBuildTest, AFailureKeepsBackOnlyWhatNeedsIt) {
  status_["A"] = Status::Failed;
  EXPECT_FALSE(Build(SolutionText(
      "9.00",
      {{"A", "A.vcproj", {}}, {"B", "B.vcproj", {"A"}}, {"C", "C.vcproj", {"B"}}, {"D", "D.csproj", {}}})));
  EXPECT_EQ(asked_, (Names{"A()", "D()"}));
  EXPECT_TRUE(Says((folder_ / "A.vcproj") + " : error QXE0001: A: stand-in"));
  EXPECT_TRUE(Says((folder_ / "B.vcproj") + " : error QXE0001: B: not built, for it needs A, which failed"));
  EXPECT_TRUE(Says((folder_ / "C.vcproj") + " : error QXE0001: C: not built, for it needs B, which failed"));
  EXPECT_TRUE(Says("========== Build: 1 succeeded, 3 failed, 0 skipped =========="));
}

TEST_F(SolutionBuildTest, NamesWhatCannotBeBuiltHereAsFailed) {
  const std::string solution = SolutionText("8.00", {{"A", "A.vdproj", {}}, {"B", "B.vjsproj", {}}});
  EXPECT_FALSE(Build(solution));
  EXPECT_TRUE(Says((folder_ / "A.vdproj") + " : error QXE0001: A: setup projects need Visual Studio itself"));
  EXPECT_TRUE(Says("    Build: 0 succeeded, 2 failed, 0 skipped"));
}

TEST_F(SolutionBuildTest, SkipsSuchProjectsWhereTheUserAsksForIt) {
  settings_.skip = {"setup", "mfc"};
  limits_["B"] = "mfc";
  status_["B"] = Status::Failed;
  EXPECT_TRUE(
      Build(SolutionText("8.00", {{"A", "A.vdproj", {}}, {"B", "B.vcproj", {"A"}}, {"C", "C.vcproj", {}}})));
  EXPECT_TRUE(Says((folder_ / "A.vdproj") + " : warning QXE0002: A: setup projects need Visual Studio itself "
                                            "(skipped, as the setting for \"setup\" asks)"));
  EXPECT_TRUE(Says("    Build: 1 succeeded, 0 failed, 2 skipped"));
}

TEST_F(SolutionBuildTest, ErrorsOfASkippedProjectAreNotPrinted) {
  settings_.skip = {"mfc"};
  errors_ = {"A", "B"};
  limits_["A"] = "mfc";
  status_["A"] = status_["B"] = Status::Failed;
  EXPECT_FALSE(Build(SolutionText("8.00", {{"A", "A.vcproj", {}}, {"B", "B.vcproj", {}}})));
  EXPECT_TRUE(Says("A - 0 error(s), 1 warning(s)"));
  EXPECT_TRUE(Says("B - 1 error(s), 0 warning(s)"));
  EXPECT_EQ(console_.Counted().errors, 1);
}

// Two that do not meet: the first goes on only when the second is done.
TEST_F(SolutionBuildTest, BuildsProjectsAtTheSameTimeAndPrintsThemInOrder) {
  std::promise<void> hasEnded;
  builders_.visualCpp = [&](const ProjectTask& task, Console& console) {
    task.neighbours->Announce({false, {task.name}});
    if (task.name == "A") hasEnded.get_future().wait();
    console.Line("lines of " + task.name);
    if (task.name == "B") hasEnded.set_value();
    BuiltProject built;
    built.status = Status::Succeeded;
    return built;
  };
  EXPECT_TRUE(
      Build(SolutionText("8.00", {{"A", "A.vcproj", {}}, {"B", "B.vcproj", {}}, {"C", "C.vcproj", {"A"}}})));
  std::string order;
  ForEachLine(console_.Text(), [&](std::string_view line) {
    if (line.starts_with("lines of ")) order += line.back();
  });
  EXPECT_EQ(order, "ABC");
  EXPECT_TRUE(Says("    Build: 3 succeeded, 0 failed, 0 skipped"));
}

TEST_F(SolutionBuildTest, WithOneJobProjectsFollowOneAnother) {
  settings_.jobs = 1;
  int running = 0;
  builders_.visualCpp = [&](const ProjectTask& task, Console&) {
    task.neighbours->Announce({false, {task.name}});
    EXPECT_EQ(++running, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    --running;
    BuiltProject built;
    built.status = Status::Succeeded;
    return built;
  };
  EXPECT_TRUE(Build(SolutionText("8.00", {{"A", "A.vcproj", {}}, {"B", "B.vcproj", {}}})));
}

TEST_F(SolutionBuildTest, DoesNotBelieveASuccessWithoutAProgram) {
  outputs_["A"] = folder_ / "gone.exe";
  EXPECT_FALSE(Build(SolutionText("9.00", {{"A", "A.vcproj", {}}})));
  EXPECT_TRUE(Says((folder_ / "A.vcproj") +
                   " : error QXE0001: A: its build reports success, but there is no " +
                   (folder_ / "gone.exe")));
}

TEST_F(SolutionBuildTest, WarnsWhenTwoProjectsWriteOneFile) {
  outputs_["A"] = outputs_["B"] = folder_.Write("one.exe", "");
  EXPECT_TRUE(Build(SolutionText("9.00", {{"A", "A.vcproj", {}}, {"B", "B.vcproj", {}}})));
  EXPECT_TRUE(Says((folder_ / "B.vcproj") + " : warning QXE0001: wrote over " + (folder_ / "one.exe") +
                   ", which A had built"));
}

TEST_F(SolutionBuildTest, BuildsOneProjectByItself) {
  BuildRequest request;
  request.file = folder_ / "d.CSPROJ";
  request.configuration = "Debug|Any CPU";
  request.properties["OutputPath"] = "bin\\Debug";
  settings_.launcher = "ccache";
  settings_.jobs = 3;
  EXPECT_TRUE(CarryOut(request, settings_, builders_, console_));
  ASSERT_EQ(tasks_.size(), 1U);
  EXPECT_EQ(tasks_[0].name, "D");
  EXPECT_EQ(tasks_[0].configuration, "Debug");
  EXPECT_EQ(tasks_[0].platform, "Any CPU");
  EXPECT_EQ(tasks_[0].solutionFile, "");
  EXPECT_EQ(tasks_[0].properties.at("OutputPath"), "bin\\Debug");
  EXPECT_EQ(tasks_[0].launcher, "ccache");
  EXPECT_EQ(tasks_[0].jobs, 3);
}

TEST_F(SolutionBuildTest, RefusesWhatItCannotBegin) {
  const auto refusal = [this](const BuildRequest& request) {
    try {
      CarryOut(request, settings_, builders_, console_);
    } catch (const Exception& error) {
      return error.Message();
    }
    return std::string("accepted");
  };
  BuildRequest request;
  request.file = folder_ / "None.sln";
  EXPECT_EQ(refusal(request), "There is no file " + request.file);
  request.file = folder_.Write("App.sln", SolutionText("8.00", {{"A", "A.vcproj", {}}}));
  request.configuration = "Relaese";
  EXPECT_EQ(refusal(request), request.file + " has no configuration \"Relaese\". It has: Release");
  request.file = folder_.Write("App.sln", SolutionText("10.00", {}));
  EXPECT_EQ(refusal(request), request.file +
                                  " is no solution of Visual Studio 2002, 2003 or 2005 (format 7.00, "
                                  "8.00 or 9.00)");
}

TEST_F(SolutionBuildTest, TellsWhatIsToBeDeployedAndCannotBe) {
  std::string solution = SolutionText("8.00", {{"A", "A.vcproj", {}}});
  BuildRequest request;
  request.isDeployed = true;
  EXPECT_TRUE(Build(solution, request));
  const std::string line = ".Release.Build.0 = Release|Win32\r\n";
  const std::size_t at = solution.find(line);
  solution.insert(at + line.size(),
                  "\t\t{0000000A-0000-0000-0000-000000000000}.Release.Deploy.0 = Release|Win32\r\n");
  EXPECT_FALSE(Build(solution, request));
  EXPECT_TRUE(Says("    Deploy: 0 succeeded, 1 failed, 0 skipped"));
}

}  // namespace
}  // namespace qx
