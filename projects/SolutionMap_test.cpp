#include "projects/SolutionMap.h"

#include <gtest/gtest.h>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

const std::string kA = "{AAAAAAAA-0000-0000-0000-000000000001}";
const std::string kB = "{BBBBBBBB-0000-0000-0000-000000000002}";
const std::string kC = "{CCCCCCCC-0000-0000-0000-000000000003}";

std::string Head(const std::string& number) {
  return "\r\nMicrosoft Visual Studio Solution File, Format Version " + number + "\r\n";
}
std::string Project(const std::string& name, const std::string& guid, const std::string& inside = "") {
  return "Project(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = \"" + name + "\", \"" + name + "\\" + name +
         ".vcproj\", \"" + guid + "\"\r\n" + inside + "EndProject\r\n";
}
std::string Section(const std::string& name, const std::string& rows) {
  return "\tGlobalSection(" + name + ") = preSolution\r\n" + rows + "\tEndGlobalSection\r\n";
}
std::string Global(const std::string& sections) { return "Global\r\n" + sections + "EndGlobal\r\n"; }

TEST(SolutionMap, TellsTheFormatByTheNumberInTheHeader) {
  EXPECT_EQ(FormatOfSolution(Head("7.00")), SolutionFormat::Vs2002);
  EXPECT_EQ(FormatOfSolution(Head("8.00")), SolutionFormat::Vs2003);
  EXPECT_EQ(FormatOfSolution(Head("9.00")), SolutionFormat::Vs2005);
  EXPECT_EQ(FormatOfSolution(Head("10.00")), SolutionFormat::Unknown);
  EXPECT_EQ(FormatOfSolution("Global"), SolutionFormat::Unknown);
}

TEST(SolutionMap, ReadsTheFormOf2002) {
  const SolutionMap map = ReadSolutionMap(
      Head("7.00") + Project("A", kA) + Project("B", kB) +
      Global(Section("SolutionConfiguration", "\t\tConfigName.0 = Debug\r\n\t\tConfigName.1 = Release\r\n") +
             Section("ProjectDependencies",
                     "\t\t" + kA + ".0 = " + kB + "\r\n\t\t" + kA + ".1 = " + kC + "\r\n") +
             Section("ProjectConfiguration", "\t\t" + kA + ".Debug.ActiveCfg = Debug|Win32\r\n\t\t" + kA +
                                                 ".Debug.Build.0 = Debug|Win32\r\n\t\t" + kA +
                                                 ".Release.ActiveCfg = Release MinSize|Win32\r\n")));
  EXPECT_EQ(map.format, SolutionFormat::Vs2002);
  EXPECT_EQ(map.configurations, (std::vector<std::string>{"Debug", "Release"}));
  ASSERT_EQ(map.projects.size(), 2U);
  EXPECT_EQ(map.projects[0].path, "A\\A.vcproj");
  EXPECT_EQ(map.projects[0].needs, (std::vector<std::string>{kB, kC}));
  EXPECT_TRUE(map.projects[1].needs.empty());
  const ProjectMapping* debug = FindMapping(map.projects[0], "debug");
  ASSERT_NE(debug, nullptr);
  EXPECT_EQ(debug->configuration, "Debug|Win32");
  EXPECT_TRUE(debug->isBuilt);
  const ProjectMapping* release = FindMapping(map.projects[0], "Release");
  ASSERT_NE(release, nullptr);
  EXPECT_EQ(release->configuration, "Release MinSize|Win32");
  EXPECT_FALSE(release->isBuilt);
  EXPECT_EQ(FindMapping(map.projects[1], "Debug"), nullptr);
}

TEST(SolutionMap, ReadsTheFormOf2005) {
  const std::string need = "\tProjectSection(ProjectDependencies) = postProject\r\n\t\t" + kB + " = " + kB +
                           "\r\n\tEndProjectSection\r\n";
  const SolutionMap map = ReadSolutionMap(
      Head("9.00") + "# Visual Studio 2005\r\n" + Project("A", kA, need) + Project("B", kB) +
      Global(Section("SolutionConfigurationPlatforms", "\t\tRelease - DLL|Win32 = Release - DLL|Win32\r\n") +
             Section("ProjectConfigurationPlatforms",
                     "\t\t" + kA + ".Release - DLL|Win32.ActiveCfg = Release|x64\r\n\t\t" + kA +
                         ".Release - DLL|Win32.Build.0 = Release|x64\r\n\t\t" + kA +
                         ".Release - DLL|Win32.Deploy.0 = Release|x64\r\n") +
             Section("SolutionProperties", "\t\tHideSolutionNode = FALSE\r\n")));
  EXPECT_EQ(map.configurations, std::vector<std::string>{"Release - DLL|Win32"});
  EXPECT_EQ(map.projects[0].needs, std::vector<std::string>{kB});
  const ProjectMapping* mapping = FindMapping(map.projects[0], "Release - DLL|Win32");
  ASSERT_NE(mapping, nullptr);
  EXPECT_EQ(mapping->configuration, "Release|x64");
  EXPECT_TRUE(mapping->isBuilt);
  EXPECT_TRUE(mapping->isDeployed);
}

TEST(SolutionMap, GivesEveryProjectOfOneIdentifierWhatIsSaidOfIt) {
  const SolutionMap map =
      ReadSolutionMap(Head("8.00") + Project("A", kA) + Project("B", kA) +
                      Global(Section("SolutionConfiguration", "\t\tDebug = Debug\r\n") +
                             Section("ProjectConfiguration", "\t\t" + LowerCase(kA) +
                                                                 ".Debug.ActiveCfg = Debug|Win32\r\n\t\t" +
                                                                 kA + ".Debug.Build.0 = Debug|Win32\r\n")));
  for (const MappedProject& project : map.projects) {
    ASSERT_NE(FindMapping(project, "Debug"), nullptr) << project.name;
    EXPECT_TRUE(FindMapping(project, "Debug")->isBuilt) << project.name;
  }
}

TEST(SolutionMap, TakesMappingsThatAreWrittenByTheConfigurationsKey) {
  const SolutionMap map = ReadSolutionMap(
      Head("8.00") + Project("A", kA) +
      Global(Section("ProjectConfiguration", "\t\t" + kA + ".Old.Build.0 = X|Win32\r\n") +
             Section("SolutionConfiguration", "\t\tDescription = of mine\r\n\t\tOld = New\r\n")));
  EXPECT_EQ(map.configurations, std::vector<std::string>{"New"});
  ASSERT_NE(FindMapping(map.projects[0], "New"), nullptr);
  EXPECT_TRUE(FindMapping(map.projects[0], "New")->isBuilt);
}

TEST(SolutionMap, KeepsFoldersAndProjectsWithoutAFile) {
  const SolutionMap map = ReadSolutionMap(
      Head("9.00") + "Project(\"{2150E333-8FDC-42A3-9474-1A3956D46DE8}\") = \"Docs\", \"Docs\", \"" + kC +
      "\"\r\n\tProjectSection(SolutionItems) = preProject\r\n\t\tProject(\"no project\") = a\r\n"
      "\tEndProjectSection\r\nEndProject\r\n");
  ASSERT_EQ(map.projects.size(), 1U);
  EXPECT_EQ(map.projects[0].name, "Docs");
}

TEST(SolutionMap, RefusesWhatIsNoSolution) {
  const auto message = [](const std::string& text) {
    try {
      ReadSolutionMap(text);
    } catch (const Exception& refusal) {
      return refusal.Message();
    }
    return std::string("accepted");
  };
  EXPECT_EQ(message("<Project/>\n"), "Invalid Solution File Format : <Project/>");
  EXPECT_EQ(message(""), "Invalid Solution File Format : ");
  EXPECT_EQ(message(Head("8.00") + "Project(\"" + kA + "\") = \"A\", \"A.vcproj\"\r\n"),
            "Error parsing project string");
}

TEST(SolutionMap, FindsAConfigurationTheWayItIsAskedFor) {
  SolutionMap map;
  EXPECT_EQ(FindConfiguration(map, ""), "");
  map.configurations = {"Debug|Win32", "Release|Any CPU", "Release|Mixed Platforms", "Release|Win32"};
  EXPECT_EQ(FindConfiguration(map, "release|WIN32"), "Release|Win32");
  EXPECT_EQ(FindConfiguration(map, "Release"), "Release|Mixed Platforms");
  EXPECT_EQ(FindConfiguration(map, "Debug"), "Debug|Win32");
  EXPECT_EQ(FindConfiguration(map, ""), "Debug|Win32");
  EXPECT_EQ(FindConfiguration(map, "Release|x64"), "");
  EXPECT_EQ(FindConfiguration(map, "Profile"), "");
}

TEST(SolutionMap, SplitsAtTheFirstBar) {
  EXPECT_EQ(SplitConfiguration("A|B|C").configuration, "A");
  EXPECT_EQ(SplitConfiguration("A|B|C").platform, "B|C");
  EXPECT_EQ(SplitConfiguration("Debug").platform, "");
}

TEST(ConfigurationOf, IsTheMappingOrTheSolutionsOwnName) {
  MappedProject project;
  project.mappings[FoldCase("Release|Mixed Platforms")] = {"Debug|Win32", true, false};
  project.mappings[FoldCase("Old")] = {"Release|.NET", false, true};
  const OwnConfiguration mapped = ConfigurationOf(project, "release|mixed platforms");
  EXPECT_EQ(mapped.configuration + "/" + mapped.platform, "Debug/Win32");
  EXPECT_TRUE(mapped.isBuilt);
  const OwnConfiguration old = ConfigurationOf(project, "Old");
  EXPECT_EQ(old.configuration + "/" + old.platform, "Release/");
  EXPECT_TRUE(!old.isBuilt && old.isDeployed);
  EXPECT_FALSE(ConfigurationOf(project, "Special").isBuilt);
  const OwnConfiguration unsaid = ConfigurationOf({}, "Release|Any CPU");
  EXPECT_EQ(unsaid.configuration + "/" + unsaid.platform, "Release/Any CPU");
  EXPECT_TRUE(unsaid.isBuilt);
}

}  // namespace
}  // namespace qx
