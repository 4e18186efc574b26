#include "projects/net/NetProject.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

NetProject ReadData(const std::string& name, const std::string& configuration,
                    const std::string& platform = "") {
  NetSelection selection;
  selection.configuration = configuration;
  selection.platform = platform;
  return ReadNetProject(QX_SOURCE_DIR "/projects/net/testdata/" + name, selection);
}

NetProject Parse(std::string bytes, const NetSelection& selection = {},
                 const std::string& name = "/p/P.csproj") {
  return ParseNetProject(bytes, name, selection, [](const std::string&) { return std::nullopt; });
}

TEST(NetProject, ReadsTheSettingsOf2003) {
  const NetProject project = ReadData("Form2003.csproj", "Release");
  EXPECT_EQ(project.form, NetForm::Attributes);
  EXPECT_EQ(project.language, NetLanguage::CSharp);
  EXPECT_EQ(project.guid, "{C17D27DF-4C57-4625-AEE0-A40C4F48FF1A}");
  EXPECT_EQ(project.productVersion, "7.10.3077");
  EXPECT_EQ(project.assemblyName.value, "Forms & more");
  EXPECT_EQ(project.outputType.value, "WinExe");
  EXPECT_EQ(project.rootNamespace, "Sample.Forms");
  EXPECT_EQ(project.startupObject, "Sample.Forms.Program");
  EXPECT_EQ(project.icon, "App.ico");
  EXPECT_EQ(project.keyFile, "..\\key.snk");
  EXPECT_EQ(project.preBuildEvent, "echo one\necho two");
  EXPECT_EQ(project.runPostBuildEvent, "OnOutputUpdated");
  EXPECT_EQ(project.configurations, (std::vector<std::string>{"Debug", "Release"}));
  EXPECT_TRUE(project.unfamiliar.empty());
}

TEST(NetProject, ReadsTheConfigurationOf2003ThatIsAskedFor) {
  const NetProject release = ReadData("Form2003.csproj", "Release");
  EXPECT_TRUE(release.hasConfiguration);
  EXPECT_EQ(release.outputPath.value, "..\\out\\");
  EXPECT_EQ(release.defines, "TRACE");
  EXPECT_EQ(release.noWarn, "0618,1591");
  EXPECT_EQ(release.documentationFile, "Forms.xml");
  EXPECT_EQ(release.warningLevel, 3);
  EXPECT_TRUE(release.optimise && release.allowUnsafe && release.checkOverflow && release.warningsAsErrors);
  EXPECT_FALSE(release.debug);
  const NetProject debug = ReadData("Form2003.csproj", "debug");  // letter case aside
  EXPECT_TRUE(debug.hasConfiguration && debug.debug);
  EXPECT_EQ(debug.outputPath.value, "bin\\Debug\\");
  EXPECT_FALSE(ReadData("Form2003.csproj", "Test").hasConfiguration);
}

TEST(NetProject, ReadsReferencesAndFilesOf2003) {
  const NetProject project = ReadData("Form2003.csproj", "Debug");
  ASSERT_EQ(project.references.size(), 2u);
  EXPECT_EQ(project.references[0].name, "System.Xml");
  EXPECT_FALSE(project.references[0].IsProject());
  EXPECT_FALSE(project.references[0].copyLocal.has_value());
  EXPECT_EQ(project.references[1].projectGuid, "{11111111-4C57-4625-AEE0-A40C4F48FF1A}");
  EXPECT_TRUE(project.references[1].IsProject());
  EXPECT_EQ(project.references[1].copyLocal, false);
  ASSERT_EQ(project.files.size(), 2u);
  EXPECT_EQ(project.files[0].path, "..\\Common\\AssemblyInfo.cs");  // a link lies elsewhere
  EXPECT_EQ(project.files[0].place, "AssemblyInfo.cs");
  EXPECT_EQ(project.files[1].action, "EmbeddedResource");
  EXPECT_EQ(project.files[1].dependsOn, "Form1.cs");
}

TEST(NetProject, ReadsVisualBasicOf2002) {
  const NetProject project = ReadData("Basic2003.vbproj", "Debug");
  EXPECT_EQ(project.language, NetLanguage::VisualBasic);
  EXPECT_EQ(project.imports, "Microsoft.VisualBasic,System");
  EXPECT_EQ(project.defines, "DEBUG=True;TRACE=True");
  EXPECT_EQ(project.optionStrict, "On");
  EXPECT_TRUE(project.checkOverflow);  // for RemoveIntegerChecks is false
  EXPECT_TRUE(project.unfamiliar.empty());
}

TEST(NetProject, ReadsAConfigurationOf2005) {
  const NetProject project = ReadData("App2005.csproj", "Release", "Any CPU");
  EXPECT_EQ(project.form, NetForm::MsBuild);
  EXPECT_TRUE(project.hasConfiguration);
  EXPECT_EQ(project.configurations, (std::vector<std::string>{"Debug|AnyCPU", "Release|AnyCPU"}));
  EXPECT_EQ(project.outputPath.value, "bin\\Release");
  EXPECT_EQ(project.fileName.value, "app.exe");
  EXPECT_TRUE(project.optimise);
  EXPECT_FALSE(project.debug);
  EXPECT_EQ(project.warningLevel, 2);
  EXPECT_EQ(project.defines, "");
  EXPECT_TRUE(project.unfamiliar.empty());
  EXPECT_FALSE(ReadData("App2005.csproj", "Release", "x64").hasConfiguration);
}

TEST(NetProject, TakesTheDefaultsOf2005WhereNothingIsAskedFor) {
  EXPECT_EQ(ReadData("App2005.csproj", "").outputPath.value, "bin\\Debug\\");
}

TEST(NetProject, LetsPropertiesFromOutsideWin) {
  NetSelection selection;
  selection.configuration = "Release";
  selection.properties = {{"outputpath", "elsewhere/"}};
  const NetProject project = ReadNetProject(QX_SOURCE_DIR "/projects/net/testdata/App2005.csproj", selection);
  EXPECT_EQ(project.outputPath.value, "elsewhere/");
}

TEST(NetProject, ReadsItemsOf2005) {
  const NetProject project = ReadData("App2005.csproj", "Debug", "AnyCPU");
  ASSERT_EQ(project.references.size(), 3u);
  EXPECT_EQ(project.references[1].name, "nunit.framework");
  EXPECT_EQ(project.references[1].hintPath, "..\\lib\\nunit.framework.dll");
  EXPECT_EQ(project.references[1].copyLocal, false);
  EXPECT_EQ(project.references[2].projectFile, "..\\Library\\Library.csproj");
  EXPECT_EQ(project.references[2].projectGuid, "{11111111-4C57-4625-AEE0-A40C4F48FF1A}");
  ASSERT_EQ(project.files.size(), 4u);
  EXPECT_EQ(project.files[1].path, "Other.cs");
  EXPECT_EQ(project.files[2].place, "Properties\\AssemblyInfo.cs");
  EXPECT_EQ(project.files[3].path, "Resources\\Text(1).txt");
}

TEST(NetProject, ReadsAnImportThatIsThere) {
  const TestFolder folder;
  folder.Write("Common.props",
               "<Project><PropertyGroup><AssemblyName>shared</AssemblyName></PropertyGroup></Project>");
  const std::string file =
      folder.Write("P/P.csproj",
                   "<Project><PropertyGroup><OutputPath>out</OutputPath></PropertyGroup><Import "
                   "Project=\"..\\common.PROPS\"/>"
                   "<Import Project=\"$(MSBuildBinPath)\\Microsoft.CSharp.targets\"/></Project>");
  const NetProject project = ReadNetProject(file, {});
  EXPECT_EQ(project.fileName.value, "shared.exe");
  EXPECT_EQ(project.fileName.doubt, "");
}

TEST(NetProject, KeepsTheMacrosOfEvents) {
  const NetProject project = Parse(
      "<Project><PropertyGroup><Tool>run</Tool><PostBuildEvent>$(Tool) \"$(TargetPath)\" $(solutiondir)\r\n"
      "copy a $(None)b</PostBuildEvent></PropertyGroup></Project>");
  EXPECT_EQ(project.postBuildEvent, "run \"$(TargetPath)\" $(solutiondir)\ncopy a b");
}

TEST(NetProject, TakesTheFirstBranchThatIsMet) {
  const NetProject project = Parse(
      "<Project><Choose><When "
      "Condition=\"'$(Configuration)'=='A'\"><PropertyGroup><RootNamespace>a</RootNamespace>"
      "</PropertyGroup></When><When "
      "Condition=\"true\"><PropertyGroup><RootNamespace>b</RootNamespace></PropertyGroup>"
      "</When><Otherwise><PropertyGroup><RootNamespace>c</RootNamespace></PropertyGroup></Otherwise></"
      "Choose></Project>");
  EXPECT_EQ(project.rootNamespace, "b");
}

TEST(NetProject, NamesWhatItDoesNotKnow) {
  const NetProject project = Parse(
      "<VisualStudioProject><CSHARP Colour=\"red\"><Build><Settings><Config Name=\"Debug\" Speed=\"9\"/>"
      "<Config Name=\"Release\" Speed=\"9\"/></Settings></Build></CSHARP></VisualStudioProject>");
  EXPECT_EQ(project.unfamiliar, (std::vector<std::string>{"CSHARP@Colour", "Config@Speed"}));
}

TEST(NetProject, RefusesWhatIsNoProject) {
  EXPECT_EQ(MessageOf([] { Parse("<Something/>"); }),
            "Error parsing project file : the document element is \"Something\", not VisualStudioProject or "
            "Project");
  EXPECT_EQ(MessageOf([] { Parse("<VisualStudioProject><ECSHARP/></VisualStudioProject>"); }),
            "Error parsing project file : there is no CSHARP or VisualBasic element, but \"ECSHARP\"");
  EXPECT_TRUE(MessageOf([] { Parse("<Project>"); }).starts_with("Error parsing project file : "));
}

TEST(NetProject, EndsOnImportsThatImportThemselves) {
  const TestFolder folder;
  const std::string file = folder.Write(
      "P.csproj", "<Project><Import Project=\"P.csproj\"/><Import Project=\"P.csproj\"/></Project>");
  EXPECT_NE(ReadNetProject(file, {}).outputPath.doubt, "");
}

TEST(NetProject, KnowsTheLanguageByTheExtension) {
  EXPECT_EQ(NetLanguageOf("A.CSPROJ"), NetLanguage::CSharp);
  EXPECT_EQ(NetLanguageOf("a.vbproj"), NetLanguage::VisualBasic);
  EXPECT_EQ(NetLanguageOf("a.vjsproj"), NetLanguage::JSharp);
  EXPECT_FALSE(NetLanguageOf("a.vcproj"));
}

}  // namespace
}  // namespace qx
