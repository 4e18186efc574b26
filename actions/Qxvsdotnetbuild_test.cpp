#include <thread>

#include "actions/RunFixture.h"
#include "platform/System.h"
#include "plugin/Qxdotnetinfo.h"

namespace qx {
namespace {

using enum TVSDotNetVersion;
using enum TVSDotNetBuildType;
using Errors = std::vector<ValidationErrors::Error>;

class BuildRun : public RunFixture {
 protected:
  BuildRun() {
    action->SetSolution(solution());
    action->Settings().solutionConfiguration = "Debug";
    Use(vs2005);
  }
  InterfacePtr<IQXVSDotNetOptions> options = VSDotNetOptions();
};

// Validation

const ValidationErrors::Error kNoSolution{"Solution file", "A solution file has not been set"};
const ValidationErrors::Error kNoFolder{"Path to devenv.com",
                                        "Path to devenv.com has not been set, check Tools->Options"};

TEST_F(BuildRun, IsValidWithSolutionAndFolder) {
  ValidationErrors errors;
  EXPECT_TRUE(action->Validate(errors));
  EXPECT_EQ(errors.Errors(), Errors{});
}

TEST_F(BuildRun, ReportsBothSettingsAtOnce) {
  action->SetSolution("");
  options->SetDevEnv2005Location("");
  ValidationErrors errors;
  EXPECT_FALSE(action->Validate(errors));
  EXPECT_EQ(errors.Errors(), (Errors{kNoSolution, kNoFolder}));
}

TEST_F(BuildRun, ValidatesTheFolderOfItsVersion) {
  const auto valid = [this](TVSDotNetVersion version) {
    Use(version);
    ValidationErrors errors;
    const bool result = action->Validate(errors);
    EXPECT_EQ(errors.Errors(), result ? Errors{} : Errors{kNoFolder});
    return result;
  };
  options->SetDevEnvLocation("");
  options->SetDevEnv2003Location(" \t ");
  EXPECT_FALSE(valid(vs2002));
  EXPECT_FALSE(valid(vs2003));
  EXPECT_TRUE(valid(vs2005));
  options->SetDevEnvLocation("C:\\VS7");
  options->SetDevEnv2003Location("C:\\VS71");
  options->SetDevEnv2005Location("");
  EXPECT_TRUE(valid(vs2002));
  EXPECT_TRUE(valid(vs2003));
  EXPECT_FALSE(valid(vs2005));
  EXPECT_FALSE(valid(static_cast<TVSDotNetVersion>(200)));
}

TEST_F(BuildRun, NeedsTheDevEnvFolderForMSBuildToo) {
  UseMSBuild();
  options->SetDevEnv2005Location("");
  ValidationErrors errors;
  EXPECT_FALSE(action->Validate(errors));
  EXPECT_EQ(errors.Errors(), Errors{kNoFolder});
}

TEST_F(BuildRun, ValidatesTheSolutionAsItIsStored) {
  action->SetSolution("%NOPE%");
  ValidationErrors errors;
  EXPECT_TRUE(action->Validate(errors));
}

// What stands before the compiler

TEST_F(BuildRun, FailsOnAnUndefinedVariableInTheSolution) {
  action->SetSolution("%NOPE%\\App.sln");
  ExpectRun(false, {"Error Expanding Solution File Name : Undefined variable : NOPE"});
}

TEST_F(BuildRun, FailsOnAMissingSolution) {
  action->SetSolution(Path("src/Missing.sln"));
  ExpectRun(false, {"Solution File does not exist"});
  action->SetSolution("");
  ExpectRun(false, {"Solution File does not exist"});
  action->SetSolution(Path("src"));
  ExpectRun(false, {"Solution File does not exist"});
}

TEST_F(BuildRun, FailsOnAnUndefinedVariableInTheConfiguration) {
  action->Settings().solutionConfiguration = "%NOPE%";
  ExpectRun(false, {"Error Expanding Solution Configuration Name : Undefined variable : NOPE"});
}

TEST_F(BuildRun, FailsWithoutACompilerFolder) {
  options->SetDevEnvLocation("");
  options->SetDevEnv2003Location("  ");
  options->SetDevEnv2005Location("");
  for (const TVSDotNetVersion version : {vs2002, vs2003, vs2005, static_cast<TVSDotNetVersion>(7)}) {
    Use(version);
    ExpectRun(false, {"Path to devenv.com not set in Options!"});
  }
}

TEST_F(BuildRun, FailsWithoutTheFrameworkBeforeOpeningTheSolution) {
  if (QXDotNetInfo()->FindVersion("v2.0")) GTEST_SKIP() << "this machine has a .NET framework 2.0";
  action->Settings().useMSBuild = true;
  Write("src/App.sln", "no solution");
  ExpectRun(false, {"Unable to detect .NET framework v2.x location"});
}

TEST_F(BuildRun, FailsOnASolutionThatCannotBeRead) {
  Write("src/App.sln", "no solution\r\n");
  ExpectRun(false, {"Error Parsing Solution File : Invalid Solution File Format : no solution"});
  EXPECT_EQ(Calls(), Lines{});
}

TEST_F(BuildRun, ExpandsNestedVariables) {
  host.variables.SetProject("ROOT", "%BASE%src");
  host.variables.SetProject("BASE", Path(""));
  host.variables.SetProject("CONFIG", "%KIND%|Win32");
  host.variables.SetProject("KIND", "Release");
  action->SetSolution("%ROOT%" + std::string(1, NativeDelimiter()) + "App.sln");
  action->Settings().solutionConfiguration = "%CONFIG%";
  ExpectRun(true, Running(devenv(), R"(/build "Release|Win32" ")" + solution() + '"'));
}

TEST_F(BuildRun, TakesEachVersionsFolder) {
  using Setter = void (IQXVSDotNetOptions::*)(const std::string&);
  const std::pair<TVSDotNetVersion, Setter> rows[] = {{vs2002, &IQXVSDotNetOptions::SetDevEnvLocation},
                                                      {vs2003, &IQXVSDotNetOptions::SetDevEnv2003Location},
                                                      {vs2005, &IQXVSDotNetOptions::SetDevEnv2005Location}};
  for (const auto& [version, set] : rows) {
    for (const auto& [other, clear] : rows) (options.get()->*clear)("C:\\elsewhere");
    (options.get()->*set)(" \t" + Path(version == vs2003 ? "vs/" : "vs") + " ");
    Use(version);
    ExpectRun(true, Running(devenv(), R"(/build "Debug" ")" + solution() + '"'));
  }
}

// Whole solutions

TEST_F(BuildRun, BuildsTheSolutionFromItsFolder) {
  ExpectRun(true, Running(devenv(), R"(/build "Debug" ")" + solution() + '"'));
  EXPECT_EQ(Calls(), Lines{"in " + Path("src") + " | /build | Debug | " + solution()});
}

TEST_F(BuildRun, PassesAnEmptyConfiguration) {
  action->Settings().solutionConfiguration = "";
  ExpectRun(true, Running(devenv(), R"(/build "" ")" + solution() + '"'));
  EXPECT_EQ(Calls(), Lines{"in " + Path("src") + " | /build |  | " + solution()});
}

TEST_F(BuildRun, CleansWithTheEnvironment) {
  action->Settings().buildAction = TVSDotNetBuildAction::baClean;
  action->Settings().useEnv = true;
  ExpectRun(true, Running(devenv(), R"(/useenv /clean "Debug" ")" + solution() + '"'));
  EXPECT_EQ(Calls(), Lines{"in " + Path("src") + " | /useenv | /clean | Debug | " + solution()});
}

TEST_F(BuildRun, BuildsTheSolutionWithMSBuild) {
  UseMSBuild();
  action->Settings().buildAction = TVSDotNetBuildAction::baRebuild;
  action->Settings().useEnv = true;
  action->Settings().solutionConfiguration = "Release|Any CPU";
  ExpectRun(true, Running(msbuild(), '"' + solution() +
                                         R"(" /t:Rebuild /p:useenv=1 /p:Configuration="Release";)"
                                         R"(Platform="Any CPU";OutputPath="bin\Release")"));
  EXPECT_EQ(Calls(), Lines{"in " + Path("src") + " | " + solution() +
                           " | /t:Rebuild | /p:useenv=1 | "
                           "/p:Configuration=Release;Platform=Any CPU;OutputPath=bin\\Release"});
}

TEST_F(BuildRun, IgnoresUseMSBuildForOlderVersions) {
  UseMSBuild();
  Use(vs2003);
  ExpectRun(true, Running(devenv(), R"(/build "Debug" ")" + solution() + '"'));
}

TEST_F(BuildRun, FindsASolutionWrittenWithTheOtherDelimiter) {
  std::string path = solution();
  const char other = NativeDelimiter() == '/' ? '\\' : '/';
  path[path.rfind(NativeDelimiter())] = other;
  action->SetSolution(path);
  // Windows programs take both; elsewhere the compiler is given the path that exists.
  const std::string given = kIsWindows ? path : solution();
  ExpectRun(true, Running(devenv(), R"(/build "Debug" ")" + given + '"'));
}

TEST_F(BuildRun, PassesABareFileNameAsItStands) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(Path("src"));
  action->SetSolution("App.sln");
  ExpectRun(true, Running(devenv(), R"(/build "Debug" "App.sln")"));
  std::filesystem::current_path(before);
  EXPECT_EQ(Calls(), Lines{"in " + Path("src") + " | /build | Debug | App.sln"});
}

// The compiler starts in the solution's folder, from where the text as it stands would lead nowhere.
TEST_F(BuildRun, MakesARelativeSolutionAbsolute) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(root_);
  action->SetSolution("src\\App.sln");
  ExpectRun(true, Running(devenv(), R"(/build "Debug" ")" + solution() + '"'));
  std::filesystem::current_path(before);
}

// Selected projects

TEST_F(BuildRun, FailsWithNoProjectSelected) {
  Select({});
  ExpectRun(false, {"No Projects selected to build"});
}

TEST_F(BuildRun, BuildsSelectedProjectsInListOrder) {
  Select({kAppId, kLibId});
  ExpectRun(true, Lines{"Processing Project : App"} +
                      Running(devenv(), R"(/build "Debug" /project "App\App.csproj" ")" + solution() + '"') +
                      Lines{"Processing Project : Lib"} +
                      Running(devenv(), R"(/build "Debug" /project "Lib\Lib.csproj" ")" + solution() + '"'));
  EXPECT_EQ(Calls(),
            (Lines{"in " + Path("src") + " | /build | Debug | /project | App\\App.csproj | " + solution(),
                   "in " + Path("src") + " | /build | Debug | /project | Lib\\Lib.csproj | " + solution()}));
}

TEST_F(BuildRun, BuildsASelectedProjectTwiceWhenListedTwice) {
  Select({kLibId, kLibId});
  action->Execute();
  EXPECT_EQ(Calls().size(), 2u);
}

TEST_F(BuildRun, TellsMSBuildThePlatformOfTheFirstProjectOnly) {
  UseMSBuild();
  action->Settings().solutionConfiguration = "Debug|Any CPU";
  Select({kLibId, kAppId, kToolId});
  ExpectRun(true, Lines{"Processing Project : Lib"} +
                      Running(msbuild(), R"("Lib\Lib.csproj" /t:Build /p:Configuration="Debug";)"
                                         R"(Platform="Any CPU";OutputPath="bin\Debug")") +
                      Lines{"Processing Project : App"} +
                      Running(msbuild(), R"("App\App.csproj" /t:Build /p:Configuration="Debug")") +
                      Lines{"Processing Project : Tool"} +
                      Running(msbuild(), R"("Tool\Tool.csproj" /t:Build /p:Configuration="Debug")"));
}

TEST_F(BuildRun, TellsDevEnvThePlatformOfEveryProject) {
  action->Settings().solutionConfiguration = "Debug|x86";
  Select({kLibId, kAppId});
  ExpectRun(true,
            Lines{"Processing Project : Lib"} +
                Running(devenv(), R"(/build "Debug|x86" /project "Lib\Lib.csproj" ")" + solution() + '"') +
                Lines{"Processing Project : App"} +
                Running(devenv(), R"(/build "Debug|x86" /project "App\App.csproj" ")" + solution() + '"'));
}

constexpr const char* kGone =
    "A Project selected is no longer part of this solution, please open the action properties dialog and "
    "select the correct projects";

TEST_F(BuildRun, FailsWhenTheFirstSelectedProjectIsGone) {
  Select({kGoneId, kLibId});
  ExpectRun(false, {kGone});
  EXPECT_EQ(Calls(), Lines{});
}

TEST_F(BuildRun, SucceedsWhenALaterSelectedProjectIsGone) {
  Select({kLibId, kGoneId, kAppId});
  ExpectRun(true, Lines{"Processing Project : Lib"} +
                      Running(devenv(), R"(/build "Debug" /project "Lib\Lib.csproj" ")" + solution() + '"') +
                      Lines{kGone});
  EXPECT_EQ(Calls().size(), 1u);
}

TEST_F(BuildRun, LooksProjectsUpByTheExactIdentifier) {
  Write("src/Low/Low.csproj", "<Project/>");
  std::string text = Read("src/App.sln");
  const std::string entry =
      "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"Low\", \"Low\\Low.csproj\", "
      "\"{abcdef00-0000-0000-0000-000000000001}\"\r\nEndProject\r\n";
  Write("src/App.sln", text.insert(text.find("Global"), entry));
  Select({"{ABCDEF00-0000-0000-0000-000000000001}"});
  ExpectRun(false, {kGone});
}

TEST_F(BuildRun, StopsAtTheFirstFailedProject) {
  Write("vs/script.2", "exit 3\n");
  Select({kLibId, kAppId, kToolId});
  ExpectRun(false, Lines{"Processing Project : Lib"} +
                       Running(devenv(), R"(/build "Debug" /project "Lib\Lib.csproj" ")" + solution() + '"') +
                       Lines{"Processing Project : App"} +
                       Running(devenv(), R"(/build "Debug" /project "App\App.csproj" ")" + solution() + '"') +
                       Lines{devenv() + " returned Error code : 3"});
  EXPECT_EQ(Calls().size(), 2u);
}

// Results

TEST_F(BuildRun, ReportsTheExitCode) {
  Script("exit 1\n");
  ExpectRun(false, Running(devenv(), R"(/build "Debug" ")" + solution() + '"') +
                       Lines{devenv() + " returned Error code : 1"});
}

TEST_F(BuildRun, ReportsACompilerThatCannotBeStarted) {
  std::filesystem::remove(devenv());
  EXPECT_FALSE(action->Execute());
  const Lines lines = host.Lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_TRUE(lines[2].starts_with("Error Running " + devenv() + " : ")) << lines[2];
  EXPECT_GT(lines[2].size(), ("Error Running " + devenv() + " : ").size());
}

TEST_F(BuildRun, LogsEveryLineOfOutput) {
  Script("out first\nerr second\nout  indented\nout\n");
  ASSERT_TRUE(action->Execute());
  Lines out;
  for (const LogEntry& entry : host.Entries()) {
    if (entry.kind != LogKind::Status) continue;
    EXPECT_EQ(entry.text, "");
    ASSERT_EQ(entry.details.size(), 1u);
    out.push_back(entry.details[0]);
  }
  // The two streams come on threads of their own; each keeps its order.
  EXPECT_EQ(out.size(), 4u);
  EXPECT_EQ(std::erase(out, "second"), 1u);
  EXPECT_EQ(out, (Lines{"first", " indented", ""}));
}

TEST_F(BuildRun, FailsWhenTheOlderDevEnvSaysThatNothingSucceeded) {
  for (const TVSDotNetVersion version : {vs2002, vs2003}) {
    Use(version);
    Script("out Build: 0 succeeded, 1 failed, 0 skipped\n");
    ExpectRun(false, Running(devenv(), R"(/build "Debug" ")" + solution() + '"') +
                         Lines{"Build: 0 succeeded, 1 failed, 0 skipped"});
  }
}

TEST_F(BuildRun, AddsNoExitCodeWhenTheOutputShowedTheFailure) {
  Use(vs2003);
  Script("out x: 0 succeeded, 5 failed\nexit 1\n");
  ExpectRun(false,
            Running(devenv(), R"(/build "Debug" ")" + solution() + '"') + Lines{"x: 0 succeeded, 5 failed"});
}

TEST_F(BuildRun, IgnoresTheSummaryOf2005) {
  Script("out Build: 0 succeeded, 1 failed, 0 skipped\n");
  ExpectRun(true, Running(devenv(), R"(/build "Debug" ")" + solution() + '"') +
                      Lines{"Build: 0 succeeded, 1 failed, 0 skipped"});
  UseMSBuild();
  EXPECT_TRUE(action->Execute());
}

TEST_F(BuildRun, TakesOnlyTheExactSummaryForAFailure) {
  Use(vs2003);
  for (const char* line : {"Build: 10 succeeded, 0 failed", "Build: 20 succeeded, 0 failed", "0 succeeded,",
                           "Build: 0 Succeeded, 1 failed", "Build: 0 succeeded"}) {
    Script(std::string("out ") + line + "\n");
    EXPECT_TRUE(action->Execute()) << line;
  }
}

TEST_F(BuildRun, NeverFailsForErrorOutput) {
  Use(vs2003);
  Script("err Build: 0 succeeded, 1 failed\n");
  EXPECT_TRUE(action->Execute());
}

TEST_F(BuildRun, ForgetsTheFailureOfTheRunBefore) {
  Use(vs2003);
  Script("out Build: 0 succeeded, 1 failed\n");
  EXPECT_FALSE(action->Execute());
  Script("out Build: 1 succeeded, 0 failed\n");
  EXPECT_TRUE(action->Execute());
}

TEST_F(BuildRun, KeepsTheFailureWithinOneRun) {
  Use(vs2003);
  Script("out Build: 0 succeeded, 1 failed\n");
  EXPECT_FALSE(action->Execute());
  Script("");
  EXPECT_FALSE(action->RunCompiler(devenv(), Path("src/"), ""));
  EXPECT_TRUE(action->Execute());
}

// Termination

TEST_F(BuildRun, StopsARunningCompiler) {
  Script("out started\nwait 30000\n");
  std::thread user([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    action->TerminateAction();
  });
  ExpectRun(false, Running(devenv(), R"(/build "Debug" ")" + solution() + '"') +
                       Lines{"started", "Action Terminated by User."});
  user.join();
}

TEST_F(BuildRun, StopsACompilerThatWasNotYetStarted) {
  Script("wait 30000\n");
  action->TerminateAction();
  ExpectRun(false, Running(devenv(), R"(/build "Debug" ")" + solution() + '"') +
                       Lines{"Action Terminated by User."});
}

TEST_F(BuildRun, IsStoppedOncePerSignal) {
  action->TerminateAction();
  EXPECT_FALSE(action->Execute());
  EXPECT_TRUE(action->Execute());
}

TEST_F(BuildRun, StopsBeforeTheNextSelectedProject) {
  Script("wait 30000\n");
  Select({kLibId, kAppId});
  action->TerminateAction();
  ExpectRun(false, Lines{"Processing Project : Lib"} +
                       Running(devenv(), R"(/build "Debug" /project "Lib\Lib.csproj" ")" + solution() + '"') +
                       Lines{"Action Terminated by User."});
}

TEST_F(BuildRun, TakesExitCode999ForATermination) {
  if (!kIsWindows) GTEST_SKIP() << "exit codes end at 255 here";
  Script("exit 999\n");
  ExpectRun(false, Running(devenv(), R"(/build "Debug" ")" + solution() + '"') +
                       Lines{"Action Terminated by User."});
}

}  // namespace
}  // namespace qx
