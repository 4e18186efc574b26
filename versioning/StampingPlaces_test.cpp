// Which files the stamping of assembly attributes touches, what it does with their line ends, and what it writes of
// several when one of them cannot be written.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "host/testing/TestFolder.h"
#include "host/testing/TestLog.h"
#include "platform/LineEnds.h"
#include "platform/System.h"
#include "platform/files/Paths.h"
#include "solution/Vsnetsln.h"
#include "versioning/AssemblyInfoPlace.h"
#include "versioning/Qxassemblyinfo.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOld = "[assembly: AssemblyVersion(\"1.0.0.0\")]\r\n";
constexpr const char* kNew = "[assembly: AssemblyVersion(\"2.0.0.0\")]\r\n";

// Gives every assembly the version 2.0.0.0.
class Source final : public AnswersUncounted<IAssemblyInfoSource> {
 public:
  virtual ~Source() = default;
  bool IsAttributeUpdated(AssemblyAttribute attribute) override {
    return attribute == AssemblyAttribute::Version;
  }
  std::string GetAttributeText(AssemblyAttribute) override { return "2|0|0|0"; }
  bool IsFileVersionLinked() override { return false; }
  ProjectLocationSettings GetProjectLocation() override { return {}; }
  std::string ExpandText(const std::string& text) override {
    if (meanwhile) std::exchange(meanwhile, nullptr)();
    return text;
  }
  InterfacePtr<IQXApplicationServices> GetServices() override { return nullptr; }
  void FileStamped(const std::string& path, const std::string&, bool) override {
    stamped += FilePart(FolderPart(path).substr(0, FolderPart(path).size() - 1)) + " ";
  }
  std::function<void()> meanwhile;  // what somebody does while the first file is stamped
  std::string stamped;              // the folders of the files that were
};

class StampingPlaces : public testing::Test {
 protected:
  ~StampingPlaces() override { SetLineEnds(LineEnds::CrLf); }

  // A project in tree/NAME that refers to its AssemblyInfo file so.
  void AddProject(const std::string& name, const std::string& reference = "AssemblyInfo.cs") {
    folder.Write("tree/" + name + "/" + name + ".csproj", "Include=\"" + reference + "\"");
    folder.Write("tree/" + name + "/AssemblyInfo.cs", kOld);
    projects_ += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"" + name + "\", \"" + name + "\\" +
                 name + ".csproj\", \"{" + name + "}\"\r\nEndProject\r\n";
  }
  std::string Stamp() {
    folder.Write("tree/All.sln", "Microsoft Visual Studio Solution File, Format Version 8.00\r\n" +
                                     projects_ + "Global\r\nEndGlobal\r\n");
    try {
      GetAssemblyInfoUpdater(OpenSolution(folder / "tree/All.sln"), source, log)->UpdateAll();
    } catch (const Exception& error) {
      return error.Message();
    }
    return "";
  }
  bool Logged(const std::string& text) const {
    for (const std::string& line : log->lines) {
      if (line.find(text) != std::string::npos) return true;
    }
    return false;
  }

  TestFolder folder;
  Source source;
  InterfacePtr<TestLog> log = MakeInterface<TestLog>();

 private:
  std::string projects_;
};

// Whoever replaces a file under the name by which another file speaks of it renames it.
TEST_F(StampingPlaces, AFileKeepsTheLettersOfItsOwnName) {
  AddProject("P");
  std::filesystem::remove(folder / "tree/P/AssemblyInfo.cs");
  folder.Write("tree/P/assemblyinfo.CS", kOld);
  EXPECT_EQ(Stamp(), "");
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "tree/P"))
    names.insert(entry.path().filename().string());
  EXPECT_TRUE(names.contains("assemblyinfo.CS")) << testing::PrintToString(names);
  EXPECT_FALSE(names.contains("AssemblyInfo.cs")) << testing::PrintToString(names);
  EXPECT_NE(folder.Read("tree/P/assemblyinfo.CS"), kOld);
}

TEST_F(StampingPlaces, AReferenceThatOnlyPassesByTheNameLeadsNowhere) {
  AddProject("P", "AssemblyInfo.\\..\\..\\..\\out\\victim.txt");
  fs::create_directory(folder / "tree/P/AssemblyInfo.");
  folder.Write("out/victim.txt", kOld);
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("out/victim.txt"), kOld);
  EXPECT_FALSE(folder.Has("out/victim.txt.bak"));
}

TEST_F(StampingPlaces, WithinTheTreeTheNameThatIsOpenedCounts) {
  AddProject("P", "AssemblyInfo.\\..\\victim.txt");
  folder.Write("tree/P/victim.txt", kOld);
  AddProject("Q", "AssemblyInfo.Shared\\Version.cs");
  folder.Write("tree/Q/AssemblyInfo.Shared/Version.cs", kOld);
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("tree/P/victim.txt"), kOld);
  EXPECT_EQ(folder.Read("tree/Q/AssemblyInfo.Shared/Version.cs"), kNew);
}

TEST_F(StampingPlaces, OutsideTheTreeItsLastNameHasToBeAssemblyInfo) {
  AddProject("P", "..\\..\\shared\\CommonAssemblyInfo.cs");
  folder.Write("shared/CommonAssemblyInfo.cs", kOld);
  AddProject("Q", "..\\..\\AssemblyInfo.d\\Version.cs");
  folder.Write("AssemblyInfo.d/Version.cs", kOld);
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("shared/CommonAssemblyInfo.cs"), kNew);
  EXPECT_EQ(folder.Read("AssemblyInfo.d/Version.cs"), kOld);
}

TEST_F(StampingPlaces, ALinkThatLeavesTheTreeIsFollowedToAnAssemblyInfoFileOnly) {
  if (kIsWindows) GTEST_SKIP() << "the standard library makes no links there";
  AddProject("P");
  AddProject("Q");
  folder.Write("out/profile", kOld);
  folder.Write("out/AssemblyInfo.cs", kOld);
  for (const auto& [name, target] :
       {std::pair("P", "../../out/profile"), {"Q", "../../out/AssemblyInfo.cs"}}) {
    const fs::path link = folder / ("tree/" + std::string(name) + "/AssemblyInfo.cs");
    fs::remove(link);
    fs::create_symlink(target, link);
  }
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("out/profile"), kOld);
  EXPECT_EQ(folder.Read("out/AssemblyInfo.cs"), kNew);
}

TEST_F(StampingPlaces, AFolderThatIsALinkLeavesTheTreeToo) {
  AddProject("P");
  const std::string tree = folder / "tree/";
  EXPECT_FALSE(LeavesTree("AssemblyInfo.cs", folder / "tree/P/", tree, true));
  EXPECT_TRUE(LeavesTree("../../out/AssemblyInfo.cs", folder / "tree/P/", tree, true));
  if (kIsWindows) GTEST_SKIP() << "the standard library makes no links there";
  folder.Write("out/AssemblyInfo.cs", kOld);
  fs::create_symlink("../../out", fs::path(folder / "tree/P/linked"));
  EXPECT_TRUE(LeavesTree("linked/AssemblyInfo.cs", folder / "tree/P/", tree, true));
}

TEST_F(StampingPlaces, KeptLineEndsChangeOneLineOfAFileThatHasLineFeedsOnly) {
  SetLineEnds(LineEnds::Keep);
  AddProject("P");
  const std::string text = "using System;\n// x\n[assembly: AssemblyVersion(\"1.0.0.0\")]\n// y";
  folder.Write("tree/P/AssemblyInfo.cs", text);
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("tree/P/AssemblyInfo.cs"),
            "using System;\n// x\n[assembly: AssemblyVersion(\"2.0.0.0\")]\n// y");
  EXPECT_EQ(folder.Read("tree/P/AssemblyInfo.cs.bak"), text);
}

TEST_F(StampingPlaces, KeptLineEndsOfAFileInUtf16) {
  SetLineEnds(LineEnds::Keep);
  AddProject("P");
  const auto wide = [](const std::string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char c : text) bytes += {c, '\0'};
    return bytes;
  };
  folder.Write("tree/P/AssemblyInfo.cs", wide("//\n[assembly: AssemblyVersion(\"1.0.0.0\")]\n"));
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("tree/P/AssemblyInfo.cs"), wide("//\n[assembly: AssemblyVersion(\"2.0.0.0\")]\n"));
}

TEST_F(StampingPlaces, OfSeveralFilesThoseBeforeTheOneThatFailsAreWrittenAndTheLogEndsWithIt) {
  for (const char* name : {"A", "B", "C"}) AddProject(name);
  source.meanwhile = [&] { folder.Write("tree/B/AssemblyInfo.cs.bak/full", ""); };
  const std::string message = Stamp();
  EXPECT_TRUE(message.starts_with("Cannot write ")) << message;
  EXPECT_NE(message.find("AssemblyInfo.cs.bak: "), std::string::npos) << message;
  EXPECT_EQ(folder.Read("tree/A/AssemblyInfo.cs"), kNew);
  EXPECT_EQ(folder.Read("tree/B/AssemblyInfo.cs"), kOld);
  EXPECT_EQ(folder.Read("tree/C/AssemblyInfo.cs"), kOld);
  EXPECT_TRUE(Logged("B.csproj"));
  EXPECT_FALSE(Logged("C.csproj"));
  EXPECT_EQ(source.stamped, "A ");
}

TEST_F(StampingPlaces, AProjectThatFailsLeavesThoseBeforeItWritten) {
  for (const char* name : {"A", "B"}) AddProject(name);
  fs::remove(folder / "tree/B/AssemblyInfo.cs");
  EXPECT_NE(Stamp(), "");
  EXPECT_EQ(folder.Read("tree/A/AssemblyInfo.cs"), kNew);
  EXPECT_TRUE(
      Logged("Processing AssemblyInfo File : " + ExpandPath(folder.Path(), "tree\\B\\AssemblyInfo.cs")));
}

TEST_F(StampingPlaces, AFileThatTwoProjectsShareIsStampedTwiceInTurn) {
  AddProject("A");
  AddProject("B", "..\\A\\AssemblyInfo.cs");
  EXPECT_EQ(Stamp(), "");
  EXPECT_EQ(folder.Read("tree/A/AssemblyInfo.cs"), kNew);
  EXPECT_EQ(folder.Read("tree/A/AssemblyInfo.cs.bak"), kNew);
}

}  // namespace
}  // namespace qx
