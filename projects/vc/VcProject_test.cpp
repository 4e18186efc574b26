#include "projects/vc/VcProject.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

VcProject Read(std::string text) { return ReadVcProject(text); }

std::string Project(const std::string& inside, const std::string& version = "7.10") {
  return "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\n<VisualStudioProject ProjectType=\"Visual C++\" "
         "Version=\"" +
         version + "\" Name=\"App\" ProjectGUID=\"{1}\">" + inside + "</VisualStudioProject>";
}

TEST(VcProject, HoldsConfigurationsWithTheirTools) {
  const VcProject project = Read(Project(
      R"(<Platforms><Platform Name="Win32"/></Platforms><Configurations>
      <Configuration Name="Release|Win32" OutputDirectory=".\Release" ConfigurationType="1">
        <Tool Name="VCLinkerTool" OutputFile="a.exe" SubSystem="1"/><Tool Name="VCLinkerTool" SubSystem="2"/>
      </Configuration></Configurations>)"));
  EXPECT_EQ(project.name, "App");
  EXPECT_EQ(project.guid, "{1}");
  EXPECT_EQ(project.version, 710);
  EXPECT_EQ(project.platforms, std::vector<std::string>{"Win32"});
  ASSERT_EQ(project.configurations.size(), 1u);
  const VcConfiguration& release = project.configurations[0];
  EXPECT_EQ(release.name + "/" + release.platform, "Release/Win32");
  EXPECT_EQ(release.values, (VcValues{{"ConfigurationType", "1"}, {"OutputDirectory", ".\\Release"}}));
  EXPECT_EQ(release.tools.at("VCLinkerTool"), (VcValues{{"OutputFile", "a.exe"}, {"SubSystem", "2"}}));
}

TEST(VcProject, ListsFilesOfAllFiltersInTheirOrder) {
  const VcProject project = Read(Project(
      R"(<Files><File RelativePath="a.c"/><Filter Name="Src"><Filter Name="Deep"><File RelativePath="b.c">
      <FileConfiguration Name="Debug|Win32" ExcludedFromBuild="TRUE"><Tool Name="VCCLCompilerTool"/>
      </FileConfiguration></File></Filter><File RelativePath="c.cs"><File RelativePath="c.resx"/></File></Filter>
      </Files>)"));
  std::string all;
  for (const VcFile& file : project.files) {
    for (const std::string& filter : file.filters) all += filter + "/";
    all += file.path + " ";
  }
  EXPECT_EQ(all, "a.c Src/Deep/b.c Src/c.cs Src/c.cs/c.resx ");
  ASSERT_EQ(project.files[1].configurations.size(), 1u);
  EXPECT_EQ(project.files[1].configurations[0].values.at("ExcludedFromBuild"), "TRUE");
}

TEST(VcProject, ListsReferencesToolFilesAndGlobals) {
  const VcProject project = Read(Project(
      R"(<ToolFiles><ToolFile RelativePath="yasm.rules"/><DefaultToolFile FileName="masm.rules"/></ToolFiles>
      <References><ProjectReference ReferencedProjectIdentifier="{2}" RelativePathToProject="..\b.vcproj"/>
      <AssemblyReference RelativePath="System.dll"/></References><Globals><Global Name="N" Value="V"/></Globals>)"));
  ASSERT_EQ(project.references.size(), 1u);
  EXPECT_EQ(project.references[0].guid + project.references[0].path, "{2}..\\b.vcproj");
  EXPECT_EQ(project.assemblies, std::vector<std::string>{"System.dll"});
  EXPECT_EQ(project.toolFiles, (std::vector<std::string>{"yasm.rules", "masm.rules"}));
  EXPECT_EQ(project.globals.at(0).second, "V");
}

TEST(VcProject, TakesAVersionWithAComma) {
  EXPECT_EQ(Read(Project("", "8,00")).version, 800);
  EXPECT_EQ(Read(Project("", "7.00")).version, 700);
}

TEST(VcProject, SaysWhatIsWrong) {
  EXPECT_EQ(MessageOf([] { Read(Project("", "12.00")); }), "its version \"12.00\" is not known");
  EXPECT_EQ(MessageOf([] { Read("<Project/>"); }),
            "it is no Visual C++ file of 2002 to 2008: its outermost element is \"Project\", not "
            "\"VisualStudioProject\"");
  EXPECT_FALSE(MessageOf([] { Read("<VisualStudioProject"); }).empty());
}

TEST(VcProject, RefusesFiltersWithoutEnd) {
  std::string inside = "<Files>";
  for (int depth = 0; depth < 100; ++depth) inside += "<Filter Name=\"f\">";
  for (int depth = 0; depth < 100; ++depth) inside += "</Filter>";
  EXPECT_EQ(MessageOf([&] { Read(Project(inside + "</Files>")); }),
            "its filters stand too deep inside one another");
}

TEST(VcSheet, HoldsToolsAndMacros) {
  std::string text =
      R"(<?xml version="1.0"?><VisualStudioPropertySheet ProjectType="Visual C++" Version="8.00" Name="S"
      OutputDirectory="out" InheritedPropertySheets="b.vsprops"><Tool Name="VCCLCompilerTool" Optimization="2"/>
      <UserMacro Name="Root" Value="..\.."/></VisualStudioPropertySheet>)";
  const VcSheet sheet = ReadVcSheet(text);
  EXPECT_EQ(sheet.name, "S");
  EXPECT_EQ(sheet.values.at("OutputDirectory") + sheet.values.at("InheritedPropertySheets"), "outb.vsprops");
  EXPECT_EQ(sheet.tools.at("VCCLCompilerTool").at("Optimization"), "2");
  EXPECT_EQ(sheet.macros.at(0).first + sheet.macros.at(0).second, "Root..\\..");
}

}  // namespace
}  // namespace qx
