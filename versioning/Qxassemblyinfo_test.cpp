#include "versioning/Qxassemblyinfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "host/testing/TestFolder.h"
#include "host/testing/TestLog.h"
#include "platform/System.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

// The action's side: attributes that are in the map are updated.
class Source final : public AnswersUncounted<IAssemblyInfoSource> {
 public:
  virtual ~Source() = default;
  bool IsAttributeUpdated(AssemblyAttribute attribute) override { return updated.count(attribute) != 0; }
  std::string GetAttributeText(AssemblyAttribute attribute) override { return texts[attribute]; }
  bool IsFileVersionLinked() override { return linked; }
  ProjectLocationSettings GetProjectLocation() override { return location; }
  std::string ExpandText(const std::string& text) override {
    expanded.push_back(text);
    return text == "%NAME%" ? "expanded|name" : text;
  }
  InterfacePtr<IQXApplicationServices> GetServices() override { return nullptr; }

  void Update(AssemblyAttribute attribute, const std::string& text) {
    updated.insert(attribute);
    texts[attribute] = text;
  }
  std::set<AssemblyAttribute> updated;
  std::map<AssemblyAttribute, std::string> texts;
  std::vector<std::string> expanded;
  bool linked = false;
  ProjectLocationSettings location;
};

constexpr const char* kIds[] = {"{11111111-0000-0000-0000-00000000000A}",
                                "{22222222-0000-0000-0000-00000000000B}",
                                "{33333333-0000-0000-0000-00000000000C}"};

class AssemblyInfo : public testing::Test {
 protected:
  // A project of the solution: its file's text; `path` as in the solution.
  void AddProject(const std::string& path, const std::string& text) {
    if (path.find("://") == std::string::npos) {
      std::string name = path;
      std::replace(name.begin(), name.end(), '\\', '/');
      folder.Write(name, text);
    }
    projects_ += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"P\", \"" + path + "\", \"" +
                 kIds[count_++] + "\"\r\nEndProject\r\n";
  }
  InterfacePtr<IQXAssemblyInfoUpdater> Updater() {
    folder.Write("All.sln", "Microsoft Visual Studio Solution File, Format Version 8.00\r\n" + projects_ +
                                "Global\r\nEndGlobal\r\n");
    return GetAssemblyInfoUpdater(OpenSolution(folder / "All.sln"), source, log);
  }
  std::string UpdateError() {
    try {
      Updater()->UpdateAll();
    } catch (const Exception& error) {
      return error.Message();
    }
    return "no error";
  }
  std::string Native(const std::string& name) { return ExpandPath(folder / "", name); }

  TestFolder folder;
  Source source;
  InterfacePtr<TestLog> log = MakeInterface<TestLog>();

 private:
  std::string projects_;
  int count_ = 0;
};

constexpr const char* kProject = "<File RelPath = \"AssemblyInfo.cs\" />\r\n";

TEST_F(AssemblyInfo, StampsAVersionAndKeepsABackup) {
  AddProject("App\\App.csproj", kProject);
  folder.Write("App/AssemblyInfo.cs", "[assembly: AssemblyVersion(\"1.0.*\")]\r\n");
  source.Update(AssemblyAttribute::Version, "2|1|0|7");
  Updater()->UpdateAll();
  EXPECT_EQ(folder.Read("App/AssemblyInfo.cs"), "[assembly: AssemblyVersion(\"2.1.0.7\")]\r\n");
  EXPECT_EQ(folder.Read("App/AssemblyInfo.cs.bak"), "[assembly: AssemblyVersion(\"1.0.*\")]\r\n");
}

TEST_F(AssemblyInfo, LogsEveryStepInItsPlace) {
  AddProject("App\\App.csproj", kProject);
  folder.Write("App/AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  source.Update(AssemblyAttribute::Company, "C");
  TStringList ids({kIds[0], "{NOBODY}"});
  Updater()->UpdateSelected(ids, nullptr);
  const std::string info = Native("App\\AssemblyInfo.cs");
  EXPECT_EQ(log->lines,
            (std::vector<std::string>{
                "2 projects to process.", "Processing Project File : " + Native("App\\App.csproj"),
                "Processing AssemblyInfo File : " + info,
                "Backingup AssemblyInfo File : " + info + " to :" + info + ".bak",
                "Processing Entry : AssemblyTitle", "Adding Entry : AssemblyCompany Value : C",
                "ProjectID : {NOBODY} - not found in solution"}));
}

TEST_F(AssemblyInfo, SaysNothingOfABackupThatIsNotMade) {
  AddProject("A.csproj", kProject);
  folder.Write("AssemblyInfo.cs",
               "\xEF\xBB\xBF[assembly: AssemblyTitle(\"\")]\r\n[assembly: AssemblyCompany(\"\")]\r\n");
  folder.Write("AssemblyInfo.cs.bak", "old");
  source.Update(AssemblyAttribute::Title, "T");
  source.Update(AssemblyAttribute::Company, "\xA9 no UTF-8");
  EXPECT_THROW(Updater()->UpdateAll(), Exception);
  ASSERT_FALSE(log->lines.empty());
  EXPECT_EQ(log->lines.back(), "Processing Entry : AssemblyCompany");
  for (const std::string& line : log->lines) EXPECT_FALSE(line.starts_with("Backingup")) << line;
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), "old");
}

TEST_F(AssemblyInfo, UpdateAllTakesTheSolutionsOrder) {
  AddProject("B.csproj", "");
  AddProject("A.csproj", "");
  Updater()->UpdateAll();
  EXPECT_EQ(log->lines, (std::vector<std::string>{"2 projects to process.",
                                                  "Processing Project File : " + Native("B.csproj"),
                                                  "Processing Project File : " + Native("A.csproj")}));
}

TEST_F(AssemblyInfo, SelectionKeepsItsOrderAndTheFilterIgnoresLetterCase) {
  AddProject("A.csproj", "");
  AddProject("B.csproj", "");
  AddProject("C.csproj", "");
  const TStringList chosen({kIds[2], kIds[0], kIds[1]});
  const TStringList filter(
      {"{22222222-0000-0000-0000-00000000000b}", "{33333333-0000-0000-0000-00000000000c}"});
  Updater()->UpdateSelected(chosen, &filter);
  EXPECT_EQ(log->lines, (std::vector<std::string>{"2 projects to process.",
                                                  "Processing Project File : " + Native("C.csproj"),
                                                  "Processing Project File : " + Native("B.csproj")}));
  const TStringList none;
  log->lines.clear();
  Updater()->UpdateSelected(chosen, &none);
  EXPECT_EQ(log->lines, (std::vector<std::string>{"0 projects to process."}));
}

TEST_F(AssemblyInfo, AnIdentifierInOtherLetterCaseIsNotFound) {
  AddProject("A.csproj", "");
  const TStringList chosen({"{11111111-0000-0000-0000-00000000000a}"});
  Updater()->UpdateSelected(chosen, nullptr);
  EXPECT_EQ(log->lines.back(), "ProjectID : {11111111-0000-0000-0000-00000000000a} - not found in solution");
}

TEST_F(AssemblyInfo, FindsTheReferenceBetweenItsQuotes) {
  source.Update(AssemblyAttribute::Title, "T");
  const std::pair<const char*, const char*> cases[] = {
      {"<Compile Include=\"Properties\\AssemblyInfo.cs\" />", "Properties/AssemblyInfo.cs"},
      {"RelPath = \"ASSEMBLYINFO.VB\" x", "ASSEMBLYINFO.VB"},
      {"Link = \"My Project\\AssemblyInfo.vb\"\nx=\"AssemblyInfo.cs\"", "My Project/AssemblyInfo.vb"},
      {"Include=\"x\\MyAssemblyInfo.cs\"", "x/MyAssemblyInfo.cs"},
  };
  for (const auto& [text, file] : cases) {
    folder.Write("P.csproj", text);
    folder.Write(file, "[assembly: X(\"x\")]");
    folder.Write(
        "One.sln",
        "Microsoft Visual Studio Solution File, Format Version 8.00\r\n"
        "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"P\", \"P.csproj\", \"{1}\"\r\nGlobal\r\n"
        "EndGlobal\r\n");
    GetAssemblyInfoUpdater(OpenSolution(folder / "One.sln"), source, log)->UpdateAll();
    EXPECT_EQ(folder.Read(file), "[assembly: X(\"x\")]\r\n[assembly: AssemblyTitle(\"T\")]\r\n") << text;
  }
}

TEST_F(AssemblyInfo, ProjectsWithoutReferenceAreSkippedSilently) {
  AddProject("A.csproj", "no reference at all");
  AddProject("B.csproj", "AssemblyInfo.cs without quotes");
  AddProject("C.csproj", "\"AssemblyInfo.cs never closed");
  Updater()->UpdateAll();
  EXPECT_EQ(log->lines.size(), 4U);
}

TEST_F(AssemblyInfo, AMissingProjectEndsTheRun) {
  AddProject("A.csproj", kProject);
  AddProject("B.csproj", kProject);
  folder.Write("AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  const auto updater = Updater();
  std::filesystem::remove(folder / "A.csproj");
  try {
    updater->UpdateAll();
    FAIL();
  } catch (const Exception& error) {
    EXPECT_EQ(error.Message(), "ERROR : Unable to find : " + Native("A.csproj"));
  }
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), "[assembly: AssemblyTitle(\"x\")]\r\n");
}

TEST_F(AssemblyInfo, AProjectFileThatVanishesMeanwhileEndsTheRunAndEarlierOnesStayRewritten) {
  AddProject("A.csproj", kProject);
  AddProject("B.csproj", kProject);
  folder.Write("AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  const auto updater = Updater();
  std::filesystem::remove(folder / "B.csproj");
  EXPECT_THROW(updater->UpdateAll(), Exception);
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), "[assembly: AssemblyTitle(\"T\")]\r\n");
}

TEST_F(AssemblyInfo, AMissingAssemblyInfoFileIsNamed) {
  AddProject("A.csproj", kProject);
  EXPECT_EQ(UpdateError().rfind("Cannot read " + Native("AssemblyInfo.cs") + ": ", 0), 0U);
}

TEST_F(AssemblyInfo, AReadOnlyFileIsNamedBeforeAnythingIsWritten) {
  AddProject("A.csproj", kProject);
  const std::string path = folder.Write("AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]");
  source.Update(AssemblyAttribute::Title, "T");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(UpdateError(), "Cannot write " + Native("AssemblyInfo.cs") + ": the file is read-only");
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), "[assembly: AssemblyTitle(\"x\")]");
  EXPECT_FALSE(folder.Has("AssemblyInfo.cs.bak"));
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

TEST_F(AssemblyInfo, TheBackupIsMadeEveryRunOfTheTextAsItWasRead) {
  AddProject("A.csproj", kProject);
  folder.Write("AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]\nend");
  source.Update(AssemblyAttribute::Title, "T");
  const auto updater = Updater();
  updater->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), "[assembly: AssemblyTitle(\"x\")]\r\nend\r\n");
  source.Update(AssemblyAttribute::Title, "U");
  updater->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), "[assembly: AssemblyTitle(\"T\")]\r\nend\r\n");
  updater->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), folder.Read("AssemblyInfo.cs"));
  folder.Write("AssemblyInfo.cs", "changed in place");
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), "[assembly: AssemblyTitle(\"U\")]\r\nend\r\n");
}

TEST_F(AssemblyInfo, WhatWouldNotChangeIsNotWritten) {
  AddProject("A.csproj", kProject);
  const std::string path = folder.Write("AssemblyInfo.cs", "[assembly: AssemblyTitle(\"T\")]\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  const auto time = std::filesystem::last_write_time(path) - std::chrono::hours(1);
  std::filesystem::last_write_time(path, time);
  Updater()->UpdateAll();
  EXPECT_EQ(std::filesystem::last_write_time(path), time);
  EXPECT_TRUE(folder.Has("AssemblyInfo.cs.bak"));
}

TEST_F(AssemblyInfo, VersionsTakePointsForBarsAfterExpansion) {
  AddProject("A.csproj", kProject);
  folder.Write("AssemblyInfo.cs",
               "[assembly: AssemblyVersion(\"\")]\r\n[assembly: AssemblyFileVersion(\"\")]\r\n"
               "[assembly: AssemblyTitle(\"\")]\r\n");
  source.Update(AssemblyAttribute::Version, "1|0|*|");
  source.Update(AssemblyAttribute::FileVersion, "%NAME%");
  source.Update(AssemblyAttribute::Title, "a|b");
  Updater()->UpdateAll();
  EXPECT_EQ(
      folder.Read("AssemblyInfo.cs"),
      "[assembly: AssemblyVersion(\"1.0.*.\")]\r\n[assembly: AssemblyFileVersion(\"expanded.name\")]\r\n"
      "[assembly: AssemblyTitle(\"a|b\")]\r\n");
}

TEST_F(AssemblyInfo, ALinkedFileVersionTakesTheAssemblyVersion) {
  AddProject("A.csproj", kProject);
  folder.Write("AssemblyInfo.cs", "[assembly: AssemblyFileVersion(\"\")]\r\n");
  source.texts[AssemblyAttribute::Version] = "4|3|2|1";
  source.Update(AssemblyAttribute::FileVersion, "9|9|9|9");
  source.linked = true;
  Updater()->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), "[assembly: AssemblyFileVersion(\"4.3.2.1\")]\r\n");
}

TEST_F(AssemblyInfo, CppFilesGetLongNames) {
  AddProject("A.csproj", "RelativePath=\"AssemblyInfo.CPP\"");
  folder.Write("AssemblyInfo.CPP", "[assembly:X(\"x\")];\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  Updater()->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.CPP"),
            "[assembly:X(\"x\")];\r\n[assembly: AssemblyTitleAttribute(\"T\")];\r\n");
}

TEST_F(AssemblyInfo, EncodingsStay) {
  source.Update(AssemblyAttribute::Title, "M\xC3\xBCller");
  const auto wide = [](const std::string& latin) {
    std::string bytes = "\xFE\xFF";
    for (const char c : latin) bytes.append(1, '\0').append(1, c);
    return bytes;
  };
  const std::string line = "[assembly: AssemblyTitle(\"", end = "\")]\r\n";
  AddProject("A.csproj", kProject);
  const auto updater = Updater();
  folder.Write("AssemblyInfo.cs", wide("// \xA9\n" + line + end));
  updater->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), wide("// \xA9\r\n" + line + "M\xFCller" + end));
  folder.Write("AssemblyInfo.cs", "\xEF\xBB\xBF" + line + end);
  updater->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), "\xEF\xBB\xBF" + line + "M\xC3\xBCller" + end);
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), "\xEF\xBB\xBF" + line + end);
}

TEST_F(AssemblyInfo, UntouchedBytesOfACodePageStay) {
  AddProject("A.csproj", kProject);
  folder.Write("AssemblyInfo.cs",
               "[assembly: AssemblyCopyright(\"\xA9 2004\")]\r\n[assembly: AssemblyTitle(\"\")]\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  Updater()->UpdateAll();
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"),
            "[assembly: AssemblyCopyright(\"\xA9 2004\")]\r\n[assembly: AssemblyTitle(\"T\")]\r\n");
}

TEST_F(AssemblyInfo, WhatTheEncodingCannotHoldIsAnErrorThatNamesFileAndAttribute) {
  AddProject("A.csproj", kProject);
  const std::string old = "\xEF\xBB\xBF[assembly: AssemblyTitle(\"\")]\r\n";
  folder.Write("AssemblyInfo.cs", old);
  source.Update(AssemblyAttribute::Title, "\xA9 no UTF-8");
  EXPECT_EQ(UpdateError(),
            "Cannot write " + Native("AssemblyInfo.cs") +
                ": its encoding cannot hold the text of AssemblyTitle (save the file as UTF-8 with a "
                "mark, or keep to its characters)");
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), old);
  EXPECT_FALSE(folder.Has("AssemblyInfo.cs.bak"));
}

TEST_F(AssemblyInfo, AWebProjectIsNowhereByAMethodThatIsNone) {
  AddProject("http://localhost/Site/Site.csproj", "");
  source.location.projLocationDetectMethod = 3;
  EXPECT_EQ(UpdateError(), "ERROR : Unable to find : ");
}

TEST_F(AssemblyInfo, AWebProjectIsStampedThroughAMountedShare) {
  if (kIsWindows) GTEST_SKIP() << "shares are mounted outside Windows only";
  AddProject("http://localhost/Site/Site.csproj", "");
  folder.Write("Site/Site.csproj", kProject);
  folder.Write("Site/AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]\r\n");
  source.Update(AssemblyAttribute::Title, "T");
  source.location.projLocationDetectMethod = 1;
  source.location.sharePath = "wwwroot$";
  SetShares({{"\\\\localhost\\wwwroot$", folder / ""}});
  const std::string error = UpdateError();
  SetShares({});
  EXPECT_EQ(error, "no error");
  EXPECT_EQ(folder.Read("Site/AssemblyInfo.cs"), "[assembly: AssemblyTitle(\"T\")]\r\n");
}

TEST_F(AssemblyInfo, ADryRunWritesNothing) {
  AddProject("A.csproj", kProject);
  folder.Write("AssemblyInfo.cs", "[assembly: AssemblyTitle(\"x\")]\n");
  folder.Write("AssemblyInfo.cs.bak", "old backup");
  source.Update(AssemblyAttribute::Title, "T");
  {
    const auto updater = Updater();
    const WriteCapture capture;
    updater->UpdateAll();
    std::map<std::string, std::string> changes;
    for (const auto& change : capture.Changes())
      changes[FilePart(change.path)] = change.bytes.value_or("removed");
    EXPECT_EQ(changes, (std::map<std::string, std::string>{
                           {"AssemblyInfo.cs", "[assembly: AssemblyTitle(\"T\")]\r\n"},
                           {"AssemblyInfo.cs.bak", "[assembly: AssemblyTitle(\"x\")]\r\n"}}));
  }
  EXPECT_EQ(folder.Read("AssemblyInfo.cs"), "[assembly: AssemblyTitle(\"x\")]\n");
  EXPECT_EQ(folder.Read("AssemblyInfo.cs.bak"), "old backup");
}

}  // namespace
}  // namespace qx
