#include "engine/dotnet/CompilePlan.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

class CompilePlanning : public testing::Test {
 protected:
  CompilePlanning() {
    project_.file = folder_ / "P/P.csproj";
    project_.hasConfiguration = true;
    project_.assemblyName.value = "P";
    project_.outputType.value = "Library";
    project_.outputPath.value = "bin\\";
    task_.configuration = "Debug";
    folders_ = {folder_ / "4.5/", folder_ / "gac/", folder_ / "cli/"};
  }
  void AddSource(const std::string& name, const std::string& text) {
    folder_.Write("P/" + name, text);
    project_.files.push_back({name, name, "Compile", "", ""});
  }
  std::string Resolve(NetReference reference, bool* isLocal = nullptr) {
    bool local = false;
    const std::string file = ResolveReference(project_, reference, task_, folders_, local);
    if (isLocal != nullptr) *isLocal = local;
    return file.starts_with(folder_.Path()) ? file.substr(folder_.Path().size()) : file;
  }

  TestFolder folder_;
  NetProject project_;
  ProjectTask task_;
  AssemblyFolders folders_;
};

TEST_F(CompilePlanning, FindsReferencesInTheirOrder) {
  NetReference hinted;
  hinted.name = "nunit.framework";
  hinted.hintPath = "..\\Lib\\NUnit.framework.dll";
  bool isLocal = true;
  EXPECT_EQ(Resolve(hinted), "");
  folder_.Write("cli/nunit.framework-2.6/nunit.framework.dll", "");
  EXPECT_EQ(Resolve(hinted, &isLocal), "cli/nunit.framework-2.6/nunit.framework.dll");
  EXPECT_TRUE(isLocal);
  folder_.Write("gac/nunit.framework/2.6__1/nunit.framework.dll", "");
  EXPECT_EQ(Resolve(hinted, &isLocal), "gac/nunit.framework/2.6__1/nunit.framework.dll");
  EXPECT_FALSE(isLocal);
  BuiltProject need;
  need.output = folder_.Write("out/nunit.framework.dll", "");
  task_.needs = {&need};
  EXPECT_EQ(Resolve(hinted, &isLocal), "out/nunit.framework.dll");
  folder_.Write("lib/nunit.framework.dll", "");
  EXPECT_EQ(Resolve(hinted, &isLocal), "lib/nunit.framework.dll");
  EXPECT_TRUE(isLocal);
}

TEST_F(CompilePlanning, PrefersTheFrameworkToOldCopiesOfIt) {
  folder_.Write("4.5/System.Xml.dll", "");
  folder_.Write("P/System.XML.dll", "");
  NetReference reference;
  reference.name = "System.XML";
  reference.hintPath = "System.XML.dll";
  EXPECT_EQ(Resolve(reference), "4.5/System.Xml.dll");
}

TEST_F(CompilePlanning, FindsProjectsByIdentifierAndName) {
  BuiltProject first, second;
  first.guid = "{AAAAAAAA-0000-0000-0000-000000000000}";
  first.output = "/out/a.dll";
  second.name = "Second";
  second.output = "/out/b.exe";
  task_.needs = {&first, &second};
  NetReference reference;
  reference.projectGuid = "{aaaaaaaa-0000-0000-0000-000000000000}";
  EXPECT_EQ(Resolve(reference), "/out/a.dll");
  reference.projectGuid = "{BBBBBBBB-0000-0000-0000-000000000000}";
  reference.name = "Second";
  EXPECT_EQ(Resolve(reference), "/out/b.exe");
  second.output = "/out/b.lib";  // a static library is nothing to refer to
  EXPECT_EQ(Resolve(reference), "");
}

TEST_F(CompilePlanning, KeepsTheIntermediateFolderInsideTheProject) {
  task_.configuration = "..\\..\\x";
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).intermediate, folder_ / "P/obj/.._.._x/");
}

TEST_F(CompilePlanning, KnowsSourcesInACodePage) {
  AddSource("a.cs", "// \xC3\xA4");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).codePage, "");
  AddSource("b.cs", "// \xE4");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).codePage, "1252");
}

TEST_F(CompilePlanning, LooksForTheKeyFromTheIntermediateFolderFirst) {
  AddSource("AssemblyInfo.cs", "[assembly: AssemblyKeyFile(\"..\\\\..\\\\Key.snk\")]");
  EXPECT_FALSE(MakeCompilePlan(project_, task_, folders_).CanBeCompiled());
  const std::string byOutput = folder_.Write("key.snk", "");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).keyFile, byOutput);
  const std::string key = folder_.Write("P/key.snk", "");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).keyFile, key);
}

TEST_F(CompilePlanning, NamesEveryMissingSourceOnce) {
  project_.files = {{"a.cs", "a.cs", "Compile", "", ""}, {"b.cs", "b.cs", "Compile", "", ""}};
  const CompilePlan plan = MakeCompilePlan(project_, task_, folders_);
  ASSERT_EQ(plan.problems.size(), 1U);
  EXPECT_EQ(plan.problems[0].text, "Source file 'a.cs' could not be found, and 1 more");
}

TEST_F(CompilePlanning, SaysWhatItLeavesOutAndWhatCannotBeEmbedded) {
  for (const char* file : {"licenses.licx", "a,b.txt", "c.txt"}) {
    folder_.Write("P/" + std::string(file), "");
    project_.files.push_back({file, file, "EmbeddedResource", "", ""});
  }
  const CompilePlan plan = MakeCompilePlan(project_, task_, folders_);
  EXPECT_EQ(plan.notes, (std::vector<std::string>{"licenses.licx is left out: neither the components that it "
                                                  "licenses nor the tool that reads it are here"}));
  ASSERT_EQ(plan.problems.size(), 1U);
  EXPECT_TRUE(plan.problems[0].isError);
  EXPECT_EQ(plan.problems[0].text, "The resource 'a,b.txt' has a comma in its name, which mcs cannot embed");
  ASSERT_EQ(plan.resources.size(), 1U);
}

TEST_F(CompilePlanning, CompilesASourceOnce) {
  AddSource("a.cs", "");
  project_.files.push_back({"A.CS", "A.CS", "Compile", "", ""});
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).sources, std::vector<std::string>{folder_ / "P/a.cs"});
}

}  // namespace
}  // namespace qx
