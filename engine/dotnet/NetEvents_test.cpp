#include "engine/dotnet/NetEvents.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(NetEvents, KnowTheProductsMacros) {
  NetProject project;
  project.file = "/code/My App/App.csproj";
  project.outputPath.value = "bin\\Debug\\";
  ProjectTask task;
  task.name = "App";
  task.configuration = "Debug";
  task.solutionFile = "/code/All.sln";
  const std::string output = "/code/My App/bin/Debug/App.Main.exe";
  const auto expand = [&](const char* text) { return ExpandEventMacros(text, project, task, output); };
  EXPECT_EQ(expand("\"$(TargetPath)\" $(targetdir)"),
            "\"Z:\\code\\My App\\bin\\Debug\\App.Main.exe\" Z:\\code\\My App\\bin\\Debug\\");
  EXPECT_EQ(expand("$(TargetName)|$(TargetExt)|$(TargetFileName)"), "App.Main|.exe|App.Main.exe");
  EXPECT_EQ(expand("$(ProjectDir)|$(ProjectFileName)|$(ProjectName)"), "Z:\\code\\My App\\|App.csproj|App");
  EXPECT_EQ(expand("$(SolutionDir)|$(SolutionName)|$(ConfigurationName)|$(OutDir)|$(PlatformName)"),
            "Z:\\code\\|All|Debug|bin\\Debug\\|.NET");
  EXPECT_EQ(expand("$(Unknown) $(TargetPath $ %PATH%"), "$(Unknown) $(TargetPath $ %PATH%");
}

TEST(NetEvents, RunWhenTheProjectSays) {
  NetProject project;
  EXPECT_EQ(WhenPostBuildEventRuns(project), WhenToRun::OnBuildSuccess);
  project.runPostBuildEvent = "Always";
  EXPECT_EQ(WhenPostBuildEventRuns(project), WhenToRun::Always);
  project.runPostBuildEvent = "OnOutputUpdated";
  EXPECT_EQ(WhenPostBuildEventRuns(project), WhenToRun::OnOutputUpdated);
}

}  // namespace
}  // namespace qx
