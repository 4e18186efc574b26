// Projects of 2002 and 2003, built with mono's compiler and run.
#include <filesystem>

#include "engine/CommandSteps.h"
#include "engine/dotnet/NetFixture.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Status = BuiltProject::Status;

constexpr const char* kLibrary = "{0A2F8D6C-5D1C-4B55-9D55-5C6F3B8F0001}";

class MonoBuild : public NetFixture {
 protected:
  void SetUp() override {
    QX_NEEDS("mcs");
    Take("Shop2003");
  }
  NetRun BuildLibrary(const std::string& configuration) {
    guid_ = kLibrary;
    NetRun run = Build("Library/Library.csproj", configuration);
    guid_.clear();
    return run;
  }
  NetRun BuildProgram(const std::string& configuration, const BuiltProject& library) {
    return Build("Program/Program.csproj", configuration, "", {&library});
  }
};

TEST_F(MonoBuild, MakesAProgramThatRunsWithItsLibraryAndResources) {
  const NetRun library = BuildLibrary("Debug");
  ASSERT_EQ(library.built.status, Status::Succeeded) << library.printed << library.built.reason;
  EXPECT_EQ(library.built.output, folder_ / "Library/bin/Debug/Shop.Data.dll");
  const NetRun program = BuildProgram("Debug", library.built);
  ASSERT_EQ(program.built.status, Status::Succeeded) << program.printed << program.built.reason;
  EXPECT_EQ(Run(program.built.output),
            "debug\nHello, Guten Tag\na "
            "note\n6\nShop.Windows.MainForm.resources\nShop.Forms.Empty.resources\nwelcome\n"
            "Anna\n");
  EXPECT_TRUE(folder_.Has("Program/bin/Debug/de/Shop.Data.resources.dll"));
  EXPECT_TRUE(folder_.Has("Program/bin/Debug/Shop.Data.dll"));
  EXPECT_FALSE(folder_.Has("Program/obj/Debug/new"));
}

TEST_F(MonoBuild, TreesMayLieInFoldersWithCommas) {
  fs::create_directory(folder_ / "one, two");
  for (const char* part : {"Common", "Library", "Program"})
    fs::rename(folder_ / part, folder_ / ("one, two/" + std::string(part)));
  guid_ = kLibrary;
  const BuiltProject library = Build("one, two/Library/Library.csproj", "Debug").built;
  ASSERT_EQ(library.status, Status::Succeeded) << library.reason;
  guid_.clear();
  const NetRun program = Build("one, two/Program/Program.csproj", "Debug", "", {&library});
  ASSERT_EQ(program.built.status, Status::Succeeded) << program.printed << program.built.reason;
  EXPECT_EQ(Run(program.built.output).substr(0, 5), "debug");
}

TEST_F(MonoBuild, PrintsWhatTheOldProductPrinted) {
  const NetRun library = BuildLibrary("Debug");
  EXPECT_EQ(library.printed,
            "Preparing resources...\nPerforming main compilation...\nBuild complete -- 0 errors, 0 warnings\n"
            "Building satellite assemblies...\nLibrary -> " +
                folder_.Path() + "Library/bin/Debug/Shop.Data.dll\n");
}

TEST_F(MonoBuild, KeepsConfigurationsApart) {
  const BuiltProject debug = BuildLibrary("Debug").built;
  const BuiltProject release = BuildLibrary("Release").built;
  ASSERT_EQ(release.status, Status::Succeeded) << release.reason;
  const BuiltProject program = BuildProgram("Release", release).built;
  EXPECT_EQ(Run(program.output).substr(0, 8), "release\n");
  EXPECT_TRUE(folder_.Has("Library/bin/Release/Shop.Data.xml"));  // the documentation
  EXPECT_NE(folder_.Read("Library/bin/Release/Shop.Data.xml").find("What things cost."), std::string::npos);
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::UpToDate);
}

// Both configurations may write to one folder: the other one's output does not make this one up to date.
TEST_F(MonoBuild, PutsItsOwnOutputBackIntoASharedFolder) {
  Change("Library/Library.csproj", "bin\\Debug\\", "..\\out\\");
  Change("Library/Library.csproj", "OutputPath = \"bin\\Release\\\"", "OutputPath = \"..\\out\\\"");
  BuildLibrary("Debug");
  const std::string debug = folder_.Read("out/Shop.Data.dll");
  BuildLibrary("Release");
  EXPECT_NE(folder_.Read("out/Shop.Data.dll"), debug);
  const NetRun again = BuildLibrary("Debug");
  EXPECT_EQ(again.built.status, Status::Succeeded);
  EXPECT_EQ(folder_.Read("out/Shop.Data.dll"), debug);
}

TEST_F(MonoBuild, DoesNothingUntilSomethingIsNewer) {
  const NetRun first = BuildLibrary("Debug");
  EXPECT_EQ(BuildLibrary("Debug").printed, "The project is up-to-date.\n");
  for (const char* file :
       {"Library/Prices.cs", "Library/Texts/Greetings.resx", "Library/Texts/Greetings.de.resx",
        "Library/images/2nd/note.txt", "Common/AssemblyInfo.cs"}) {
    Touch(file);
    const auto time = fs::last_write_time(folder_ / file);
    EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded) << file;
    fs::last_write_time(folder_ / file, time - std::chrono::seconds(10));
    BuildLibrary("Debug");
    EXPECT_EQ(BuildLibrary("Debug").built.status, Status::UpToDate) << file;
  }
  Change("Library/Library.csproj", "DEBUG;TRACE", "DEBUG");
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded);
  fs::remove(folder_ / "Library/bin/Debug/Shop.Data.dll");
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded);
  EXPECT_TRUE(folder_.Has("Library/bin/Debug/Shop.Data.dll"));
}

TEST_F(MonoBuild, CompilesAnewWhatNeedsANewLibrary) {
  NetRun library = BuildLibrary("Debug");
  BuildProgram("Debug", library.built);
  EXPECT_EQ(BuildProgram("Debug", library.built).built.status, Status::UpToDate);
  Change("Library/Prices.cs", "\"debug\"", "\"changed\"");
  Touch("Library/Prices.cs");
  library = BuildLibrary("Debug");
  const NetRun program = BuildProgram("Debug", library.built);
  EXPECT_EQ(program.built.status, Status::Succeeded);
  EXPECT_EQ(Run(program.built.output).substr(0, 8), "changed\n");
}

TEST_F(MonoBuild, NamesErrorsByFileAndLine) {
  Change("Library/Prices.cs", "int sum = 0;", "int sum = nothing;");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.status, Status::Failed);
  EXPECT_NE(run.printed.find(folder_ / "Library/Prices.cs(27,14): error CS0103: "), std::string::npos)
      << run.printed;
  EXPECT_NE(run.printed.find("Build complete -- 1 errors, 0 warnings\n"), std::string::npos) << run.printed;
  EXPECT_EQ(run.counts.errors, 1);
  EXPECT_FALSE(folder_.Has("Library/bin/Debug/Shop.Data.dll"));
  // And the failure is not forgotten.
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Failed);
}

TEST_F(MonoBuild, NeverTakesAnOldProgramForANewOne) {
  ASSERT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded);
  Change("Library/Library.csproj", "DEBUG;TRACE", "DEBUG");
  Change("Library/Prices.cs", "int sum = 0;", "int sum = nothing;");
  fs::last_write_time(folder_ / "Library/Prices.cs",
                      fs::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Failed);
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Failed);
}

TEST_F(MonoBuild, SaysWhichSourcesAreMissing) {
  fs::remove(folder_ / "Library/Prices.cs");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.reason, "Source file 'Prices.cs' could not be found");
  EXPECT_EQ(run.printed,
            folder_ / "Library/Library.csproj : error CS2001: Source file 'Prices.cs' could not be found\n");
}

TEST_F(MonoBuild, SaysWhichKeyIsMissingAndSignsWithTheOneThatIsThere) {
  NetRun run = BuildLibrary("Signed");
  EXPECT_EQ(run.built.status, Status::Failed);
  EXPECT_NE(
      run.printed.find(folder_ /
                       "Common/AssemblyInfo.cs : error CS1548: The key file '..\\..\\..\\keys\\shop.snk' is "
                       "not there."),
      std::string::npos)
      << run.printed;
  QX_NEEDS("sn");
  fs::create_directory(folder_ / "keys");
  Output({"sn", "-k", "keys/shop.snk"});
  run = BuildLibrary("Signed");
  ASSERT_EQ(run.built.status, Status::Succeeded) << run.printed;
  EXPECT_EQ(run.counts.warnings, 0) << run.printed;
  EXPECT_NE(Output({"sn", "-v", run.built.output}).find("is strongnamed"), std::string::npos);
  EXPECT_NE(
      Output({"sn", "-v", folder_ / "Library/bin/Signed/de/Shop.Data.resources.dll"}).find("is strongnamed"),
      std::string::npos);
}

TEST_F(MonoBuild, NamesTheResourceThatCannotBeRead) {
  Change("Library/Texts/Greetings.de.resx", "</root>", "</toor>");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.status, Status::Failed);
  EXPECT_NE(run.printed.find(folder_ / "Library/Texts/Greetings.de.resx : error RG0000: "), std::string::npos)
      << run.printed;
}

TEST_F(MonoBuild, WarnsOfReferencesThatAreNowhere) {
  Change("Library/Library.csproj", "\"System.XML\"", "\"No.Such.Thing\"");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.status, Status::Succeeded);
  EXPECT_NE(
      run.printed.find(
          "Library.csproj : warning MSB3245: The referenced component 'No.Such.Thing' could not be found\n"),
      std::string::npos)
      << run.printed;
}

TEST_F(MonoBuild, RefusesAConfigurationThatIsNotThere) {
  EXPECT_EQ(BuildLibrary("Profile").built.reason,
            "it has no configuration \"Profile\", only: Debug, Release, Signed");
}

TEST_F(MonoBuild, RefusesToWriteToADriveOfWindows) {
  Change("Library/Library.csproj", "bin\\Debug\\", "C:\\out\\");
  EXPECT_EQ(BuildLibrary("Debug").built.reason, "the output would go to a drive of Windows: C:\\out\\");
}

TEST_F(MonoBuild, CleansWhatItMade) {
  const std::string before = Output({"find", ".", "-type", "f"});
  BuildLibrary("Debug");
  ProjectTask task = Task("Library/Library.csproj", "Debug");
  task.goal = Goal::Clean;
  EXPECT_EQ(Build(task).built.status, Status::Succeeded);
  EXPECT_EQ(Output({"find", ".", "-type", "f"}), before);
}

TEST_F(MonoBuild, RebuildsWhatIsUpToDate) {
  BuildLibrary("Debug");
  ProjectTask task = Task("Library/Library.csproj", "Debug");
  task.goal = Goal::Rebuild;
  EXPECT_EQ(Build(task).built.status, Status::Succeeded);
}

TEST_F(MonoBuild, RunsBuildEvents) {
  if (WineProgram().empty()) GTEST_SKIP() << "wine is not installed";
  const std::string prefix = folder_ / "prefix";
  setenv("WINEPREFIX", prefix.c_str(), 1);
  Change("Library/Library.csproj", "PreBuildEvent = \"\"",
         "PreBuildEvent = \"echo // made &gt; &quot;$(ProjectDir)Made.cs&quot;\"");
  Change("Library/Library.csproj", "PostBuildEvent = \"\"",
         "PostBuildEvent = \"copy $(TargetFileName) copy.dll&#xd;&#xa;copy gone.dll other.dll\"");
  Change("Library/Library.csproj", "RelPath = \"Prices.cs\"",
         "RelPath = \"Made.cs\" BuildAction = \"Compile\" /><File RelPath = \"Prices.cs\"");
  const NetRun run = BuildLibrary("Debug");
  EXPECT_EQ(run.built.reason, "PostBuildEvent: a command returned code 1");
  EXPECT_TRUE(folder_.Has("Library/Made.cs"));
  EXPECT_EQ(folder_.Read("Library/bin/Debug/copy.dll"), folder_.Read("Library/bin/Debug/Shop.Data.dll"));
  EXPECT_NE(run.printed.find("Performing Pre-Build Event...\necho // made > \"Z:\\"), std::string::npos)
      << run.printed;
  EXPECT_NE(run.printed.find("Performing Post-Build Event...\ncopy Shop.Data.dll copy.dll\n"),
            std::string::npos);
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Failed) << "what failed is not up to date";
  folder_.Write("Library/bin/Debug/gone.dll", "");
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::Succeeded);
  EXPECT_EQ(BuildLibrary("Debug").built.status, Status::UpToDate);
  unsetenv("WINEPREFIX");
  Output({"env", "WINEPREFIX=" + prefix, "wineserver", "-k"});
}

TEST_F(MonoBuild, SaysThatBuildEventsNeedWine) {
  if (!WineProgram().empty()) GTEST_SKIP() << "wine is installed";
  Change("Library/Library.csproj", "PostBuildEvent = \"\"", "PostBuildEvent = \"copy a b\"");
  EXPECT_EQ(BuildLibrary("Debug").built.reason, std::string("PostBuildEvent: ") + kNoWine);
}

}  // namespace
}  // namespace qx
