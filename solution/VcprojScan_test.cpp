#include "solution/VcprojScan.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

using Names = std::vector<std::string>;

std::string File(const std::string& path) { return "<File RelativePath=\"" + path + "\"/>"; }
std::string Filter(const std::string& inside) { return "<Filter Name=\"f\">" + inside + "</Filter>"; }
std::string Vcproj(const std::string& inside) {
  return "<?xml version=\"1.0\"?>\r\n<VisualStudioProject><Files>" + inside +
         "</Files></VisualStudioProject>\r\n";
}

Names Listed(std::string bytes) {
  XmlDocument document;
  return ListedResourceScripts(bytes, document);
}

TEST(VcprojScan, ListsScriptsOfFiltersInDocumentOrder) {
  EXPECT_EQ(Listed(Vcproj(Filter(File("b.rc") + File("x.cpp")) + Filter(File(".\\a.Rc")))),
            (Names{"b.rc", ".\\a.Rc"}));
}

TEST(VcprojScan, KeepsDoublets) {
  EXPECT_EQ(Listed(Vcproj(Filter(File("App.rc")) + Filter(File("App.rc")))), (Names{"App.rc", "App.rc"}));
}

TEST(VcprojScan, ComparesTheExtensionWhole) {
  EXPECT_EQ(Listed(Vcproj(Filter(File("a.rc2") + File("arc") + File("a.rc.txt") + File("a.b.RC")))),
            Names{"a.b.RC"});
}

// Saved projects name the script that is found so.
TEST(VcprojScan, PassesOverFilesOutsideAFilterAndInNestedOnes) {
  EXPECT_EQ(Listed(Vcproj(File("out.rc") + Filter(Filter(File("deep.rc")) + File("in.rc")))), Names{"in.rc"});
}

TEST(VcprojScan, KnowsOneLayoutOnly) {
  const std::string files = "<Files>" + Filter(File("a.rc")) + "</Files>";
  EXPECT_EQ(Listed("<Project>" + files + "</Project>"), Names{});
  EXPECT_EQ(Listed("<visualstudioproject>" + files + "</visualstudioproject>"), Names{});
  EXPECT_EQ(Listed("<VisualStudioProject><Other>" + files + "</Other></VisualStudioProject>"), Names{});
  EXPECT_EQ(Listed("<VisualStudioProject>" + files + "</VisualStudioProject>"), Names{"a.rc"});
}

TEST(VcprojScan, PassesOverAFileWithoutAPath) {
  EXPECT_EQ(Listed(Vcproj(Filter("<File/><File relativepath=\"b.rc\"/>" + File("a.rc")))), Names{"a.rc"});
}

TEST(VcprojScan, RefusesWhatIsNoXmlWithTheReason) {
  for (const char* bytes : {"", "no xml", "<VisualStudioProject>", "<VisualStudioProject></Other>"}) {
    try {
      Listed(bytes);
      FAIL() << bytes;
    } catch (const Exception& fault) {
      const std::string beginning = "Error parsing project file : ";
      EXPECT_TRUE(fault.Message().starts_with(beginning)) << fault.Message();
      EXPECT_GT(fault.Message().size(), beginning.size()) << bytes;
    }
  }
}

TEST(VcprojScan, LooksIntoEveryFilesElement) {
  EXPECT_EQ(Listed("<VisualStudioProject><Files>" + Filter(File("a.rc")) + "</Files><Files>" +
                   Filter(File("b.rc")) + "</Files></VisualStudioProject>"),
            (Names{"a.rc", "b.rc"}));
}

TEST(VcprojScan, ReadsAProjectBehindAComment) {
  EXPECT_EQ(Listed("<!--\r\nlicence\r\n-->\r\n<VisualStudioProject><Files>" + Filter(File("a.rc")) +
                   "</Files></VisualStudioProject>"),
            Names{"a.rc"});
}

TEST(VcprojScan, ReadsNamesInTheDeclaredEncoding) {
  const auto declared = [](const std::string& encoding, const std::string& name) {
    return Listed("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><VisualStudioProject><Files>" +
                  Filter(File(name)) + "</Files></VisualStudioProject>");
  };
  EXPECT_EQ(declared("shift_jis", "\x83\x5C\x83\x74\x83\x67.rc"), Names{"ソフト.rc"});
  EXPECT_EQ(declared("Windows-1252", "gr\xFC\xDF.rc"), Names{"grüß.rc"});
}

// Through a solution

class Scan : public testing::Test {
 protected:
  InterfacePtr<IVSDotNetSolution> Open(const std::string& path) const {
    return OpenSolution(folder.Write("App.sln",
                                     "Microsoft Visual Studio Solution File, Format Version 9.00\r\n"
                                     "Project(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = \"Lib\", \"" +
                                         path + "\", \"{G}\"\r\nEndProject\r\nGlobal\r\nEndGlobal\r\n"));
  }
  InterfacePtr<IVSDotNetProject> Project(const std::string& path = "Lib\\Lib.vcproj") const {
    return Open(path)->GetProjects()->GetItem(0);
  }
  std::string Full(const std::string& path) const { return ExpandPath(folder.Path(), path); }
  // A project of these scripts; the text of each is its file's, none for a missing file.
  InterfacePtr<IVSDotNetProject> WithScripts(
      const std::vector<std::pair<std::string, std::optional<std::string>>>& scripts) const {
    std::string files;
    for (const auto& [name, text] : scripts) {
      files += File(name);
      if (text) folder.Write("Lib/" + name, *text);
    }
    folder.Write("Lib/Lib.vcproj", Vcproj(Filter(files)));
    return Project();
  }
  TestFolder folder;
};

TEST_F(Scan, GivesFullPathsBelowTheProject) {
  folder.Write("Lib/Res/App.RC", "");
  folder.Write("Lib/Lib.vcproj", Vcproj(Filter(File("Res\\App.RC") + File("..\\missing.rc"))));
  const auto project = Project();
  EXPECT_TRUE(project->IsVCProject());
  EXPECT_EQ(project->GetRCFiles().Items(), (Names{Full("Lib\\Res\\App.RC"), Full("missing.rc")}));
}

TEST_F(Scan, TakesTheProjectsExtensionInCapitals) {
  folder.Write("Lib/LIB.VCPROJ", Vcproj(Filter(File("a.rc"))));
  const auto project = Project("Lib\\LIB.VCPROJ");
  EXPECT_TRUE(project->IsVCProject());
  EXPECT_EQ(project->GetRCFiles().Items(), Names{Full("Lib\\a.rc")});
}

TEST_F(Scan, LeavesOtherProjectsAlone) {
  folder.Write("Lib/Lib.csproj", Vcproj(Filter(File("a.rc"))));
  folder.Write("Lib/Lib.vbproj", "no xml");
  EXPECT_EQ(Project("Lib\\Lib.csproj")->GetRCFiles().Count(), 0);
  EXPECT_EQ(Project("Lib\\Lib.vbproj")->GetRCFiles().Count(), 0);
}

TEST_F(Scan, KeepsAWebProjectWithoutAFile) {
  const auto project = Project("http://localhost/Lib/Lib.vcproj");
  ASSERT_TRUE(project);
  EXPECT_TRUE(project->IsVCProject());
  EXPECT_EQ(project->GetRCFiles().Count(), 0);
}

TEST_F(Scan, LeavesOutAProjectWithoutAFile) {
  EXPECT_EQ(Open("Lib\\Lib.vcproj")->GetProjects()->GetCount(), 0);
}

TEST_F(Scan, FailsTheWholeSolutionForAMalformedProject) {
  folder.Write("Lib/Lib.vcproj", "<VisualStudioProject>");
  try {
    Open("Lib\\Lib.vcproj");
    FAIL();
  } catch (const Exception& fault) {
    EXPECT_TRUE(fault.Message().starts_with("Error parsing project file : ")) << fault.Message();
  }
}

TEST_F(Scan, FindsTheFirstScriptWithAVersion) {
  const auto project = WithScripts(
      {{"a.rc", "ICON\r\nversioninfo\r\n"}, {"b.rc", "1 VERSIONINFO\r\n"}, {"c.rc", "1 VERSIONINFO\r\n"}});
  EXPECT_EQ(project->GetRCFiles().Count(), 3);
  EXPECT_EQ(project->GetVersionInfoFile(), Full("Lib\\b.rc"));
}

TEST_F(Scan, SearchesOnBehindAScriptThatCannotBeRead) {
  EXPECT_EQ(WithScripts({{"gone.rc", std::nullopt}, {"b.rc", "VERSIONINFO"}})->GetVersionInfoFile(),
            Full("Lib\\b.rc"));
}

TEST_F(Scan, FindsNoVersionWhereNoneIs) {
  EXPECT_EQ(WithScripts({{"a.rc", "VersionInfo"}, {"b.rc", ""}})->GetVersionInfoFile(), "");
}

TEST_F(Scan, FindsAVersionInAWideScript) {
  std::string wide = "\xFF\xFE";
  for (const char c : std::string("1 VERSIONINFO\r\n")) (wide += c) += '\0';
  EXPECT_EQ(WithScripts({{"a.rc", wide}})->GetVersionInfoFile(), Full("Lib\\a.rc"));
}

}  // namespace
}  // namespace qx
