#include "engine/front/SolutionPlan.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Fate = PlannedProject::Fate;
using Names = std::vector<std::string>;

constexpr const char* kType = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}";

// A solution of 2003 with the configuration "Release", put together project by project; the files are there.
class SolutionPlanTest : public testing::Test {
 protected:
  SolutionPlanTest() {
    map_.format = SolutionFormat::Vs2003;
    map_.configurations = {"Release"};
  }

  void Add(const std::string& name, const std::string& path, const Names& needs = {}, bool isBuilt = true) {
    MappedProject project{name, path, kType, "{" + name + "}", {}, {}};
    for (const std::string& need : needs) project.needs.push_back("{" + need + "}");
    project.mappings["release"] = {"Release|Win32", isBuilt, false};
    map_.projects.push_back(project);
  }
  void AddWithFile(const std::string& name, const Names& needs = {}, bool isBuilt = true) {
    folder_.Write(name + ".vcproj", "");
    Add(name, name + ".vcproj", needs, isBuilt);
  }

  SolutionPlan Plan(const ReadReferences& references = {}) {
    return PlanSolution(map_, folder_ / "App.sln", "Release", references);
  }
  static Names NamesOf(const SolutionPlan& plan) {
    Names names;
    for (const PlannedProject& project : plan.projects) names.push_back(project.name);
    return names;
  }

  TestFolder folder_;
  SolutionMap map_;
};

TEST_F(SolutionPlanTest, OrdersByNeedsOfTheSolutionAndOfTheProjects) {
  AddWithFile("App", {"Lib"});
  AddWithFile("Lib");
  AddWithFile("Base");
  const SolutionPlan plan = Plan([this](const PlannedProject& project) {
    return project.name == "Lib" ? Names{folder_ / "Base.vcproj", "{Gone}"} : Names{};
  });
  EXPECT_EQ(NamesOf(plan), (Names{"Base", "Lib", "App"}));
  EXPECT_EQ(plan.projects[2].needs, std::vector<std::size_t>{1});
  EXPECT_EQ(plan.projects[1].needs, std::vector<std::size_t>{0});
  EXPECT_TRUE(plan.warnings.empty());
}

TEST_F(SolutionPlanTest, GivesEachProjectItsConfiguration) {
  AddWithFile("App");
  map_.projects[0].mappings["release"].configuration = "Release MinSize|x64";
  folder_.Write("Net.csproj", "");
  Add("Net", "NET.CSPROJ");
  map_.projects[1].mappings["release"].configuration = "Release|.NET";
  const SolutionPlan plan = Plan();
  EXPECT_EQ(plan.projects[0].configuration, "Release MinSize");
  EXPECT_EQ(plan.projects[0].platform, "x64");
  EXPECT_EQ(plan.projects[1].configuration, "Release");
  EXPECT_EQ(plan.projects[1].platform, "");
  EXPECT_EQ(plan.projects[1].file, folder_ / "Net.csproj");
}

TEST_F(SolutionPlanTest, PassesOverWhatTheConfigurationDoesNotBuild) {
  AddWithFile("App", {}, false);
  AddWithFile("New");
  map_.projects[1].mappings.clear();  // the solution says nothing about it at all
  AddWithFile("Other");
  map_.projects[2].mappings = {{"debug", {"Debug|Win32", true, false}}};
  const SolutionPlan plan = Plan();
  EXPECT_EQ(plan.projects[0].fate, Fate::PassOver);
  EXPECT_EQ(plan.projects[0].reason, "Project not selected to build for this solution configuration");
  EXPECT_EQ(plan.projects[1].fate, Fate::Build);
  EXPECT_EQ(plan.projects[1].configuration, "Release");
  EXPECT_EQ(plan.projects[2].fate, Fate::PassOver);
}

TEST_F(SolutionPlanTest, RefusesWhatNobodyCanBuildHereWithTheReason) {
  Add("Setup", "Setup\\Setup.vdproj");
  Add("Shop", "http://localhost/Shop/Shop.csproj");
  Add("Jay", "Jay.vjsproj");
  Add("Pocket", "Pocket.csdproj");
  Add("Lost", "Lost\\Lost.csproj");
  const SolutionPlan plan = Plan();
  Names limits;
  for (const PlannedProject& project : plan.projects) {
    EXPECT_EQ(project.fate, Fate::Refuse) << project.name;
    limits.push_back(project.limit);
  }
  EXPECT_EQ(limits, (Names{"setup", "web", "jsharp", "other", ""}));
  EXPECT_EQ(plan.projects[4].reason, "its file is not there: " + (folder_ / "Lost/Lost.csproj"));
}

TEST_F(SolutionPlanTest, LeavesSolutionFoldersOut) {
  AddWithFile("App");
  Add("Docs", "Docs");
  map_.projects[1].typeGuid = "{2150E333-8FDC-42A3-9474-1A3956D46DE8}";
  EXPECT_EQ(NamesOf(Plan()), Names{"App"});
}

TEST_F(SolutionPlanTest, TellsACircleAndBuildsItAllTheSame) {
  AddWithFile("A", {"B"});
  AddWithFile("B", {"A"});
  const SolutionPlan plan = Plan();
  EXPECT_EQ(NamesOf(plan), (Names{"B", "A"}));
  EXPECT_TRUE(plan.projects[0].needs.empty());
  EXPECT_EQ(
      plan.warnings,
      Names{"These projects need one another in a circle: A -> B -> A. The last need was passed over."});
}

TEST_F(SolutionPlanTest, TellsProjectsOfOneIdentifierApart) {
  for (const char* name : {"One", "Two"}) AddWithFile(name);
  AddWithFile("App", {"One"});
  map_.projects[1].guid = map_.projects[0].guid;
  const SolutionPlan plan = Plan();
  EXPECT_EQ(NamesOf(plan), (Names{"One", "Two", "App"}));
  EXPECT_EQ(plan.projects[2].needs, std::vector<std::size_t>{0});
}

TEST_F(SolutionPlanTest, LeavesAReferenceThatCannotBeReadToTheProjectsOwnBuild) {
  AddWithFile("App");
  const SolutionPlan plan = Plan([](const PlannedProject&) -> Names { throw Exception("no XML"); });
  EXPECT_EQ(plan.projects[0].fate, Fate::Build);
}

TEST_F(SolutionPlanTest, SelectsAProjectWithAllItNeedsByAnyOfItsNames) {
  folder_.Write("src/Lib.vcproj", "");
  AddWithFile("Base");
  Add("Lib", "src\\Lib.vcproj", {"Base"});
  AddWithFile("App", {"Lib"});
  for (const std::string& asked :
       Names{"lib", "src\\Lib.vcproj", "SRC/lib.vcproj", "{Lib}", folder_ / "src/Lib.vcproj"}) {
    const SolutionPlan plan = SelectProject(Plan(), asked, "");
    EXPECT_EQ(NamesOf(plan), (Names{"Base", "Lib"})) << asked;
    EXPECT_EQ(plan.projects[1].needs, std::vector<std::size_t>{0});
  }
  EXPECT_EQ(SelectProject(Plan(), "Lib", "Debug|x64").projects[1].configuration, "Debug");
  EXPECT_EQ(SelectProject(Plan(), "Lib", "Debug|x64").projects[1].platform, "x64");
}

TEST_F(SolutionPlanTest, RefusesANameThatMeansNoneOrSeveral) {
  AddWithFile("App");
  AddWithFile("Old");
  map_.projects[1].name = "App";
  const auto refusal = [this](const std::string& asked) {
    try {
      SelectProject(Plan(), asked, "");
    } catch (const Exception& error) {
      return error.Message();
    }
    return std::string("accepted");
  };
  EXPECT_EQ(refusal("Ap"), "The solution has no project \"Ap\". It has: App.vcproj, Old.vcproj");
  EXPECT_EQ(refusal("App"),
            "More than one project is meant by \"App\". Name one by its path: App.vcproj, Old.vcproj");
}

}  // namespace
}  // namespace qx
