#include "solution/SolutionFile.h"

#include <gtest/gtest.h>

#include <chrono>

#include "host/testing/TestFolder.h"
#include "solution/MemoryFiles.h"

namespace qx {
namespace {

using Items = std::vector<std::string>;

constexpr const char* kHeader = "Microsoft Visual Studio Solution File, Format Version 9.00\r\n";
constexpr const char* kCSharp = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}";
constexpr const char* kA = "{AAAAAAAA-0000-0000-0000-000000000001}";
constexpr const char* kB = "{BBBBBBBB-0000-0000-0000-000000000002}";

std::string Project(const std::string& name, const std::string& path, const std::string& guid) {
  return std::string("Project(\"") + kCSharp + "\") = \"" + name + "\", \"" + path + "\", \"" + guid +
         "\"\r\nEndProject\r\n";
}

std::string Solution(const std::string& projects, const std::string& sections = "") {
  return kHeader + projects + "Global\r\n" + sections + "EndGlobal\r\n";
}

std::string Section(const std::string& head, const std::string& lines) {
  return "\tGlobalSection(" + head + ") = preSolution\r\n" + lines + "\tEndGlobalSection\r\n";
}

class SolutionReader : public testing::Test {
 protected:
  SolutionReader() {
    for (const char* name : {"A.csproj", "B.csproj", "App\\App.csproj"}) files.Put(name, "");
  }
  SolutionModel Read(const std::string& text) { return ReadSolution(MemoryFiles::Solution(), text, files); }
  std::string Refusal(const std::string& text) {
    return MessageOf([&] { Read(text); });
  }
  Items Configurations(const std::string& sections) {
    return Read(Solution("", sections)).configurations.value();
  }

  MemoryFiles files;
};

// The header.

TEST_F(SolutionReader, AcceptsAnyFormatVersion) {
  for (const char* version : {"7.00", "8.00", "9.00", "12.00", "", " what ever"}) {
    EXPECT_NO_THROW(Read(std::string("Microsoft Visual Studio Solution File, Format Version ") + version +
                         "\r\nGlobal\r\nEndGlobal\r\n"));
  }
}

TEST_F(SolutionReader, AcceptsTheHeaderInCapitalsAndAnywhereInTheLine) {
  EXPECT_NO_THROW(
      Read("xx MICROSOFT VISUAL STUDIO SOLUTION FILE, FORMAT VERSION 1.0 yy\r\nGlobal\r\nEndGlobal\r\n"));
}

TEST_F(SolutionReader, DropsEmptyLinesBeforeTheHeader) {
  EXPECT_EQ(Read("\r\n\r\n" + Solution(Project("A", "A.csproj", kA))).projects.size(), 1u);
}

TEST_F(SolutionReader, RefusesAFirstLineThatIsABlank) {
  EXPECT_EQ(Refusal(" \r\n" + Solution("")), "Invalid Solution File Format :  ");
}

TEST_F(SolutionReader, RefusesAnotherFirstLineAsItStands) {
  EXPECT_EQ(Refusal("\r\nSome OTHER File\r\n"), "Invalid Solution File Format : Some OTHER File");
  EXPECT_EQ(Refusal("# comment\r\n" + Solution("")), "Invalid Solution File Format : # comment");
}

// The file's end.

TEST_F(SolutionReader, AnEmptyFileRunsOffTheLineList) {
  EXPECT_EQ(Refusal(""), "List index out of bounds (0)");
  EXPECT_EQ(Refusal("\r\n\r\n"), "List index out of bounds (0)");
}

TEST_F(SolutionReader, AFileThatEndsBeforeGlobalRunsOffTheLineList) {
  EXPECT_EQ(Refusal(kHeader), "List index out of bounds (1)");
  EXPECT_EQ(Refusal("\r\n" + (kHeader + Project("A", "A.csproj", kA))), "List index out of bounds (3)");
}

TEST_F(SolutionReader, AFileThatEndsBeforeEndGlobalRunsOffTheLineList) {
  EXPECT_EQ(Refusal(std::string(kHeader) + "Global\r\n"), "List index out of bounds (2)");
  EXPECT_EQ(Refusal(std::string(kHeader) + "Global\r\nendglobal\r\n"), "List index out of bounds (3)");
}

TEST_F(SolutionReader, AFileThatEndsInASectionRunsOffTheLineList) {
  for (const char* head : {"SolutionConfiguration", "SolutionConfigurationPlatforms", "ProjectConfiguration",
                           "ProjectConfigurationPlatforms", "ProjectDependencies"}) {
    EXPECT_EQ(Refusal(std::string(kHeader) + "Global\r\n\tGlobalSection(" + head +
                      ") = x\r\n\t\ta = b\r\nEndGlobal\r\n"),
              "List index out of bounds (5)")
        << head;
  }
}

TEST_F(SolutionReader, GlobalBehindABlankDoesNotEndTheProjects) {
  EXPECT_EQ(Refusal(std::string(kHeader) + " Global\r\nEndGlobal\r\n"), "List index out of bounds (3)");
  EXPECT_EQ(Refusal(std::string(kHeader) + "Global \r\nEndGlobal\r\n"), "List index out of bounds (3)");
  EXPECT_EQ(Refusal(std::string(kHeader) + "global\r\nEndGlobal\r\n"), "List index out of bounds (3)");
}

TEST_F(SolutionReader, EndGlobalAndSectionEndsCountTrimmed) {
  EXPECT_EQ(Read(std::string(kHeader) + "Global\r\n" + Section("SolutionConfiguration", "a = b\r\n") +
                 "\t EndGlobal \r\nwhatever follows")
                .configurations,
            Items{"b"});
}

// Projects.

TEST_F(SolutionReader, KeepsTheFieldsOfAProjectAsTheyAreWritten) {
  const SolutionModel model = Read(Solution(Project("App", "App\\App.csproj", kA)));
  ASSERT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.projects[0].name, "App");
  EXPECT_EQ(model.projects[0].path, "App\\App.csproj");
  EXPECT_EQ(model.projects[0].typeGuid, kCSharp);
  EXPECT_EQ(model.projects[0].guid, kA);
}

TEST_F(SolutionReader, KeepsProjectsInFileOrder) {
  const SolutionModel model = Read(Solution(Project("B", "B.csproj", kB) + Project("A", "A.csproj", kA)));
  ASSERT_EQ(model.projects.size(), 2u);
  EXPECT_EQ(model.projects[0].name, "B");
  EXPECT_EQ(model.projects[1].name, "A");
}

TEST_F(SolutionReader, OmitsProjectsWhoseFilesAreMissing) {
  const SolutionModel model =
      Read(Solution(Project("Gone", "Gone\\Gone.csproj", kA) + Project("B", "B.csproj", kB)));
  ASSERT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.projects[0].name, "B");
}

TEST_F(SolutionReader, OmitsSolutionFolders) {
  EXPECT_TRUE(Read(Solution(Project("Items", "Items", kA))).projects.empty());
}

TEST_F(SolutionReader, KeepsWebProjectWithoutFileTest) {
  const SolutionModel model = Read(Solution(Project("Web", "http://localhost/Web/Web.csproj", kA) +
                                            Project("Safe", "over https://host/Safe.vbproj", kB)));
  ASSERT_EQ(model.projects.size(), 2u);
  EXPECT_EQ(model.projects[0].path, "http://localhost/Web/Web.csproj");
  EXPECT_EQ(model.projects[1].path, "over https://host/Safe.vbproj");
  EXPECT_EQ(files.looks, 0);
}

TEST_F(SolutionReader, KnowsWebProjectsByLowerCaseOnly) {
  EXPECT_TRUE(Read(Solution(Project("Web", "HTTP://localhost/Web/Web.csproj", kA))).projects.empty());
}

TEST_F(SolutionReader, ReadsProjectLinesTrimmed) {
  EXPECT_EQ(Read(Solution("\t  " + Project("A", "A.csproj", kA))).projects.size(), 1u);
}

TEST_F(SolutionReader, PassesOverOtherLinesBetweenProjects) {
  const std::string inside = Project("A", "A.csproj", kA);
  const std::string sections = "\tProjectSection(ProjectDependencies) = postProject\r\n\t\t" +
                               std::string(kB) + " = " + kB + "\r\n\tEndProjectSection\r\n";
  const SolutionModel model =
      Read(Solution("# comment\r\n\r\nproject(\"x\r\nProject('x\r\n" + inside + sections));
  ASSERT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.projects[0].dependencies.Count(), 0) << "dependencies of the 2005 layout are not read";
}

TEST_F(SolutionReader, RefusesAProjectWithTwoFields) {
  EXPECT_EQ(Refusal(Solution(std::string("Project(\"") + kCSharp + "\") = \"A\", \"A.csproj\"\r\n")),
            "Error parsing project string");
}

TEST_F(SolutionReader, RefusesAProjectWithoutAnEqualsSign) {
  EXPECT_EQ(Refusal(Solution(std::string("Project(\"") + kCSharp + "\") \"A\", \"A.csproj\", \"x\"\r\n")),
            "Error parsing project string");
  EXPECT_EQ(Refusal(Solution("Project(\"\r\n")), "Error parsing project string");
  EXPECT_EQ(Refusal(Solution("Project(\"=a,A.csproj,c\r\n")), "Error parsing project string")
      << "the equals sign lies inside the 38 characters";
}

TEST_F(SolutionReader, RefusesABrokenProjectEvenWhenItsFileIsMissing) {
  EXPECT_EQ(Refusal(Solution(Project("A", "A.csproj", kA) + "Project(\"" + kCSharp + "\") =\r\n")),
            "Error parsing project string");
}

TEST_F(SolutionReader, IgnoresFieldsBeyondTheThird) {
  const SolutionModel model = Read(
      Solution(std::string("Project(\"") + kCSharp + "\") = A A.csproj " + kA + " more, \"and more\"\r\n"));
  ASSERT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.projects[0].guid, kA);
}

TEST_F(SolutionReader, CutsTheTypeAtThirtyEightCharactersWhateverTheyAre) {
  const std::string odd(38, 'x');
  const SolutionModel model =
      Read(Solution("Project(\"" + odd + "junk before = \"A\", \"A.csproj\", \"g\"\r\n"));
  ASSERT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.projects[0].typeGuid, odd);
}

TEST_F(SolutionReader, FieldsMayHoldBlanksCommasAndQuotes) {
  files.Put("My, App\\A.csproj", "");
  const SolutionModel model = Read(Solution(Project("Say \"\"hi\"\"", "My, App\\A.csproj", kA)));
  ASSERT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.projects[0].name, "Say \"hi\"");
  EXPECT_EQ(model.projects[0].path, "My, App\\A.csproj");
}

TEST_F(SolutionReader, ReadsFilesWhoseLinesEndInLfAlone) {
  std::string text =
      Solution(Project("A", "A.csproj", kA), Section("SolutionConfiguration", "Debug = Debug\r\n"));
  std::erase(text, '\r');
  const SolutionModel model = Read(text);
  EXPECT_EQ(model.projects.size(), 1u);
  EXPECT_EQ(model.configurations, Items{"Debug"});
}

TEST_F(SolutionReader, AsksForEachProjectOnce) {
  Read(Solution(Project("A", "A.csproj", kA) + Project("B", "B.csproj", kB) +
                Project("Gone", "x.csproj", kA)));
  EXPECT_EQ(files.looks, 3);
  EXPECT_TRUE(files.reads.empty()) << "managed projects are not read";
}

// Resource scripts. What a project file lists is VcprojScan's matter.

std::string Vcproj(const std::vector<std::string>& scripts) {
  std::string xml = "<VisualStudioProject><Files><Filter>";
  for (const std::string& script : scripts) xml += "<File RelativePath=\"" + script + "\"/>";
  return xml + "</Filter></Files></VisualStudioProject>";
}

TEST_F(SolutionReader, FindsTheResourceScriptsOfCppProjects) {
  files.Put("Cpp\\Cpp.vcproj", Vcproj({".\\Res\\App.RC", "..\\Shared\\b.rc", "Res\\App.RC"}));
  const SolutionModel model = Read(Solution(Project("Cpp", "Cpp\\Cpp.vcproj", kA)));
  EXPECT_EQ(model.projects.at(0).resourceScripts.Items(),
            (Items{MemoryFiles::Full("Cpp/Res/App.RC"), MemoryFiles::Full("Shared/b.rc"),
                   MemoryFiles::Full("Cpp/Res/App.RC")}));
}

TEST_F(SolutionReader, ScansAProjectWhoseExtensionIsInCapitals) {
  files.Put("Cpp.VCPROJ", Vcproj({"a.rc"}));
  EXPECT_EQ(Read(Solution(Project("Cpp", "Cpp.VCPROJ", kA))).projects.at(0).resourceScripts.Count(), 1);
}

TEST_F(SolutionReader, ScansNoOtherProjects) {
  files.Put("A.csproj", Vcproj({"a.rc"}));
  EXPECT_EQ(Read(Solution(Project("A", "A.csproj", kA))).projects.at(0).resourceScripts.Count(), 0);
}

TEST_F(SolutionReader, AMissingCppProjectIsOmittedLikeAnyOther) {
  EXPECT_TRUE(Read(Solution(Project("Cpp", "Cpp.vcproj", kA))).projects.empty());
}

TEST_F(SolutionReader, ACppProjectKnownByItsUrlHasNoScripts) {
  const SolutionModel model = Read(Solution(Project("Web", "http://localhost/Web.vcproj", kA)));
  EXPECT_EQ(model.projects.at(0).resourceScripts.Count(), 0);
}

TEST_F(SolutionReader, AMalformedCppProjectFailsTheWholeSolution) {
  files.Put("Cpp.vcproj", "<VisualStudioProject>");
  const std::string message =
      Refusal(Solution(Project("A", "A.csproj", kA) + Project("Cpp", "Cpp.vcproj", kB)));
  EXPECT_TRUE(message.starts_with("Error parsing project file : ")) << message;
  EXPECT_GT(message.size(), std::string("Error parsing project file : ").size());
}

TEST_F(SolutionReader, ACppProjectThatCannotBeReadFailsTheWholeSolution) {
  files.Put("Cpp.vcproj", MemoryFiles::kUnreadable);
  EXPECT_EQ(Refusal(Solution(Project("Cpp", "Cpp.vcproj", kB))), "Error parsing project file : no such file");
}

TEST_F(SolutionReader, TheFirstScriptWithAVersionResourceIsTheVersionInfoFile) {
  files.Put("Cpp.vcproj", Vcproj({"none.rc", "one.rc", "two.rc"}));
  files.Put("none.rc", "1 VersionInfo\r\n");
  files.Put("one.rc", "VS_VERSION_INFO VERSIONINFO\r\n");
  files.Put("two.rc", "VS_VERSION_INFO VERSIONINFO\r\n");
  const SolutionModel model = Read(Solution(Project("Cpp", "Cpp.vcproj", kA)));
  EXPECT_EQ(model.projects.at(0).versionInfoFile, MemoryFiles::Full("one.rc"));
  EXPECT_EQ(files.reads[MemoryFiles::Full("none.rc")], 1);
  EXPECT_EQ(files.reads[MemoryFiles::Full("one.rc")], 1);
  EXPECT_EQ(files.reads.count(MemoryFiles::Full("two.rc")), 0u) << "nothing is read after the first match";
}

TEST_F(SolutionReader, WithoutAVersionResourceThereIsNoVersionInfoFile) {
  files.Put("Cpp.vcproj", Vcproj({"a.rc"}));
  files.Put("a.rc", "versioninfo VERSION INFO\r\n");
  EXPECT_EQ(Read(Solution(Project("Cpp", "Cpp.vcproj", kA))).projects.at(0).versionInfoFile, "");
}

TEST_F(SolutionReader, AScriptThatCannotBeReadIsListedAndPassedOver) {
  files.Put("Cpp.vcproj", Vcproj({"gone.rc", "locked.rc", "a.rc"}));
  files.Put("locked.rc", MemoryFiles::kUnreadable);
  files.Put("a.rc", "VERSIONINFO");
  const SolutionModel model = Read(Solution(Project("Cpp", "Cpp.vcproj", kA)));
  EXPECT_EQ(model.projects.at(0).resourceScripts.Count(), 3);
  EXPECT_EQ(model.projects.at(0).versionInfoFile, MemoryFiles::Full("a.rc"));
}

TEST_F(SolutionReader, FindsAVersionResourceInUtf16) {
  std::string wide = "\xFF\xFE";
  for (const char c : std::string("1 VERSIONINFO\r\n")) wide.append(1, c).append(1, '\0');
  files.Put("Cpp.vcproj", Vcproj({"a.rc"}));
  files.Put("a.rc", wide);
  EXPECT_EQ(Read(Solution(Project("Cpp", "Cpp.vcproj", kA))).projects.at(0).versionInfoFile,
            MemoryFiles::Full("a.rc"));
}

// Solution configurations.

TEST_F(SolutionReader, WithoutASectionThereAreNoConfigurations) {
  EXPECT_EQ(Read(Solution("")).configurations, std::nullopt);
  EXPECT_EQ(Read(Solution("", Section("SolutionProperties", "HideSolutionNode = FALSE\r\n"))).configurations,
            std::nullopt);
}

TEST_F(SolutionReader, AnEmptySectionGivesAnEmptyList) {
  EXPECT_EQ(Configurations(Section("SolutionConfiguration", "")), Items{});
}

TEST_F(SolutionReader, ReadsConfigurationsOfBothLayouts) {
  EXPECT_EQ(
      Configurations(Section("SolutionConfiguration", "\t\tDebug = Debug\r\n\t\tRelease = Release\r\n")),
      (Items{"Debug", "Release"}));
  EXPECT_EQ(Configurations(Section("SolutionConfigurationPlatforms", "\t\tDebug|Win32 = Debug|Win32\r\n")),
            Items{"Debug|Win32"});
}

TEST_F(SolutionReader, TakesTheValueNotTheName) {
  EXPECT_EQ(Configurations(Section("SolutionConfiguration",
                                   "\t\tConfigName.0 = Debug\r\n\t\tConfigName.1 = Release\r\n")),
            (Items{"Debug", "Release"}));
}

TEST_F(SolutionReader, LooksTheValueUpInTheWholeFileByNamePassingOverCase) {
  // The first line of that name anywhere decides, with the blanks that stand before the equals sign.
  const std::string early = "\t\tDEBUG = Early\r\n";
  const SolutionModel model =
      Read(std::string(kHeader) + early + "Global\r\n" +
           Section("SolutionConfiguration", "\t\tDebug = Late\r\n\t\tRelease= R\r\n") + "EndGlobal\r\n");
  EXPECT_EQ(model.configurations, (Items{"Early", "R"}));
}

TEST_F(SolutionReader, TheNameIsLookedUpUntrimmed) {
  const SolutionModel model =
      Read(std::string(kHeader) + "Debug = Early\r\nGlobal\r\n" +
           Section("SolutionConfiguration", "\t\tDebug = Late\r\n") + "EndGlobal\r\n");
  EXPECT_EQ(model.configurations, Items{"Late"}) << "the early line lacks the tabs";
}

TEST_F(SolutionReader, NamesThatDifferInCaseOnlyShareTheFirstValue) {
  EXPECT_EQ(Configurations(
                Section("SolutionConfiguration", "debug = One\r\nDEBUG = Two\r\nÄ = Drei\r\nä = Vier\r\n")),
            (Items{"One", "One", "Drei", "Drei"}));
}

TEST_F(SolutionReader, TheValueBeginsAtTheFirstEqualsSign) {
  EXPECT_EQ(Configurations(Section("SolutionConfiguration", "a = b = c\r\n")), Items{"b = c"});
}

TEST_F(SolutionReader, SkipsDescriptionInThatCaseOnly) {
  EXPECT_EQ(
      Configurations(Section("SolutionConfiguration", "\t\tDescription = x\r\n\t\tdescription = y\r\n")),
      Items{"x"})
      << "the value of the first line of that name, passing over case";
  EXPECT_EQ(Configurations(Section("SolutionConfiguration", "description = y\r\n")), Items{"y"});
}

TEST_F(SolutionReader, ALineWithoutAnEqualsSignIsAConfigurationWithoutAName) {
  EXPECT_EQ(Configurations(Section("SolutionConfiguration", "\t\tDebug\r\n\r\na = b\r\n")),
            (Items{"", "", "b"}));
  EXPECT_EQ(Configurations(Section("SolutionConfiguration", "Debug\r\n= first\r\n")),
            (Items{"first", "first"}))
      << "a line that begins with the equals sign has the empty name";
}

TEST_F(SolutionReader, ALaterSectionTakesThePlaceOfAnEarlierOne) {
  EXPECT_EQ(Configurations(Section("SolutionConfiguration", "a = a\r\n") +
                           Section("SolutionConfigurationPlatforms", "b = b\r\nc = c\r\n")),
            (Items{"b", "c"}));
}

TEST_F(SolutionReader, SectionHeadsAreExactBeginningsOfTrimmedLines) {
  EXPECT_EQ(Configurations("GlobalSection(SolutionConfiguration)\r\na = a\r\n  EndGlobalSection  \r\n"),
            Items{"a"});
  EXPECT_EQ(Configurations("\tGlobalSection(SolutionConfiguration)junk\r\na = a\r\nEndGlobalSection\r\n"),
            Items{"a"});
  for (const char* head :
       {"solutionconfiguration", "SolutionConfigurationPlatform", "SolutionConfiguration "}) {
    EXPECT_EQ(Read(Solution("", Section(head, "a = a\r\n"))).configurations, std::nullopt) << head;
  }
}

TEST_F(SolutionReader, WalksPastProjectConfigurationsWhateverTheyHold) {
  for (const char* head : {"ProjectConfiguration", "ProjectConfigurationPlatforms"}) {
    const SolutionModel model = Read(Solution(
        Project("A", "A.csproj", kA),
        Section(head, std::string("\t\t") + kA + ".Debug.ActiveCfg = Debug|Win32\r\nEndGlobal\r\nx\r\n") +
            Section("SolutionConfiguration", "a = a\r\n")));
    EXPECT_EQ(model.configurations, Items{"a"}) << head;
  }
}

TEST_F(SolutionReader, AnEndGlobalInsideAnUnknownSectionEndsTheFile) {
  EXPECT_EQ(
      Read(Solution("", Section("Other", "EndGlobal\r\n") + Section("SolutionConfiguration", "a = a\r\n")))
          .configurations,
      std::nullopt);
}

// Dependencies of the 2002 and 2003 layout.

TEST_F(SolutionReader, ReadsDependenciesInFileOrder) {
  const std::string lines = std::string("\t\t") + kA + ".0 = " + kB + "\r\n\t\t" + kA + ".1 = {OTHER} \r\n";
  const SolutionModel model = Read(Solution(Project("A", "A.csproj", kA) + Project("B", "B.csproj", kB),
                                            Section("ProjectDependencies", lines)));
  EXPECT_EQ(model.projects.at(0).dependencies.Items(), (Items{kB, "{OTHER}"}));
  EXPECT_EQ(model.projects.at(1).dependencies.Count(), 0);
}

TEST_F(SolutionReader, DropsDependenciesOfProjectsThatAreNotInTheModel) {
  const SolutionModel model = Read(
      Solution(Project("Gone", "Gone.csproj", kA) + Project("B", "B.csproj", kB),
               Section("ProjectDependencies", std::string(kA) + ".0 = " + kB + "\r\n" + "x = y\r\n\r\n")));
  EXPECT_EQ(model.projects.at(0).dependencies.Count(), 0);
}

TEST_F(SolutionReader, ADependencyNeedsAnEqualsSignAndTheExactIdentifier) {
  const SolutionModel model =
      Read(Solution(Project("A", "A.csproj", kA),
                    Section("ProjectDependencies",
                            std::string(kA) + ".0\r\n{aaaaaaaa-0000-0000-0000-000000000001}.0 = x\r\n" + kA +
                                "= y = z\r\n")));
  EXPECT_EQ(model.projects.at(0).dependencies.Items(), Items{"y = z"});
}

TEST_F(SolutionReader, OfTwoProjectsOfOneIdentifierTheFirstDepends) {
  const SolutionModel model =
      Read(Solution(Project("A", "A.csproj", kA) + Project("B", "B.csproj", kA),
                    Section("ProjectDependencies", std::string(kA) + ".0 = " + kB + "\r\n")));
  EXPECT_EQ(model.projects.at(0).dependencies.Count(), 1);
  EXPECT_EQ(model.projects.at(1).dependencies.Count(), 0);
}

// Time grows with the file, whatever it holds. The figure is loose: quadratic work would take minutes.
TEST_F(SolutionReader, ManyLinesManySectionsAndManyNamesTakeLinearTime) {
  std::string sections;
  for (int i = 0; i < 50000; ++i) {
    sections += Section("SolutionConfiguration", "n" + std::to_string(i) + " = v\r\n");
  }
  std::string names;
  for (int i = 0; i < 100000; ++i) names += "name" + std::to_string(i) + " = v" + std::to_string(i) + "\r\n";
  std::string projects;
  std::string dependencies;
  for (int i = 0; i < 20000; ++i) {
    projects += Project("P", "A.csproj", "{" + std::to_string(1000000 + i) + "}");
    dependencies += "{" + std::to_string(1000000 + i) + "} = x\r\n";
  }
  const auto start = std::chrono::steady_clock::now();
  const SolutionModel model = Read(
      std::string(100000, '\n') + Solution(projects, sections + Section("ProjectDependencies", dependencies) +
                                                         Section("SolutionConfiguration", names)));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(model.configurations->size(), 100000u);
  EXPECT_EQ(model.configurations->back(), "v99999");
  EXPECT_EQ(model.projects.size(), 20000u);
}

}  // namespace
}  // namespace qx
