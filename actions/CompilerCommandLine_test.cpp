#include "actions/CompilerCommandLine.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

using enum TVSDotNetBuildAction;

constexpr CompilerSettings kDevEnv{CompilerSyntax::DevEnv, baBuild, false};
constexpr CompilerSettings kMSBuild{CompilerSyntax::MSBuild, baBuild, false};
constexpr const char* kApp = "C:\\src\\App.sln";

TEST(DevEnvParameters, BuildTheSolution) {
  EXPECT_EQ(SolutionParameters(kDevEnv, "Debug", kApp), R"(/build "Debug" "C:\src\App.sln")");
}

TEST(DevEnvParameters, HaveASwitchForEachAction) {
  const std::pair<TVSDotNetBuildAction, const char*> rows[] = {{baBuild, R"(/build "Debug" "x.sln")"},
                                                               {baRebuild, R"(/rebuild "Debug" "x.sln")"},
                                                               {baClean, R"(/clean "Debug" "x.sln")"},
                                                               {baDeploy, R"(/deploy "Debug" "x.sln")"}};
  for (const auto& [action, expected] : rows)
    EXPECT_EQ(SolutionParameters({CompilerSyntax::DevEnv, action, false}, "Debug", "x.sln"), expected);
}

TEST(DevEnvParameters, BeginWithTheEnvironmentSwitch) {
  const CompilerSettings settings{CompilerSyntax::DevEnv, baRebuild, true};
  EXPECT_EQ(SolutionParameters(settings, "Debug", kApp), R"(/useenv /rebuild "Debug" "C:\src\App.sln")");
  EXPECT_EQ(ProjectParameters(settings, "Debug", R"(Lib\Lib.csproj)", kApp),
            R"(/useenv /rebuild "Debug" /project "Lib\Lib.csproj" "C:\src\App.sln")");
}

TEST(DevEnvParameters, TakeThePlatformWhole) {
  EXPECT_EQ(SolutionParameters(kDevEnv, "Debug|Win32", "x.sln"), R"(/build "Debug|Win32" "x.sln")");
  EXPECT_EQ(SolutionParameters(kDevEnv, "Release|Any CPU", "x.sln"), R"(/build "Release|Any CPU" "x.sln")");
}

TEST(DevEnvParameters, QuoteAnEmptyConfiguration) {
  EXPECT_EQ(SolutionParameters(kDevEnv, "", "x.sln"), R"(/build "" "x.sln")");
}

TEST(DevEnvParameters, NameTheProject) {
  EXPECT_EQ(ProjectParameters(kDevEnv, "Debug", R"(Lib\Lib.csproj)", kApp),
            R"(/build "Debug" /project "Lib\Lib.csproj" "C:\src\App.sln")");
}

TEST(MSBuildParameters, BuildTheSolution) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "Release", kApp),
            R"("C:\src\App.sln" /t:Build /p:Configuration="Release")");
}

TEST(MSBuildParameters, HaveATargetForEachAction) {
  const std::pair<TVSDotNetBuildAction, const char*> rows[] = {
      {baBuild, R"("x.sln" /t:Build /p:Configuration="Debug")"},
      {baRebuild, R"("x.sln" /t:Rebuild /p:Configuration="Debug")"},
      {baClean, R"("x.sln" /t:Clean /p:Configuration="Debug")"},
      {baDeploy, R"("x.sln" /t:Deploy /p:Configuration="Debug")"}};
  for (const auto& [action, expected] : rows)
    EXPECT_EQ(SolutionParameters({CompilerSyntax::MSBuild, action, false}, "Debug", "x.sln"), expected);
}

TEST(MSBuildParameters, TakeThePlatformBehindTheBar) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "Release|Win32", kApp),
            R"("C:\src\App.sln" /t:Build /p:Configuration="Release";Platform="Win32")");
}

TEST(MSBuildParameters, GiveAnOutputPathForAnyCpu) {
  EXPECT_EQ(SolutionParameters({CompilerSyntax::MSBuild, baRebuild, true}, "Release|Any CPU", kApp),
            R"("C:\src\App.sln" /t:Rebuild /p:useenv=1 /p:Configuration="Release";)"
            R"(Platform="Any CPU";OutputPath="bin\Release")");
}

TEST(MSBuildParameters, CompareAnyCpuWithoutCaseAndKeepIt) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "Release|ANY CPU", "x.sln"),
            R"("x.sln" /t:Build /p:Configuration="Release";Platform="ANY CPU";OutputPath="bin\Release")");
}

TEST(MSBuildParameters, GiveNoOutputPathForOthers) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "Release|AnyCPU", "x.sln"),
            R"("x.sln" /t:Build /p:Configuration="Release";Platform="AnyCPU")");
}

TEST(MSBuildParameters, SplitAtTheFirstBar) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "A|B|C", "x.sln"),
            R"("x.sln" /t:Build /p:Configuration="A";Platform="B|C")");
}

TEST(MSBuildParameters, TakeAnEmptyPlatformBehindABar) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "A|", "x.sln"),
            R"("x.sln" /t:Build /p:Configuration="A";Platform="")");
}

TEST(MSBuildParameters, QuoteAnEmptyConfiguration) {
  EXPECT_EQ(SolutionParameters(kMSBuild, "", "x.sln"), R"("x.sln" /t:Build /p:Configuration="")");
}

TEST(MSBuildParameters, NameTheProjectInTheSolutionsPlace) {
  EXPECT_EQ(
      ProjectParameters(kMSBuild, "Debug|Any CPU", R"(Lib\Lib.csproj)", kApp),
      R"("Lib\Lib.csproj" /t:Build /p:Configuration="Debug";Platform="Any CPU";OutputPath="bin\Debug")");
}

TEST(WithoutPlatform, CutsAtTheFirstBar) {
  EXPECT_EQ(WithoutPlatform("A|B|C"), "A");
  EXPECT_EQ(WithoutPlatform("Debug"), "Debug");
  EXPECT_EQ(WithoutPlatform("|x"), "");
}

}  // namespace
}  // namespace qx
