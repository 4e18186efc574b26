#include "engine/dotnet/CompilePlan.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

class CompilePlanning : public testing::Test {
 protected:
  CompilePlanning() {
    project_.file = folder_ / "P/P.csproj";
    project_.has_configuration = true;
    project_.assembly_name.value = "P";
    project_.output_type.value = "Library";
    project_.output_path.value = "bin\\";
    task_.configuration = "Debug";
    folders_ = {folder_ / "4.5/", folder_ / "gac/", folder_ / "cli/"};
  }
  void AddSource(const std::string& name, const std::string& text) {
    folder_.Write("P/" + name, text);
    project_.files.push_back({name, name, "Compile", "", ""});
  }
  std::string Resolve(NetReference reference, bool* is_local = nullptr) {
    bool local = false;
    const std::string file = ResolveReference(project_, reference, task_, folders_, local);
    if (is_local != nullptr) *is_local = local;
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
  hinted.hint_path = "..\\Lib\\NUnit.framework.dll";
  bool is_local = true;
  EXPECT_EQ(Resolve(hinted), "");
  folder_.Write("cli/nunit.framework-2.6/nunit.framework.dll", "");
  EXPECT_EQ(Resolve(hinted, &is_local), "cli/nunit.framework-2.6/nunit.framework.dll");
  EXPECT_TRUE(is_local);
  folder_.Write("gac/nunit.framework/2.6__1/nunit.framework.dll", "");
  EXPECT_EQ(Resolve(hinted, &is_local), "gac/nunit.framework/2.6__1/nunit.framework.dll");
  EXPECT_FALSE(is_local);
  BuiltProject need;
  need.output = folder_.Write("out/nunit.framework.dll", "");
  task_.needs = {&need};
  EXPECT_EQ(Resolve(hinted, &is_local), "out/nunit.framework.dll");
  folder_.Write("lib/nunit.framework.dll", "");
  EXPECT_EQ(Resolve(hinted, &is_local), "lib/nunit.framework.dll");
  EXPECT_TRUE(is_local);
}

TEST_F(CompilePlanning, PrefersTheFrameworkToOldCopiesOfIt) {
  folder_.Write("4.5/System.Xml.dll", "");
  folder_.Write("P/System.XML.dll", "");
  NetReference reference;
  reference.name = "System.XML";
  reference.hint_path = "System.XML.dll";
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
  reference.project_guid = "{aaaaaaaa-0000-0000-0000-000000000000}";
  EXPECT_EQ(Resolve(reference), "/out/a.dll");
  reference.project_guid = "{BBBBBBBB-0000-0000-0000-000000000000}";
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
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).code_page, "");
  AddSource("b.cs", "// \xE4");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).code_page, "1252");
}

TEST_F(CompilePlanning, LooksForTheKeyFromTheIntermediateFolderFirst) {
  AddSource("AssemblyInfo.cs", "[assembly: AssemblyKeyFile(\"..\\\\..\\\\Key.snk\")]");
  EXPECT_FALSE(MakeCompilePlan(project_, task_, folders_).CanBeCompiled());
  const std::string by_output = folder_.Write("key.snk", "");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).key_file, by_output);
  const std::string key = folder_.Write("P/key.snk", "");
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).key_file, key);
}

TEST_F(CompilePlanning, NamesEveryMissingSourceOnce) {
  project_.files = {{"a.cs", "a.cs", "Compile", "", ""}, {"b.cs", "b.cs", "Compile", "", ""}};
  const CompilePlan plan = MakeCompilePlan(project_, task_, folders_);
  ASSERT_EQ(plan.problems.size(), 1U);
  EXPECT_EQ(plan.problems[0].text, "Source file 'a.cs' could not be found, and 1 more");
}

TEST_F(CompilePlanning, CompilesASourceOnce) {
  AddSource("a.cs", "");
  project_.files.push_back({"A.CS", "A.CS", "Compile", "", ""});
  EXPECT_EQ(MakeCompilePlan(project_, task_, folders_).sources, std::vector<std::string>{folder_ / "P/a.cs"});
}

}  // namespace
}  // namespace qx
