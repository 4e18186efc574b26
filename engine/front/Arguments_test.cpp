#include <gtest/gtest.h>

#include <cstdlib>

#include "engine/front/BuildRequest.h"

namespace qx {
namespace {

using Arguments = std::vector<std::string>;
using Properties = std::map<std::string, std::string>;

std::string Refusal(const Arguments& arguments) {
  try {
    ReadDevenvArguments(arguments);
  } catch (const UsageError& refusal) {
    const std::string text = refusal.what();
    return text.substr(0, text.find('\n'));
  }
  return "accepted";
}

TEST(DevenvArguments, TakesEveryFormOfASolutionsBuild) {
  const BuildRequest request = ReadDevenvArguments({"/build", "Debug|Win32", "C:\\src\\App.sln"});
  EXPECT_EQ(request.goal, Goal::Build);
  EXPECT_EQ(request.configuration, "Debug|Win32");
  EXPECT_EQ(request.file, "C:\\src\\App.sln");
  EXPECT_FALSE(request.isDeployed);
  EXPECT_FALSE(request.usesEnvironment);
  EXPECT_EQ(ReadDevenvArguments({"/rebuild", "Debug", "a.sln"}).goal, Goal::Rebuild);
  EXPECT_EQ(ReadDevenvArguments({"/clean", "Debug", "a.sln"}).goal, Goal::Clean);
  EXPECT_TRUE(ReadDevenvArguments({"/deploy", "Debug", "a.sln"}).isDeployed);
  EXPECT_EQ(ReadDevenvArguments({"/build", "", "a.sln"}).configuration, "");
}

TEST(DevenvArguments, TakesAChosenProjectAndTheOtherSwitches) {
  const BuildRequest request =
      ReadDevenvArguments({"/useenv", "/Build", "Debug", "/PROJECT", "Lib\\Lib.csproj", "/projectconfig",
                           "Release", "/home/me/App.sln", "/out", "/tmp/log.txt"});
  EXPECT_TRUE(request.usesEnvironment);
  EXPECT_EQ(request.project, "Lib\\Lib.csproj");
  EXPECT_EQ(request.projectConfiguration, "Release");
  EXPECT_EQ(request.file, "/home/me/App.sln");
  EXPECT_EQ(request.logFile, "/tmp/log.txt");
}

TEST(DevenvArguments, RefusesWhatItCannotFollow) {
  EXPECT_EQ(Refusal({}), "No /build, /rebuild, /clean or /deploy was given.");
  EXPECT_EQ(Refusal({"/build", "Debug"}), "No solution or project was given.");
  EXPECT_EQ(Refusal({"a.sln", "/build"}), "The switch /build needs a value behind it.");
  EXPECT_EQ(Refusal({"/build", "Debug", "a.sln", "b.sln"}), "Two files were given: a.sln and b.sln.");
  EXPECT_EQ(Refusal({"/build", "Debug", "a.sln", "/resetuserdata"}),
            "The switch /resetuserdata is not known here.");
}

TEST(MsBuildArguments, TakesEveryFormOfABuild) {
  const MsBuildRequest request =
      ReadMsBuildArguments({"C:\\src\\App.sln", "/t:Rebuild", "/p:useenv=1",
                            "/p:Configuration=Release;Platform=Any CPU;OutputPath=bin\\Release"});
  EXPECT_TRUE(request.isUnderstood);
  EXPECT_EQ(request.build.goal, Goal::Rebuild);
  EXPECT_EQ(request.build.configuration, "Release|Any CPU");
  EXPECT_EQ(request.build.file, "C:\\src\\App.sln");
  EXPECT_TRUE(request.build.usesEnvironment);
  EXPECT_EQ(request.build.properties, (Properties{{"OutputPath", "bin\\Release"}}));
  EXPECT_EQ(ReadMsBuildArguments({"a.sln", "-property:configuration=Debug"}).build.configuration, "Debug");
  EXPECT_EQ(ReadMsBuildArguments({"a.sln"}).build.configuration, "");
}

TEST(MsBuildArguments, ReadsQuotesAndEscapesInProperties) {
  const MsBuildRequest request =
      ReadMsBuildArguments({"a.sln", "/p:Defines=A%3BB;OutputPath=\"bin\\My Folder\";Odd=%zz%"});
  EXPECT_EQ(request.build.properties,
            (Properties{{"Defines", "A;B"}, {"OutputPath", "bin\\My Folder"}, {"Odd", "%zz%"}}));
}

TEST(MsBuildArguments, KnowsWhatIsBeyondIt) {
  for (const Arguments& arguments : {Arguments{"a.csproj", "/t:Publish"},
                                     {"a.csproj", "@more.rsp"},
                                     {"a.csproj", "/l:Logger"},
                                     {"a", "b"},
                                     {"a.sln", "/t:Deploy"},
                                     {"a.sln", "/t:Clean;Build"}}) {
    EXPECT_FALSE(ReadMsBuildArguments(arguments).isUnderstood) << arguments.back();
  }
  EXPECT_TRUE(ReadMsBuildArguments({"a.sln", "/nologo", "/v:minimal", "/m:4"}).isUnderstood);
}

// The variables as they are for one test.
class FrontSettingsTest : public testing::Test {
 protected:
  static FrontSettings With(const char* launcher, const char* jobs, const char* skip) {
    setenv("QX_ENGINE_LAUNCHER", launcher, 1);
    setenv("QX_ENGINE_JOBS", jobs, 1);
    setenv("QX_ENGINE_SKIP", skip, 1);
    return SettingsFromEnvironment();
  }
  ~FrontSettingsTest() override {
    for (const char* name : {"QX_ENGINE_LAUNCHER", "QX_ENGINE_JOBS", "QX_ENGINE_SKIP"}) unsetenv(name);
  }
};

TEST_F(FrontSettingsTest, ComeFromTheEnvironment) {
  const FrontSettings settings = With(" ccache ", "7", "VB, setup,");
  EXPECT_EQ(settings.launcher, "ccache");
  EXPECT_EQ(settings.jobs, 7);
  EXPECT_EQ(settings.skip, (std::set<std::string>{"vb", "setup"}));
  EXPECT_EQ(With("", "", "").jobs, 0);
}

TEST_F(FrontSettingsTest, RefusesANumberOfJobsThatIsNone) {
  EXPECT_THROW(With("", "many", ""), UsageError);
  EXPECT_THROW(With("", "-1", ""), UsageError);
}

}  // namespace
}  // namespace qx
