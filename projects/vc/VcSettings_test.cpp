#include "projects/vc/VcSettings.h"

#include <algorithm>

#include "host/testing/TestFolder.h"
#include "platform/System.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

using Items = std::vector<std::string>;

// A project in memory, as it is at /tree/app/App.vcproj in /tree/All.sln.
class Vc : public testing::Test {
 protected:
  VcSettings Open(const std::string& attributes, const std::string& tools, const std::string& files = "") {
    std::string text =
        "<VisualStudioProject ProjectType=\"Visual C++\" Version=\"8.00\" Name=\"App\">"
        "<Configurations><Configuration Name=\"Release|Win32\" " +
        attributes + ">" + tools + "</Configuration></Configurations><Files>" + files +
        "</Files></VisualStudioProject>";
    return VcSettings(ReadVcProject(text), Place());
  }

  VcPlace Place() {
    VcPlace place;
    place.projectFile = "/tree/app/App.vcproj";
    place.solutionFile = "/tree/All.sln";
    place.configuration = "release";
    place.platform = "win32";
    place.environment = [this](const std::string& name) -> std::optional<std::string> {
      const auto found = environment_.find(name);
      return found == environment_.end() ? std::nullopt : std::optional<std::string>(found->second);
    };
    place.readSheet = [this](const std::string& path) -> std::optional<std::string> {
      const auto found = sheets_.find(Slashes(path));
      return found == sheets_.end() ? std::nullopt : std::optional<std::string>(found->second);
    };
    return place;
  }

  void Sheet(const std::string& path, const std::string& attributes, const std::string& inside) {
    sheets_["/tree/" + path] =
        "<VisualStudioPropertySheet " + attributes + ">" + inside + "</VisualStudioPropertySheet>";
  }

  // With "/", and without the drive that Windows puts before "/tree".
  static std::string Slashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    const std::size_t root = path.find(":/tree");
    return root == std::string::npos ? path : path.erase(root - 1, 2);
  }

  std::map<std::string, std::string> environment_, sheets_;
};

std::string Tool(const std::string& name, const std::string& attributes) {
  return "<Tool Name=\"" + name + "\" " + attributes + "/>";
}

TEST_F(Vc, OutputIsNamedByTheTypeWhereNothingIsSaid) {
  const auto output = [&](const char* type) {
    return Slashes(
        Open("OutputDirectory=\"$(ConfigurationName)\" ConfigurationType=\"" + std::string(type) + "\"", "")
            .OutputFile());
  };
  EXPECT_EQ(output("1"), "/tree/app/Release/App.exe");
  EXPECT_EQ(output("2"), "/tree/app/Release/App.dll");
  EXPECT_EQ(output("4"), "/tree/app/Release/App.lib");
  EXPECT_EQ(output("10"), "");
  EXPECT_EQ(MessageOf([&] { output("7"); }), "its ConfigurationType \"7\" is not known");
}

TEST_F(Vc, OutputFollowsMacros) {
  const VcSettings settings =
      Open("OutputDirectory=\"$(SolutionDir)bin\\$(PlatformName)\" ConfigurationType=\"2\"",
           Tool("VCLinkerTool", "OutputFile=\"$(OutDir)/$(ProjectName)_r.dll\" ImportLibrary=\"\""));
  EXPECT_EQ(Slashes(settings.OutputFile()), "/tree/bin/Win32/App_r.dll");
  EXPECT_EQ(Slashes(settings.ImportLibrary()), "/tree/bin/Win32/App_r.lib");
  EXPECT_EQ(settings.Expand("$(TargetFileName) $(TargetName) $(TargetExt)"), "App_r.dll App_r .dll");
}

TEST_F(Vc, UnknownConfigurationIsNamed) {
  VcPlace place = Place();
  place.configuration = "Ship";
  std::string text = "<VisualStudioProject Version=\"7.00\"><Configurations/></VisualStudioProject>";
  EXPECT_EQ(MessageOf([&] { VcSettings(ReadVcProject(text), place); }),
            "it has no configuration \"Ship|win32\"");
}

TEST_F(Vc, LaterSheetsAndTheProjectItselfCountMore) {
  Sheet("a.vsprops", "OutputDirectory=\"a\" CharacterSet=\"1\"",
        Tool("VCCLCompilerTool", "Optimization=\"0\" PreprocessorDefinitions=\"A\" WarningLevel=\"1\"") +
            "<UserMacro Name=\"Root\" Value=\"from a\"/>");
  Sheet("b.vsprops", "OutputDirectory=\"b\"",
        Tool("VCCLCompilerTool", "PreprocessorDefinitions=\"B\" WarningLevel=\"2\"") +
            "<UserMacro Name=\"Root\" Value=\"from b\"/>");
  const VcSettings settings =
      Open("InheritedPropertySheets=\"..\\a.vsprops;..\\b.vsprops\"",
           Tool("VCCLCompilerTool", "PreprocessorDefinitions=\"OWN\" Optimization=\"2\""));
  EXPECT_EQ(settings.Attribute("OutputDirectory"), "b");
  EXPECT_EQ(settings.Attribute("CharacterSet"), "1");
  EXPECT_EQ(settings.Text("VCCLCompilerTool", "Optimization"), "2");
  EXPECT_EQ(settings.Text("VCCLCompilerTool", "WarningLevel"), "2");
  EXPECT_EQ(settings.List("VCCLCompilerTool", "PreprocessorDefinitions", VcList::Defines),
            (Items{"OWN", "B", "A"}));
  EXPECT_EQ(settings.Expand("$(root)"), "from b");
  EXPECT_EQ(settings.Sheets().size(), 2u);
}

TEST_F(Vc, SheetsInheritRelativeToThemselves) {
  Sheet("props/outer.vsprops", "InheritedPropertySheets=\"inner.vsprops\"",
        Tool("VCCLCompilerTool", "A=\"outer\""));
  Sheet("props/inner.vsprops", "", Tool("VCCLCompilerTool", "A=\"inner\" B=\"inner\""));
  const VcSettings settings = Open("InheritedPropertySheets=\"$(SolutionDir)props\\outer.vsprops\"", "");
  EXPECT_EQ(settings.Text("VCCLCompilerTool", "A") + settings.Text("VCCLCompilerTool", "B"), "outerinner");
}

TEST_F(Vc, MissingSheetsAndCirclesAreNamed) {
  EXPECT_EQ(Slashes(MessageOf([&] { Open("InheritedPropertySheets=\"..\\gone.vsprops\"", ""); })),
            "its property sheet \"../gone.vsprops\" is not there (/tree/gone.vsprops)");
  Sheet("a.vsprops", "InheritedPropertySheets=\"b.vsprops\"", "");
  Sheet("b.vsprops", "InheritedPropertySheets=\"a.vsprops\"", "");
  EXPECT_EQ(MessageOf([&] { Open("InheritedPropertySheets=\"..\\a.vsprops\"", ""); }),
            "its property sheet \"a.vsprops\" inherits itself");
  for (int depth = 0; depth < 30; ++depth) {
    Sheet("d" + std::to_string(depth), "InheritedPropertySheets=\"d" + std::to_string(depth + 1) + "\"", "");
  }
  EXPECT_EQ(MessageOf([&] { Open("InheritedPropertySheets=\"..\\d0\"", ""); }),
            "its property sheets inherit one another too deep");
}

TEST_F(Vc, SheetsOfTheProductItselfNeedNotBeThere) {
  const VcSettings settings = Open(
      "InheritedPropertySheets=\"$(VCInstallDir)VCProjectDefaults\\UpgradeFromVC71.vsprops;"
      "$(VCInstallDir)VCProjectDefaults\\CoreWin.vsprops\"",
      "");
  EXPECT_EQ(settings.List("VCCLCompilerTool", "PreprocessorDefinitions", VcList::Defines),
            Items{"_VC80_UPGRADE=0x0710"});
}

TEST_F(Vc, ListsEndOrGoOnWhereTheProjectSaysSo) {
  Sheet("s.vsprops", "", Tool("VCLinkerTool", "AdditionalDependencies=\"sheet.lib\""));
  const auto libraries = [&](const std::string& own) {
    return Open("InheritedPropertySheets=\"..\\s.vsprops\"",
                Tool("VCLinkerTool", "AdditionalDependencies=\"" + own + "\""))
        .List("VCLinkerTool", "AdditionalDependencies", VcList::Files);
  };
  EXPECT_EQ(libraries("a.lib $(NoInherit)"), Items{"a.lib"});
  EXPECT_EQ(libraries("a.lib").at(1), "sheet.lib");
  EXPECT_EQ(libraries("a.lib").at(2), "kernel32.lib");
  const Items around = libraries("a.lib $(INHERIT) z.lib");
  EXPECT_EQ(around.front() + around.at(1) + around.back(), "a.libsheet.libz.lib");
}

TEST_F(Vc, FilesHaveSettingsOfTheirOwn) {
  const VcSettings settings =
      Open("", Tool("VCCLCompilerTool", "PreprocessorDefinitions=\"ALL\" Optimization=\"2\""), R"xml(
        <Filter Name="F"><File RelativePath="src\a.cpp"><FileConfiguration Name="Release|Win32">
        <Tool Name="VCCLCompilerTool" PreprocessorDefinitions="A;IN=$(InputName)" Optimization="0"/>
        </FileConfiguration></File></Filter>
        <File RelativePath="b.cpp"><FileConfiguration Name="Release|Win32" ExcludedFromBuild="true"/></File>
        <File RelativePath="c.txt"><FileConfiguration Name="Release|Win32">
        <Tool Name="VCCustomBuildTool"/></FileConfiguration></File>)xml");
  const VcFile& a = settings.Project().files[0];
  const VcFile& b = settings.Project().files[1];
  const VcFile& c = settings.Project().files[2];
  EXPECT_EQ(settings.List("VCCLCompilerTool", "PreprocessorDefinitions", VcList::Defines, &a),
            (Items{"A", "IN=a", "ALL"}));
  EXPECT_EQ(settings.Text("VCCLCompilerTool", "Optimization", &a), "0");
  EXPECT_EQ(settings.Text("VCCLCompilerTool", "Optimization", &b), "2");
  EXPECT_TRUE(settings.IsSpecial(a));
  EXPECT_FALSE(settings.IsSpecial(b));
  EXPECT_TRUE(settings.IsExcluded(b));
  EXPECT_EQ(settings.ToolOf(a) + "," + settings.ToolOf(b) + "," + settings.ToolOf(c),
            "VCCLCompilerTool,,VCCustomBuildTool");
  EXPECT_EQ(Slashes(settings.Expand("$(InputPath)|$(InputDir)|$(InputFileName)|$(ParentName)", &a)),
            "/tree/app/src/a.cpp|/tree/app/src/|a.cpp|F");
}

TEST_F(Vc, OutputIsUnknownWhereAMacroIs) {
  const TestFolder folder;
  VcPlace place = Place();
  place.projectFile = folder.Write("p.vcproj", R"xml(
      <VisualStudioProject Version="8.00" Name="P"><Configurations><Configuration Name="Release|Win32"
      OutputDirectory="$(VDOutputPath)" IntermediateDirectory="$(Elsewhere)" ConfigurationType="1"/>
      </Configurations></VisualStudioProject>)xml");
  VcOutput output = OutputOfVcProject(place);
  EXPECT_EQ(output.path, "");
  EXPECT_EQ(output.reason, "its path depends on $(VDOutputPath), which is not set");
  environment_["VDOutputPath"] = "out";
  output = OutputOfVcProject(place);
  EXPECT_EQ(output.path, ExpandPath(folder.Path(), "out/P.exe"));
  EXPECT_EQ(output.reason, "");
  place.projectFile = folder / "gone.vcproj";
  EXPECT_TRUE(OutputOfVcProject(place).reason.starts_with("Cannot read ")) << OutputOfVcProject(place).reason;
}

TEST_F(Vc, CommandsSeePathsAsWineHasThem) {
  if (kIsWindows) GTEST_SKIP() << "on Windows they are what they are";
  const VcSettings settings = Open("OutputDirectory=\"Release\"", "");
  EXPECT_EQ(settings.Expand("copy \"$(TargetPath)\" $(OutDir) $(SolutionDir)", nullptr, VcPaths::ForCommands),
            "copy \"Z:\\tree\\app\\Release\\App.exe\" Release Z:\\tree\\");
}

}  // namespace
}  // namespace qx
