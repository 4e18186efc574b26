// Projects of 2005, built with the engine that is there.
#include "engine/dotnet/MsBuildRun.h"

#include <algorithm>

#include "engine/CommandSteps.h"
#include "engine/dotnet/Assemblies.h"
#include "engine/dotnet/NetFixture.h"

namespace qx {
namespace {

using Status = BuiltProject::Status;

constexpr const char* kLibrary = "{0A2F8D6C-5D1C-4B55-9D55-5C6F3B8F0005}";

bool Holds(const std::vector<std::string>& switches, const std::string& text) {
  return std::ranges::find(switches, text) != switches.end();
}

TEST(MsBuildCalls, TurnPathsAndNamePlatformsTheirWay) {
  ProjectTask task;
  task.configuration = "Release";
  task.platform = "Any CPU";
  task.properties = {{"OutputPath", "bin\\Release"}, {"DefineConstants", "A;B"}, {"Platform", "x"}};
  const MsBuildCall call = CallFor({}, task, true, "1252");
  EXPECT_TRUE(Holds(call.switches, "/t:Build"));
  EXPECT_TRUE(Holds(call.switches, "/p:Configuration=Release"));
  EXPECT_TRUE(Holds(call.switches, "/p:Platform=AnyCPU"));
  EXPECT_TRUE(Holds(call.switches, "/p:OutputPath=bin/Release/"));
  EXPECT_TRUE(Holds(call.switches, "/p:DefineConstants=A%3BB"));
  EXPECT_TRUE(Holds(call.switches, "/p:CodePage=1252"));
  EXPECT_FALSE(Holds(call.switches, "/p:Platform=x"));
}

TEST(MsBuildCalls, TellHowWhatIsNeededWasBuilt) {
  BuiltProject need;
  need.guid = kLibrary;
  need.configuration = "Debug";
  need.platform = "Any CPU";
  NetProject project;
  project.references.emplace_back();
  project.references[0].projectGuid = kLibrary;
  ProjectTask task;
  EXPECT_FALSE(Holds(CallFor(project, task, true, "").switches, "/p:BuildingInsideVisualStudio=true"));
  task.needs = {&need};
  const MsBuildCall call = CallFor(project, task, true, "");
  EXPECT_TRUE(Holds(call.switches, "/p:BuildingInsideVisualStudio=true"));
  EXPECT_EQ(call.environment.at("CurrentSolutionConfigurationContents"),
            std::string("<SolutionConfiguration><ProjectConfiguration Project=\"") + kLibrary +
                "\">Debug|AnyCPU</ProjectConfiguration></SolutionConfiguration>");
  EXPECT_TRUE(Holds(CallFor(project, task, false, "").switches, "/p:BuildProjectReferences=false"));
}

class MsBuildRun : public NetFixture {
 protected:
  void SetUp() override {
    QX_NEEDS("xbuild");
    Take("Shop2005");
  }
  NetRun BuildLibrary(const std::string& configuration) {
    guid_ = kLibrary;
    NetRun run = Build("Library/Library.csproj", configuration, "Any CPU");
    guid_.clear();
    return run;
  }
};

// The names of a source and of a folder differ in letter case from what is on disk; NUnit is named by an old
// version and a hint to nowhere.
TEST_F(MsBuildRun, MakesAProgramThatRuns) {
  if (FindCachedAssembly(SystemAssemblyFolders(FindProgram("mcs")), "nunit.framework").empty()) {
    GTEST_SKIP() << "nunit.framework is not installed: scripts/setup installs libnunit-cil-dev";
  }
  const NetRun library = BuildLibrary("Debug");
  ASSERT_EQ(library.built.status, Status::Succeeded) << library.printed << library.built.reason;
  const NetRun program = Build("Program/Program.csproj", "Release", "Any CPU", {&library.built});
  ASSERT_EQ(program.built.status, Status::Succeeded) << program.printed << program.built.reason;
  EXPECT_EQ(program.built.output, folder_ / "Program/bin/Release/Shop.exe");
  EXPECT_EQ(program.printed, "Program -> " + program.built.output + "\n");
  EXPECT_EQ(Run(program.built.output), "two\n");
  EXPECT_FALSE(folder_.Has("Library/bin/Release"));  // the library was taken as it was built
  EXPECT_EQ(Output({"find", ".", "-name", "*\\\\*"}), "");
  EXPECT_EQ(Output({"find", ".", "-name", ".engine*"}), "");
}

TEST_F(MsBuildRun, PutsTheOutputWhereThePropertySays) {
  ProjectTask task = Task("Library/Library.csproj", "Release", "Any CPU");
  task.properties["OutputPath"] = "out\\Release";
  const NetRun run = Build(task);
  EXPECT_EQ(run.built.output, folder_ / "Library/out/Release/Shop.Data.dll");
  EXPECT_TRUE(folder_.Has("Library/out/Release/Shop.Data.dll"));
}

TEST_F(MsBuildRun, KnowsWhatIsUpToDate) {
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded);
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::UpToDate);
  Touch("Library/Prices.cs");
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded);
}

TEST_F(MsBuildRun, PrintsErrorsOnce) {
  Change("Library/Prices.cs", "\"two\"", "nothing");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.status, Status::Failed);
  EXPECT_EQ(run.counts.errors, 1) << run.printed;
  EXPECT_NE(run.printed.find("Prices.cs(1,60): error CS0103: "), std::string::npos) << run.printed;
}

TEST_F(MsBuildRun, SaysThatAConfigurationIsMissing) {
  const NetRun run = Build("Library/Library.csproj", "Release", "x64");
  EXPECT_EQ(run.built.status, Status::Failed);
  EXPECT_NE(run.printed.find("'OutputPath' property is not set"), std::string::npos) << run.printed;
}

// Its commands are Windows', which the engine would hand to this system's shell.
TEST_F(MsBuildRun, RunsBuildEventsThroughWine) {
  if (WineProgram().empty()) GTEST_SKIP() << "wine is not installed";
  const std::string prefix = folder_ / "prefix";
  setenv("WINEPREFIX", prefix.c_str(), 1);
  Change("Library/Library.csproj", "</Project>",
         "<PropertyGroup><PostBuildEvent>copy \"$(TargetPath)\" "
         "$(Configuration).copy</PostBuildEvent></PropertyGroup></Project>");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.status, Status::Succeeded) << run.printed << run.built.reason;
  EXPECT_EQ(folder_.Read("Library/bin/Debug/Debug.copy"), folder_.Read("Library/bin/Debug/Shop.Data.dll"));
  Change("Library/Library.csproj", "$(Configuration).copy</PostBuildEvent>",
         "other.copy&#xd;&#xa;copy gone.dll x.dll</PostBuildEvent>"
         "<RunPostBuildEvent>OnOutputUpdated</RunPostBuildEvent>");
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Failed);
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Failed) << "what failed is tried again";
  unsetenv("WINEPREFIX");
  Output({"env", "WINEPREFIX=" + prefix, "wineserver", "-k"});
}

// A resource is named after what the project says, and not after the folder on disk.
TEST_F(MsBuildRun, NamesOfResourcesKeepTheirLetterCase) {
  const std::string resx =
      "<root><resheader name=\"resmimetype\"><value>text/microsoft-resx</value></resheader><resheader "
      "name=\"version\"><value>1.3</value></resheader><resheader "
      "name=\"reader\"><value>System.Resources.ResXResourceReader, System.Windows.Forms</value></resheader>"
      "<resheader name=\"writer\"><value>System.Resources.ResXResourceWriter, "
      "System.Windows.Forms</value></resheader></root>";
  folder_.Write("Library/more/labels.resx", resx);
  folder_.Write("Library/more/plain.txt", "x");
  Change("Library/Library.csproj", "</Project>",
         "<ItemGroup><EmbeddedResource Include=\"More\\Labels.resx\" /><EmbeddedResource "
         "Include=\"More\\Plain.txt\"><SubType>x</SubType></EmbeddedResource></ItemGroup></Project>");
  const NetRun run = BuildLibrary("Debug");
  ASSERT_EQ(run.built.status, Status::Succeeded) << run.printed << run.built.reason;
  const std::string bytes = folder_.Read("Library/bin/Debug/Shop.Data.dll");
  EXPECT_NE(bytes.find("More.Labels.resources"), std::string::npos);
  EXPECT_NE(bytes.find("More.Plain.txt"), std::string::npos);
}

// An engine that answers 0 and does nothing.
TEST_F(MsBuildRun, BelievesWhatIsThereAndNotTheExitCode) {
  folder_.Write("tools/msbuild", "#!/bin/sh\nexit 0\n");
  std::filesystem::permissions(folder_ / "tools/msbuild", std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  setenv("PATH", ((folder_ / "tools:") + path).c_str(), 1);
  const NetRun missing = BuildLibrary("Debug");
  EXPECT_EQ(missing.built.reason,
            "msbuild reports success, but there is no " + (folder_ / "Library/bin/Debug/Shop.Data.dll"));
  folder_.Write("Library/bin/Debug/Shop.Data.dll", "old");
  Touch("Library/Prices.cs");
  const NetRun old = BuildLibrary("Debug");
  EXPECT_EQ(old.built.reason, "msbuild reports success, but " +
                                  (folder_ / "Library/bin/Debug/Shop.Data.dll") +
                                  " is older than its sources");
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace qx
