#include "solution/Vsnetsln.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr const char* kCSharp = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}";
constexpr const char* kA = "{AAAAAAAA-0000-0000-0000-000000000001}";
constexpr const char* kB = "{BBBBBBBB-0000-0000-0000-000000000002}";

std::string Project(const std::string& name, const std::string& path, const std::string& guid) {
  return std::string("Project(\"") + kCSharp + "\") = \"" + name + "\", \"" + path + "\", \"" + guid +
         "\"\r\nEndProject\r\n";
}

std::string Solution(const std::string& projects, const std::string& sections = "") {
  return "Microsoft Visual Studio Solution File, Format Version 8.00\r\n" + projects + "Global\r\n" +
         sections + "EndGlobal\r\n";
}

constexpr const char* kConfigurations =
    "\tGlobalSection(SolutionConfiguration) = preSolution\r\n\t\tDebug = Debug\r\n\tEndGlobalSection\r\n";

class OpeningSolutions : public testing::Test {
 protected:
  InterfacePtr<IVSDotNetSolution> Open(const std::string& text) {
    return OpenSolution(folder.Write("App.sln", text));
  }
  // A solution of the projects A and B, of which A depends on B.
  InterfacePtr<IVSDotNetSolution> OpenTwo() {
    folder.Write("A/A.csproj", "");
    folder.Write("B/B.VcProj", "<Project/>");
    return Open(Solution(Project("A", "A\\A.csproj", kA) + Project("B", "B\\B.VcProj", kB),
                         std::string(kConfigurations) +
                             "\tGlobalSection(ProjectDependencies) = postSolution\r\n\t\t" + kA +
                             ".0 = " + kB + "\r\n\tEndGlobalSection\r\n"));
  }
  // The path of a name in the folder, delimiters made native.
  std::string Full(const std::string& name) const { return ExpandPath(folder.Path(), name); }

  TestFolder folder;
};

TEST_F(OpeningSolutions, GivesTheWholeModel) {
  const auto solution = OpenTwo();
  EXPECT_EQ(solution->GetFileName(), Full("App.sln"));
  EXPECT_EQ(solution->GetReservedText1(), "");
  EXPECT_EQ(solution->GetReservedText2(), "");
  ASSERT_EQ(solution->GetConfigurations()->GetCount(), 1);
  EXPECT_EQ(solution->GetConfigurations()->GetItem(0)->GetName(), "Debug");
  ASSERT_EQ(solution->GetProjects()->GetCount(), 2);
  const auto project = solution->GetProjects()->GetItem(0);
  EXPECT_EQ(project->GetName(), "A");
  EXPECT_EQ(project->GetPath(), "A\\A.csproj");
  EXPECT_EQ(project->GetGUID(), kA);
  EXPECT_EQ(project->GetTypeGUID(), kCSharp);
  EXPECT_FALSE(project->IsVCProject());
  EXPECT_EQ(project->GetRCFiles().Count(), 0);
  EXPECT_EQ(project->GetVersionInfoFile(), "");
  ASSERT_EQ(project->GetDependencies()->GetCount(), 1);
  EXPECT_EQ(project->GetDependencies()->GetItem(0), kB);
  EXPECT_EQ(project->GetDependencies()->GetList().Items(), std::vector<std::string>{kB});
  EXPECT_TRUE(solution->GetProjects()->GetItem(1)->IsVCProject())
      << "the extension counts in any letter case";
  EXPECT_EQ(solution->GetProjects()->GetItem(1)->GetDependencies()->GetCount(), 0);
}

TEST_F(OpeningSolutions, ItemsOutOfRangeAreNothing) {
  const auto solution = OpenTwo();
  const auto projects = solution->GetProjects();
  const auto configurations = solution->GetConfigurations();
  const auto dependencies = projects->GetItem(0)->GetDependencies();
  for (const int index : {-1, INT32_MIN, INT32_MAX}) {
    EXPECT_FALSE(projects->GetItem(index));
    EXPECT_FALSE(configurations->GetItem(index));
    EXPECT_EQ(dependencies->GetItem(index), "");
  }
  EXPECT_FALSE(projects->GetItem(projects->GetCount()));
  EXPECT_FALSE(configurations->GetItem(configurations->GetCount()));
  EXPECT_EQ(dependencies->GetItem(dependencies->GetCount()), "");
}

TEST_F(OpeningSolutions, ProjectsAreFoundByExactTextsOnly) {
  const auto projects = OpenTwo()->GetProjects();
  EXPECT_EQ(projects->FindByGUID(kB), projects->GetItem(1));
  EXPECT_FALSE(projects->FindByGUID("{bbbbbbbb-0000-0000-0000-000000000002}"));
  EXPECT_FALSE(projects->FindByGUID(""));
  EXPECT_EQ(projects->FindByPath("A\\A.csproj"), projects->GetItem(0));
  EXPECT_FALSE(projects->FindByPath("a\\A.csproj"));
  EXPECT_FALSE(projects->FindByPath("A/A.csproj"));
}

TEST_F(OpeningSolutions, OfTwoProjectsOfOneIdentifierTheFirstIsFound) {
  folder.Write("a.csproj", "");
  folder.Write("b.csproj", "");
  const auto projects =
      Open(Solution(Project("a", "a.csproj", kA) + Project("b", "b.csproj", kA)))->GetProjects();
  EXPECT_EQ(projects->FindByGUID(kA)->GetName(), "a");
}

TEST_F(OpeningSolutions, OfTwoProjectsOfOnePathTheFirstIsFound) {
  folder.Write("a.csproj", "");
  const auto projects =
      Open(Solution(Project("a", "a.csproj", kA) + Project("b", "a.csproj", kB)))->GetProjects();
  EXPECT_EQ(projects->GetCount(), 2);
  EXPECT_EQ(projects->FindByPath("a.csproj")->GetName(), "a");
}

TEST_F(OpeningSolutions, WithoutASectionTheConfigurationsAreNull) {
  EXPECT_FALSE(Open(Solution(""))->GetConfigurations());
  EXPECT_EQ(Open(Solution(""))->GetProjects()->GetCount(), 0);
}

TEST_F(OpeningSolutions, EveryObjectAnswersItsInterfaceAndTheRootOfAll) {
  const auto solution = OpenTwo();
  const auto project = solution->GetProjects()->GetItem(0);
  EXPECT_TRUE(Query<IVSDotNetSolution>(solution.get()));
  EXPECT_TRUE(Query<IVSDotNetObject>(solution.get()));
  EXPECT_TRUE(Query<IInterface>(solution.get()));
  EXPECT_FALSE(Query<IVSDotNetProject>(solution.get()));
  EXPECT_TRUE(Query<IVSDotNetProject>(project.get()));
  EXPECT_TRUE(Query<IVSDotNetProjects>(solution->GetProjects().get()));
  EXPECT_TRUE(Query<IVSDotNetSolutionConfigurations>(solution->GetConfigurations().get()));
  EXPECT_TRUE(Query<IVSDotNetSolutionConfiguration>(solution->GetConfigurations()->GetItem(0).get()));
  EXPECT_NE(solution->GetImplementation(), nullptr);
  EXPECT_NE(static_cast<void*>(project->GetImplementation()),
            static_cast<void*>(solution->GetImplementation()));
  EXPECT_EQ(project->GetImplementation(), Query<IVSDotNetObject>(project.get())->GetImplementation());
}

TEST_F(OpeningSolutions, DependenciesAnswerTheIdentifierOfProjectConfigurationsToo) {
  static_assert(IVSDotNetProjectDependancies::IID == IVSDotNetProjectConfigurations::IID);
  const auto dependencies = OpenTwo()->GetProjects()->GetItem(0)->GetDependencies();
  void* found = nullptr;
  EXPECT_TRUE(dependencies->QueryInterface(IVSDotNetProjectConfigurations::IID, &found));
  EXPECT_EQ(found, dependencies.get());
  dependencies->_Release();
  EXPECT_FALSE(Query<IVSDotNetProjectConfiguration>(dependencies.get()));
}

TEST_F(OpeningSolutions, NothingAnswersTheInterfacesThatAreDeclaredOnly) {
  const auto solution = OpenTwo();
  const auto project = solution->GetProjects()->GetItem(0);
  for (const TGUID& iid : {IVSDotNetSolutionContext::IID, IVSDotNetSolutionContexts::IID,
                           IVSDotNetProjectConfiguration::IID, IVSDotNetProjectConfigurations::IID}) {
    void* found = nullptr;
    EXPECT_FALSE(solution->QueryInterface(iid, &found));
    EXPECT_FALSE(project->QueryInterface(iid, &found));
    EXPECT_EQ(found, nullptr);
  }
}

TEST_F(OpeningSolutions, ObjectsLiveAsLongAsTheyAreHeld) {
  InterfacePtr<IVSDotNetProject> project;
  InterfacePtr<IVSDotNetProjectDependancies> dependencies;
  {
    const auto solution = OpenTwo();
    project = solution->GetProjects()->GetItem(0);
  }
  EXPECT_EQ(project->GetName(), "A");
  dependencies = project->GetDependencies();
  project = nullptr;
  EXPECT_EQ(dependencies->GetItem(0), kB);
}

TEST_F(OpeningSolutions, AFileThatCannotBeReadIsNamed) {
  const std::string missing = folder / "missing.sln";
  const std::string message = MessageOf([&] { OpenSolution(missing); });
  EXPECT_TRUE(message.starts_with("Cannot read " + missing + ": ")) << message;
}

TEST_F(OpeningSolutions, AnEmptyFileRunsOffTheLineList) {
  EXPECT_EQ(MessageOf([&] { Open(""); }), "List index out of bounds (0)");
}

TEST_F(OpeningSolutions, TheMarkAndTheEmptyLineOf2005ArePassedOver) {
  folder.Write("A.csproj", "");
  const auto solution = Open("\xEF\xBB\xBF\r\n" + Solution(Project("Größe", "A.csproj", kA)));
  EXPECT_EQ(solution->GetProjects()->GetItem(0)->GetName(), "Größe");
  EXPECT_EQ(Open("\xEF\xBB\xBF" + Solution(""))->GetProjects()->GetCount(), 0);
}

TEST_F(OpeningSolutions, Utf16IsRead) {
  folder.Write("A.csproj", "");
  for (const bool big : {false, true}) {
    std::string wide = big ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : Solution(Project("A", "A.csproj", kA), kConfigurations)) {
      wide.append(1, big ? '\0' : c).append(1, big ? c : '\0');
    }
    const auto solution = Open(wide);
    EXPECT_EQ(solution->GetProjects()->GetItem(0)->GetName(), "A");
    EXPECT_EQ(solution->GetConfigurations()->GetItem(0)->GetName(), "Debug");
  }
}

TEST_F(OpeningSolutions, BytesOfACodePageStayAsTheyAre) {
  folder.Write("A.csproj", "");
  const auto solution =
      Open(Solution(Project("Gr\xF6\xDF"
                            "e \x83\x5C",
                            "A.csproj", kA)));
  EXPECT_EQ(solution->GetProjects()->GetItem(0)->GetName(),
            "Gr\xF6\xDF"
            "e \x83\x5C");
}

TEST_F(OpeningSolutions, FilesAreFoundInAnyLetterCase) {
  folder.Write("Src/Lib/Lib.csproj", "");
  const auto solution = Open(Solution(Project("Lib", "SRC\\lib\\LIB.CSPROJ", kA)));
  ASSERT_EQ(solution->GetProjects()->GetCount(), 1);
  EXPECT_EQ(solution->GetProjects()->GetItem(0)->GetPath(), "SRC\\lib\\LIB.CSPROJ") << "as written";
}

TEST_F(OpeningSolutions, AFolderIsNoProject) {
  folder.Write("Site/default.aspx", "");
  EXPECT_EQ(
      Open(Solution(Project("Site", "Site", kA) + Project("Site", "Site\\", kB)))->GetProjects()->GetCount(),
      0);
}

// A project with two resource scripts, written in another letter case than on disk, and one that is missing.
class ResourceScripts : public OpeningSolutions {
 protected:
  auto OpenProject() {
    folder.Write("Cpp/Cpp.vcproj",
                 "<VisualStudioProject><Files><Filter><File RelativePath='res\\APP.rc'/><File "
                 "RelativePath='..\\Other.RC'/>"
                 "<File RelativePath='GONE.rc'/></Filter></Files></VisualStudioProject>");
    folder.Write("Cpp/Res/App.rc", "1 VERSIONINFO");
    folder.Write("other.rc", "");
    return Open(Solution(Project("Cpp", "cpp\\cpp.vcproj", kA)))->GetProjects()->GetItem(0);
  }
};

TEST_F(ResourceScripts, AreFoundOnDisk) {
  const auto project = OpenProject();
  ASSERT_TRUE(project);
  ASSERT_EQ(project->GetRCFiles().Count(), 3);
  EXPECT_EQ(project->GetVersionInfoFile(), project->GetRCFiles().Get(0));
}

TEST_F(ResourceScripts, HaveTheirNamesOnDisk) {
  const auto project = OpenProject();
  ASSERT_TRUE(project);
  ASSERT_EQ(project->GetRCFiles().Count(), 3);
  if (std::filesystem::exists(folder / "cpp"))
    GTEST_SKIP() << "this system passes over letter case by itself: the names stay as they are written";
  EXPECT_EQ(project->GetRCFiles().Get(0), Full("Cpp/Res/App.rc"));
  EXPECT_EQ(project->GetRCFiles().Get(1), Full("other.rc"));
  EXPECT_EQ(project->GetRCFiles().Get(2), Full("Cpp/GONE.rc"));
}

TEST_F(OpeningSolutions, NamesWithPercentSignsAreTakenAsTheyAre) {
  folder.Write("%41.vcproj", "<Project/>");
  EXPECT_EQ(Open(Solution(Project("x", "%41.vcproj", kA)))->GetProjects()->GetCount(), 1);
}

TEST_F(OpeningSolutions, AMalformedCppProjectFailsTheWholeSolution) {
  folder.Write("Cpp.vcproj", "<VisualStudioProject><Files></VisualStudioProject>");
  const std::string message = MessageOf([&] { Open(Solution(Project("Cpp", "Cpp.vcproj", kA))); });
  EXPECT_TRUE(message.starts_with("Error parsing project file : ")) << message;
}

TEST_F(OpeningSolutions, ASolutionNamedFromTheCurrentFolderFindsItsProjects) {
  folder.Write("A.csproj", "");
  folder.Write("App.sln", Solution(Project("A", "A.csproj", kA)));
  const auto current = std::filesystem::current_path();
  std::filesystem::current_path(std::filesystem::path(folder.Path()));
  const auto solution = OpenSolution("App.sln");
  std::filesystem::current_path(current);
  EXPECT_EQ(solution->GetProjects()->GetCount(), 1);
  EXPECT_EQ(solution->GetFileName(), "App.sln");
}

}  // namespace
}  // namespace qx
