#include "tools/vsinspect/Reports.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"
#include "programs/ProgramFixture.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kCpp = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}";
constexpr const char* kA = "{AAAAAAAA-0000-0000-0000-000000000001}";
constexpr const char* kB = "{BBBBBBBB-0000-0000-0000-000000000002}";

class Reports : public testing::Test {
 protected:
  std::string Solution(const std::string& sections) const {
    folder.Write("B.csproj", "");
    folder.Write(
        "Cpp/Cpp.vcproj",
        "<VisualStudioProject><Files><Filter><File RelativePath='none.rc'/><File RelativePath='App.rc'/>"
        "</Filter></Files></VisualStudioProject>");
    folder.Write("Cpp/App.rc", "1 VERSIONINFO");
    const auto project = [](const std::string& name, const std::string& path, const std::string& guid) {
      return std::string("Project(\"") + kCpp + "\") = \"" + name + "\", \"" + path + "\", \"" + guid +
             "\"\r\nEndProject\r\n";
    };
    return folder.Write("App.sln", "Microsoft Visual Studio Solution File, Format Version 8.00\r\n" +
                                       project("Cpp", "Cpp\\Cpp.vcproj", kA) + project("B", "B.csproj", kB) +
                                       "Global\r\n" + sections + "EndGlobal\r\n");
  }
  std::string Full(const std::string& name) const { return ExpandPath(folder.Path(), name); }
  TestFolder folder;
};

const std::string kSections =
    std::string(
        "\tGlobalSection(SolutionConfiguration) = preSolution\r\n\t\tDebug = Debug\r\n\tEndGlobalSection\r\n"
        "\tGlobalSection(ProjectDependencies) = postSolution\r\n\t\t") +
    kA + ".0 = " + kB + "\r\n\tEndGlobalSection\r\n";

TEST_F(Reports, ASolutionAsJsonHoldsEveryFieldInItsOrder) {
  const std::string file = Solution(kSections);
  const std::string report = SolutionReport(file, Form::AsJson);
  EXPECT_EQ(report.back(), '\n');
  const Json expected = {{"fileName", file},
                         {"configurations", {"Debug"}},
                         {"projects",
                          {{{"name", "Cpp"},
                            {"path", "Cpp\\Cpp.vcproj"},
                            {"guid", kA},
                            {"typeGuid", kCpp},
                            {"isVCProject", true},
                            {"dependencies", Json::array({kB})},
                            {"rcFiles", {Full("Cpp/none.rc"), Full("Cpp/App.rc")}},
                            {"versionInfoFile", Full("Cpp/App.rc")}},
                           {{"name", "B"},
                            {"path", "B.csproj"},
                            {"guid", kB},
                            {"typeGuid", kCpp},
                            {"isVCProject", false},
                            {"dependencies", Json::array()},
                            {"rcFiles", Json::array()},
                            {"versionInfoFile", ""}}}}};
  EXPECT_EQ(Json::parse(report).dump(), expected.dump());
}

TEST_F(Reports, ASolutionWithoutConfigurationsHoldsNull) {
  EXPECT_TRUE(Json::parse(SolutionReport(Solution(""), Form::AsJson)).at("configurations").is_null());
}

TEST_F(Reports, ASolutionAsTextNamesWhatItHolds) {
  const std::string file = Solution(kSections);
  EXPECT_EQ(SolutionReport(file, Form::AsText),
            file +
                "\nconfigurations: 1\n    Debug\nprojects: 2\nCpp\n    path          Cpp\\Cpp.vcproj\n    "
                "guid          " +
                kA + "\n    type          " + kCpp + " (Visual C++)\n    depends on    " + kB +
                "\n    resources     " + Full("Cpp/none.rc") + "\n    resources     " + Full("Cpp/App.rc") +
                "\n    version info  " + Full("Cpp/App.rc") +
                "\nB\n    path          B.csproj\n    guid          " + kB + "\n    type          " + kCpp +
                "\n");
}

constexpr const char* kBlock =
    "VS_VERSION_INFO VERSIONINFO\r\n FILEVERSION 1,2,3,4\r\n FILEFLAGS 0x03L\r\n FILETYPE 0x02L\r\nBEGIN\r\n"
    "    BLOCK \"StringFileInfo\"\r\n    BEGIN\r\n        BLOCK \"040904E4\"\r\n        BEGIN\r\n"
    "            VALUE \"CompanyName\", \"ACME\\0\"\r\n        END\r\n    END\r\n"
    "    BLOCK \"VarFileInfo\"\r\n    BEGIN\r\n        VALUE \"Translation\", 0x0409, 1252\r\n    "
    "END\r\nEND\r\n";

TEST_F(Reports, AVersionResourceAsJsonHoldsEveryFieldInItsOrder) {
  const Json report = Json::parse(VersionInfoReport(folder.Write("a.rc", kBlock), Form::AsJson));
  std::vector<std::string> names;
  for (const auto& [name, value] : report.items()) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"majorVersion", "minorVersion", "releaseVersion", "buildVersion",
                                             "isDebug", "isPreRelease", "isSpecial", "isPrivate", "isDLL",
                                             "locale", "codePage", "keys"}));
  EXPECT_EQ(report["majorVersion"], 1);
  EXPECT_EQ(report["minorVersion"], 2);
  EXPECT_EQ(report["releaseVersion"], 3);
  EXPECT_EQ(report["buildVersion"], 4);
  EXPECT_EQ(report["isDebug"], true);
  EXPECT_EQ(report["isPreRelease"], true);
  EXPECT_EQ(report["isSpecial"], false);
  EXPECT_EQ(report["isPrivate"], false);
  EXPECT_EQ(report["isDLL"], true);
  EXPECT_EQ(report["locale"], 0x409);
  EXPECT_EQ(report["codePage"], 1252);
  ASSERT_EQ(report["keys"].size(), 1u);
  EXPECT_EQ(report["keys"][0], "CompanyName=ACME");
}

TEST_F(Reports, AVersionResourceAsTextIsReadable) {
  const std::string file = folder.Write("a.rc", kBlock);
  EXPECT_EQ(VersionInfoReport(file, Form::AsText),
            file +
                "\nversion   1.2.3.4\nflags     isDebug isPreRelease isDLL\n"
                "locale    1033\ncodePage  1252\nkeys\n    CompanyName=ACME\n");
}

// "Japanese" in code page 932, whose second bytes may be ASCII's (5C, a backslash), and a German word in 1252.
TEST_F(Reports, TextsOfACodePageComeOutRight) {
  const auto script = [](const std::string& head, const std::string& value) {
    std::string text = head + kBlock;
    return text.replace(text.find("ACME"), 4, value);
  };
  const struct {
    std::string script;
    const char* wanted;
  } rows[] = {
      {script("#pragma code_page(932)\r\n", "\x93\xFA\x96\x7B\x95\x5C"), "CompanyName=\u65E5\u672C\u8868"},
      {script("#pragma code_page(1252)\r\n", "M\xFCller"), "CompanyName=M\u00FCller"},
      {script("", "M\xFCller"), "CompanyName=M\u00FCller"},  // the page of the strings, 1252
      {script("", "M\xC3\xBCller"), "CompanyName=M\u00FCller"},
      {"\xEF\xBB\xBF" + script("#pragma code_page(932)\r\n", "M\xC3\xBCller"), "CompanyName=M\u00FCller"},
      {script("#pragma code_page(932)\r\n", "\xFF\xFF"), "CompanyName=\uFFFD\uFFFD"},
  };
  for (const auto& row : rows) {
    const std::string file = folder.Write("a.rc", row.script);
    EXPECT_EQ(Json::parse(VersionInfoReport(file, Form::AsJson))["keys"][0], row.wanted);
    if (std::string_view(row.wanted).find("\uFFFD") != std::string_view::npos) continue;  // the bytes, there
    EXPECT_NE(VersionInfoReport(file, Form::AsText).find(row.wanted), std::string::npos) << row.wanted;
  }
}

TEST_F(Reports, AProgramAsJsonHoldsEveryFieldInItsOrder) {
  const std::string file =
      folder.Write("a.exe", MakeProgram({0x14C, false, MetadataOf("Acme", {1, 2, 1, 0}, "de"),
                                         VersionBlock({1, 2, 1, 5}, {1, 2, 0, 0})}));
  const Json strings = {{"CompanyName", "ACME"}, {"FileVersion", "1.2.3.4"}, {"Empty", ""}};
  const Json expected = {
      {"machine", "x86"},
      {"managed", true},
      {"assemblyName", "Acme"},
      {"assemblyVersion", "1.2.1.0"},
      {"fileVersion", "1.2.1.5"},
      {"productVersion", "1.2.0.0"},
      {"language", "0409"},
      {"codePage", 1252},
      {"strings", strings},
      {"culture", "de"},
      {"fixed", {{"flagsMask", 63}, {"flags", 2}, {"os", 0x40004}, {"type", 1}, {"subtype", 0}}},
      {"stringTables", Json::array({{{"key", "040904E4"}, {"strings", strings}}})},
      {"translations", Json::array({{{"language", "0409"}, {"codePage", 1252}}})}};
  EXPECT_EQ(Json::parse(BinaryReport(file, Form::AsJson)).dump(), expected.dump());
}

TEST_F(Reports, AProgramThatSaysNothingHasTheSameFieldsEmpty) {
  const std::string file = folder.Write("a.dll", MakeProgram({0x8664, true, {}, {}}));
  const Json expected = {{"machine", "x64"},      {"managed", false},  {"assemblyName", ""},
                         {"assemblyVersion", ""}, {"fileVersion", ""}, {"productVersion", ""},
                         {"language", ""},        {"codePage", 0},     {"strings", Json::object()},
                         {"culture", ""}};
  EXPECT_EQ(Json::parse(BinaryReport(file, Form::AsJson)).dump(), expected.dump());
  EXPECT_EQ(BinaryReport(file, Form::AsText), file + "\nmachine           x64\nno version resource\n");
}

TEST_F(Reports, AProgramAsTextIsReadable) {
  const std::string file =
      folder.Write("a.exe", MakeProgram({0x14C, false, MetadataOf("Acme", {1, 2, 1, 0}, ""),
                                         VersionBlock({1, 2, 1, 5}, {1, 2, 0, 0})}));
  EXPECT_EQ(
      BinaryReport(file, Form::AsText),
      file +
          "\nmachine           x86, .NET\nassembly          Acme\nassembly version  1.2.1.0\n"
          "file version      1.2.1.5\nproduct version   1.2.0.0\nstrings 040904E4\n    CompanyName=ACME\n"
          "    FileVersion=1.2.3.4\n    Empty=\n");
}

// A solution of one static library, which is looked for as a file alone.
class BuiltReports : public testing::Test {
 protected:
  BuiltReports() {
    folder.Write(
        "Lib.vcproj",
        "<VisualStudioProject ProjectType='Visual C++' Version='8.00' Name='Lib'><Platforms><Platform "
        "Name='Win32'/></Platforms><Configurations><Configuration Name='Release|Win32' OutputDirectory='out' "
        "ConfigurationType='4'></Configuration></Configurations><Files></Files></VisualStudioProject>");
    solution = folder.Write("Lib.sln",
                            std::string("Microsoft Visual Studio Solution File, Format Version 9.00\r\n") +
                                "Project(\"" + kCpp + "\") = \"Lib\", \"Lib.vcproj\", \"" + kA +
                                "\"\r\nEndProject\r\nGlobal\r\n\tGlobalSection("
                                "SolutionConfigurationPlatforms) = preSolution\r\n\t\tRelease|Win32 = "
                                "Release|Win32\r\n\tEndGlobalSection\r\nEndGlobal\r\n");
  }
  Json Report() const { return Json::parse(BuiltReport(solution, "Release|Win32", Form::AsJson).text); }
  TestFolder folder;
  std::string solution;
};

TEST_F(BuiltReports, HoldEveryFieldInItsOrder) {
  const std::string output = ExpandPath(folder.Path(), "out/Lib.lib");
  const Json versions = {{"assemblyVersion", ""}, {"fileVersion", ""}};
  Json project = {{"name", "Lib"},
                  {"path", "Lib.vcproj"},
                  {"output", output},
                  {"status", "missing"},
                  {"reason", "it is not there: the build did not make it, build the project"},
                  {"expected", versions},
                  {"found", versions}};
  EXPECT_EQ(Report().dump(), Json({{"projects", Json::array({project})}}).dump());
  EXPECT_FALSE(BuiltReport(solution, "Release", Form::AsText).isGood);
  folder.Write("out/Lib.lib", "!<arch>\n");
  project["status"] = "ok";
  project["reason"] = "";
  EXPECT_EQ(Report().dump(), Json({{"projects", Json::array({project})}}).dump());
  EXPECT_TRUE(BuiltReport(solution, "Release", Form::AsText).isGood);
}

TEST_F(BuiltReports, AsTextAreReadable) {
  const std::string output = ExpandPath(folder.Path(), "out/Lib.lib");
  EXPECT_EQ(BuiltReport(solution, "Release|Win32", Form::AsText).text,
            "missing  Lib: " + output +
                "\n         it is not there: the build did not make it, build the project\n"
                "0 of 1 projects are as they should be\n");
}

}  // namespace
}  // namespace qx
