#include "projects/OutputPlaces.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "host/testing/TestFolder.h"
#include "platform/System.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

using Answer = OutputPlace::Answer;

constexpr const char* kCs = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}";
constexpr const char* kVc = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}";
constexpr const char* kFolderType = "{2150E333-8FDC-42A3-9474-1A3956D46DE8}";

std::string NetText(const std::string& inside) {
  return "<Project xmlns=\"http://schemas.microsoft.com/developer/msbuild/2003\"><PropertyGroup>"
         "<AssemblyName>Acme</AssemblyName><OutputType>Library</OutputType></PropertyGroup>"
         "<PropertyGroup Condition=\"'$(Configuration)|$(Platform)' == "
         "'Release|AnyCPU'\"><OutputPath>bin\\Release\\"
         "</OutputPath></PropertyGroup>" +
         inside + "<Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>";
}
std::string VcText(const std::string& type, const std::string& linker) {
  return "<VisualStudioProject ProjectType='Visual C++' Version='8.00' Name='Tool'>"
         "<Platforms><Platform Name='Win32'/></Platforms>"
         "<Configurations><Configuration Name='Release|Win32' OutputDirectory='$(SolutionDir)out' "
         "IntermediateDirectory='obj' ConfigurationType='" +
         type + "'>" + linker + "</Configuration></Configurations><Files></Files></VisualStudioProject>";
}

class OutputPlaces : public testing::Test {
 protected:
  // A project of the solution, mapped and built unless `mapping` says otherwise.
  void Add(const char* type, const std::string& path, const std::string& mapping = "Release|Any CPU",
           bool isBuilt = true) {
    const std::string guid = "{00000000-0000-0000-0000-00000000000" + std::to_string(++count_) + "}";
    projects_ += "Project(\"" + std::string(type) + "\") = \"P" + std::to_string(count_) + "\", \"" + path +
                 "\", \"" + guid + "\"\r\nEndProject\r\n";
    if (mapping.empty()) return;
    rows_ += "\t\t" + guid + ".Release|Mixed Platforms.ActiveCfg = " + mapping + "\r\n";
    if (isBuilt) rows_ += "\t\t" + guid + ".Release|Mixed Platforms.Build.0 = " + mapping + "\r\n";
  }
  std::vector<OutputPlace> Find(const std::map<std::string, std::string>& properties = {}) const {
    const std::string text = "Microsoft Visual Studio Solution File, Format Version 9.00\r\n" + projects_ +
                             "Global\r\n\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n"
                             "\t\tRelease|Mixed Platforms = Release|Mixed Platforms\r\n\tEndGlobalSection\r\n"
                             "\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n" +
                             rows_ + "\tEndGlobalSection\r\nEndGlobal\r\n";
    return FindOutputPlaces(ReadSolutionMap(text),
                            {folder / "App.sln", "Release|Mixed Platforms", properties});
  }
  OutputPlace FindOne() const {
    const auto places = Find();
    EXPECT_EQ(places.size(), 1u);
    return places.front();
  }
  std::string Full(const std::string& name) const { return ExpandPath(folder.Path(), name); }
  TestFolder folder;

 private:
  int count_ = 0;
  std::string projects_, rows_;
};

TEST_F(OutputPlaces, AreOfEachKindWhereItsProjectSays) {
  folder.Write("Lib/Lib.csproj", NetText(""));
  folder.Write("Tool/Tool.vcproj", VcText("1", ""));
  folder.Write("Static/Static.vcproj", VcText("4", ""));
  folder.Write("Nothing/Nothing.vcproj", VcText("10", ""));
  Add(kCs, "Lib\\Lib.csproj");
  Add(kVc, "Tool\\Tool.vcproj", "Release|Win32");
  Add(kFolderType, "Items", "");
  Add(kVc, "Static\\Static.vcproj", "Release|Win32");
  Add(kVc, "Nothing\\Nothing.vcproj", "Release|Win32");
  const auto places = Find();
  ASSERT_EQ(places.size(), 4u);
  EXPECT_EQ(places[0].name, "P1");
  EXPECT_EQ(places[0].path, "Lib\\Lib.csproj");
  EXPECT_EQ(places[0].file, Full("Lib/Lib.csproj"));
  EXPECT_EQ(places[0].answer, Answer::Program);
  EXPECT_EQ(places[0].output, Full("Lib/bin/Release/Acme.dll"));
  EXPECT_EQ(places[1].answer, Answer::Program);
  EXPECT_EQ(places[1].output, Full("out/Tool.exe"));
  EXPECT_EQ(places[2].answer, Answer::File);
  EXPECT_EQ(places[2].output, Full("out/Tool.lib"));
  EXPECT_EQ(places[3].answer, Answer::Nothing);
  EXPECT_EQ(places[3].reason, "the project makes no program or library");
}

TEST_F(OutputPlaces, AreWhereTheEngineIsTold) {
  folder.Write("Lib.csproj", NetText(""));
  Add(kCs, "Lib.csproj");
  EXPECT_EQ(Find({{"OutputPath", "drop\\"}}).front().output, Full("drop/Acme.dll"));
}

TEST_F(OutputPlaces, AreNoneForWhatTheSolutionDoesNotBuild) {
  folder.Write("Lib.csproj", NetText(""));
  Add(kCs, "Lib.csproj", "Release|Any CPU", false);
  const OutputPlace place = FindOne();
  EXPECT_EQ(place.answer, Answer::Nothing);
  EXPECT_EQ(place.reason, "the solution does not build it in the configuration Release|Mixed Platforms");
  EXPECT_EQ(place.output, "");
}

TEST_F(OutputPlaces, AreUnknownWhereAFileIsNotThereOrNotRead) {
  folder.Write("Broken.csproj", "<Project");
  folder.Write("Setup.vdproj", "\"DeployProject\"");
  Add(kCs, "None.csproj");
  Add(kCs, "Broken.csproj");
  Add(kVc, "Setup.vdproj", "Release");
  Add(kCs, "http://localhost/Web/Web.csproj", "Release|.NET");
  Add(kVc, "a.deployproj", "Release");
  folder.Write("a.deployproj", "");
  const auto places = Find();
  ASSERT_EQ(places.size(), 5u);
  for (const OutputPlace& place : places) EXPECT_EQ(place.answer, Answer::Unknown) << place.path;
  EXPECT_EQ(places[0].reason, "its project file is not there: " + Full("None.csproj"));
  EXPECT_TRUE(places[1].reason.starts_with("Error parsing project file : ")) << places[1].reason;
  EXPECT_EQ(places[2].reason, "what a setup project makes is not worked out here");
  EXPECT_EQ(places[3].reason, "its files lie on a web server");
  EXPECT_EQ(places[4].reason, "projects of this kind are not known here");
}

TEST_F(OutputPlaces, AreNotGuessed) {
  folder.Write("A.csproj", NetText("<Import Project=\"Common.props\"/>"));
  folder.Write("B.vcproj",
               VcText("1", "<Tool Name='VCLinkerTool' OutputFile='$(NOBODY_SETS_THIS)\\b.exe'/>"));
  folder.Write("C.vcproj", VcText("1", ""));
  Add(kCs, "A.csproj");
  Add(kVc, "B.vcproj", "Release|Win32");
  Add(kVc, "C.vcproj", "Special|Win32");
  const auto places = Find();
  for (const OutputPlace& place : places) {
    EXPECT_EQ(place.answer, Answer::Unknown) << place.path << " " << place.output;
    EXPECT_NE(place.reason, "") << place.path;
  }
  EXPECT_EQ(places[1].reason, "its path depends on $(NOBODY_SETS_THIS), which is not set");
}

TEST_F(OutputPlaces, FindProjectsWhoseNamesDifferInCase) {
  folder.Write("lib/lib.csproj", NetText(""));
  Add(kCs, "LIB\\Lib.csproj");
  std::error_code error;  // Windows keeps the spelling that it was asked with
  EXPECT_TRUE(std::filesystem::equivalent(FindOne().file, Full("lib/lib.csproj"), error)) << FindOne().file;
  if (!kIsWindows) {
    EXPECT_EQ(FindOne().file, FindExisting(Full("lib/lib.csproj")));
  }
  EXPECT_EQ(FindOne().answer, Answer::Program);
}

}  // namespace
}  // namespace qx
