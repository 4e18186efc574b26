#include <algorithm>

#include "actions/RunFixture.h"

namespace qx {
namespace {

using enum TVSDotNetBuildType;

constexpr const char* kNativeId = "{11111111-0000-0000-0000-00000000000A}";
constexpr const char* kDriverId = "{11111111-0000-0000-0000-00000000000B}";

class Stamping : public RunFixture {
 protected:
  Stamping() {
    action->SetSolution(solution());
    Use(TVSDotNetVersion::vs2005);
    for (const char* name : {"Lib", "App"}) {
      const std::string project = std::string("src/") + name + "/" + name;
      Write(project + ".csproj", "<Project><Compile Include=\"AssemblyInfo.cs\" /></Project>\r\n");
      Write(std::string("src/") + name + "/AssemblyInfo.cs",
            "[assembly: AssemblyVersion(\"0.0.0.0\")]\r\n[assembly: AssemblyFileVersion(\"0.0.0.0\")]\r\n");
    }
    for (const char* name : {"Native", "Driver"}) {
      const std::string folder = std::string("src/") + name + "/";
      Write(folder + name + ".vcproj",
            "<?xml version=\"1.0\"?>\r\n<VisualStudioProject><Files><Filter Name=\"Res\">"
            "<File RelativePath=\"" +
                std::string(name) + ".rc\"/></Filter></Files></VisualStudioProject>\r\n");
      Write(folder + name + ".rc", kScript);
    }
    AddProject("Native", kNativeId);
    AddProject("Driver", kDriverId);
    action->Settings().updateAttribute.fill(true);
  }

  void AddProject(const std::string& name, const std::string& id) const {
    std::string text = Read("src/App.sln");
    const std::string entry = "Project(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = \"" + name + "\", \"" +
                              name + "\\" + name + ".vcproj\", \"" + id + "\"\r\nEndProject\r\n";
    Write("src/App.sln", text.insert(text.find("Global"), entry));
  }

  // Where a log entry of that text stands; -1 without one.
  std::ptrdiff_t At(const std::string& text) const {
    const std::vector<LogEntry>& entries = host.Entries();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const LogEntry& entry) { return entry.text == text; });
    return found == entries.end() ? -1 : found - entries.begin();
  }
  bool CompilerRan() const { return !Calls().empty(); }
  bool Stamped(const std::string& name) const {
    return Read("src/" + name + "/AssemblyInfo.cs").find("\"0.0.0.0\"") == std::string::npos;
  }
  bool Stamps(const std::string& name, const std::string& line) const {
    return Read("src/" + name + "/" + name + ".rc").find(line) != std::string::npos;
  }
  std::string Updating(const std::string& name) const {
    return "Updating Version info in file : " + Path("src/" + name + "/" + name + ".rc");
  }

  static constexpr const char* kScript =
      "VS_VERSION_INFO VERSIONINFO\r\nFILEVERSION 0,0,0,0\r\nBEGIN\r\n    BLOCK \"StringFileInfo\"\r\n"
      "    BEGIN\r\n    END\r\nEND\r\n";
};

// Assembly numbers

class AssemblyNumbers : public Stamping {
 protected:
  AssemblyNumbers() {
    action->Settings().updateAssemblyInfo = true;
    action->SetAssemblyVersion("1|2|3|4");
    action->SetAssemblyFileVersion("5|6|7|8");
  }
};

// A project that was made on another computer: the password is nobody's business where no server is asked.
TEST_F(AssemblyNumbers, AreStampedThoughAPasswordThatNobodyNeedsCannotBeRead) {
  action->Settings().webDavPasswordEncrypted = "qx1:from another computer";
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(Read("src/Lib/AssemblyInfo.cs").substr(0, 39), "[assembly: AssemblyVersion(\"1.2.3.4\")]\r");
}

TEST_F(AssemblyNumbers, StayWithoutAutoIncrement) {
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|4");
  EXPECT_EQ(action->GetAssemblyFileVersion(), "5|6|7|8");
  EXPECT_EQ(Read("src/Lib/AssemblyInfo.cs").substr(0, 39), "[assembly: AssemblyVersion(\"1.2.3.4\")]\r");
}

TEST_F(AssemblyNumbers, RiseEachByItself) {
  struct Case {
    void (TQXCustomVSDotNetAction::*set)(bool);
    const char* version;
    const char* fileVersion;
  };
  const Case cases[] = {{&TQXCustomVSDotNetAction::SetAutoIncAssemblyRevisionNo, "1|2|3|5", "5|6|7|8"},
                        {&TQXCustomVSDotNetAction::SetAutoIncAssemblyFileRevisionNo, "1|2|3|4", "5|6|7|9"},
                        {&TQXCustomVSDotNetAction::SetAutoIncAssemblyBuildNo, "1|2|4|4", "5|6|7|8"},
                        {&TQXCustomVSDotNetAction::SetAutoIncAssemblyFileBuildNo, "1|2|3|4", "5|6|8|8"}};
  for (const Case& one : cases) {
    action->SetAssemblyVersion("1|2|3|4");
    action->SetAssemblyFileVersion("5|6|7|8");
    (action.get()->*one.set)(true);
    EXPECT_TRUE(action->Execute());
    EXPECT_EQ(action->GetAssemblyVersion(), one.version);
    EXPECT_EQ(action->GetAssemblyFileVersion(), one.fileVersion);
    (action.get()->*one.set)(false);
  }
}

TEST_F(AssemblyNumbers, RiseEachRunAndStayRisenWhenTheBuildFails) {
  action->SetAutoIncAssemblyRevisionNo(true);
  action->SetAutoIncAssemblyFileRevisionNo(true);
  action->SetAutoIncAssemblyBuildNo(true);
  action->SetAutoIncAssemblyFileBuildNo(true);
  Script("exit 1\n");
  EXPECT_FALSE(action->Execute());
  EXPECT_FALSE(action->Execute());
  EXPECT_EQ(Calls().size(), 2u);
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|5|6");
  EXPECT_EQ(action->GetAssemblyFileVersion(), "5|6|9|10");
  EXPECT_EQ(Read("src/Lib/AssemblyInfo.cs").substr(0, 39), "[assembly: AssemblyVersion(\"1.2.5.6\")]\r");
}

TEST_F(AssemblyNumbers, CountOtherTextsAsZero) {
  action->SetAutoIncAssemblyBuildNo(true);
  action->SetAssemblyVersion("1|0|*|");
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->GetAssemblyVersion(), "1|0|1|");
}

TEST_F(AssemblyNumbers, RiseBeforeVariablesAreExpanded) {
  host.variables.SetProject("REV", "41");
  action->SetAutoIncAssemblyRevisionNo(true);
  action->SetAssemblyVersion("1|2|3|%REV%");
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|1");
}

TEST_F(AssemblyNumbers, LoseAFifthPartWhenTheyRise) {
  action->SetAutoIncAssemblyRevisionNo(true);
  action->SetAssemblyVersion("1|2|3|4|5");
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|5");
}

TEST_F(AssemblyNumbers, StayWhenOnlyResourcesAreStamped) {
  action->Settings().updateAssemblyInfo = false;
  action->Settings().updateWin32Resource = true;
  action->SetAutoIncAssemblyRevisionNo(true);
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|4");
  EXPECT_FALSE(Stamped("Lib"));
  EXPECT_EQ(At("Updating AssemblyInfo"), -1);
}

// Which projects, and what the log says

TEST_F(AssemblyNumbers, AreStampedBeforeResourcesAndCompiler) {
  action->Settings().updateWin32Resource = true;
  EXPECT_TRUE(action->Execute());
  const std::ptrdiff_t attributes = At("Updating AssemblyInfo");
  const std::ptrdiff_t resources = At(Updating("Native"));
  const std::ptrdiff_t compiler =
      At("Running " + devenv() + " with parameters : /build \"\" \"" + solution() + '"');
  EXPECT_EQ(attributes, 0);
  EXPECT_GT(resources, attributes);
  EXPECT_GT(At("Win32 Version Info updated"), resources);
  EXPECT_GT(compiler, At("Win32 Version Info updated"));
  EXPECT_EQ(host.Entries()[0].details[0], "5 projects to process.");
}

TEST_F(AssemblyNumbers, AreStampedIntoAllProjects) {
  action->Settings().assemblySelectedProjects = TStringList({kLibId});
  EXPECT_TRUE(action->Execute());
  EXPECT_TRUE(Stamped("Lib"));
  EXPECT_TRUE(Stamped("App"));
}

TEST_F(AssemblyNumbers, AreStampedIntoChosenProjectsWhenAllAreBuilt) {
  action->Settings().applyAssemblyInfoTo = btSelectedProjects;
  action->Settings().assemblySelectedProjects = TStringList({kLibId});
  action->Settings().selectedProjects = TStringList({kAppId});
  EXPECT_TRUE(action->Execute());
  EXPECT_TRUE(Stamped("Lib"));
  EXPECT_FALSE(Stamped("App"));
}

TEST_F(AssemblyNumbers, AreStampedIntoChosenProjectsThatAreBuilt) {
  action->Settings().applyAssemblyInfoTo = btSelectedProjects;
  action->Settings().assemblySelectedProjects = TStringList({kLibId, kAppId});
  Select({kAppId});
  EXPECT_TRUE(action->Execute());
  EXPECT_FALSE(Stamped("Lib"));
  EXPECT_TRUE(Stamped("App"));
}

TEST_F(AssemblyNumbers, PreventTheBuildWhenTheyCannotBeStamped) {
  action->SetAutoIncAssemblyRevisionNo(true);
  action->Settings().updateWin32Resource = true;
  std::filesystem::remove(Path("src/Lib/AssemblyInfo.cs"));
  EXPECT_FALSE(action->Execute());
  ASSERT_EQ(host.Entries().size(), 1u);
  const LogEntry& entry = host.Entries()[0];
  EXPECT_EQ(entry.kind, LogKind::Status);
  EXPECT_TRUE(entry.text.starts_with("Error Updating Assembly Info : ")) << entry.text;
  EXPECT_NE(entry.text.find("AssemblyInfo.cs"), std::string::npos) << entry.text;
  EXPECT_FALSE(entry.details.empty());
  EXPECT_FALSE(CompilerRan());
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|5");
}

TEST_F(AssemblyNumbers, PreventTheBuildWhenAVariableIsUndefined) {
  action->SetAssemblyVersion("1|2|3|%NOPE%");
  EXPECT_FALSE(action->Execute());
  EXPECT_EQ(At("Error Updating Assembly Info : Undefined variable : NOPE"), 0);
  EXPECT_FALSE(CompilerRan());
}

// Version resources

class VersionResources : public Stamping {
 protected:
  VersionResources() {
    action->Settings().updateWin32Resource = true;
    action->SetMajorVer(1);
    action->SetBuildVer(41);
  }
};

TEST_F(VersionResources, GoIntoEveryProjectThatHasAScript) {
  ExpectRun(true, Lines{Updating("Native"), Updating("Driver"), "Win32 Version Info updated"} +
                      Running(devenv(), R"(/build "" ")" + solution() + '"'));
  EXPECT_TRUE(Stamps("Native", "FILEVERSION 1,0,0,41"));
  EXPECT_TRUE(Stamps("Driver", "FILEVERSION 1,0,0,41"));
}

TEST_F(VersionResources, GetOneNewBuildNumberForARun) {
  action->SetAutoIncBuild(true);
  EXPECT_TRUE(action->Execute());
  EXPECT_TRUE(Stamps("Native", "FILEVERSION 1,0,0,42"));
  EXPECT_TRUE(Stamps("Driver", "FILEVERSION 1,0,0,42"));
  EXPECT_EQ(action->GetBuildVer(), 42);
  EXPECT_EQ(action->GetVersionInfoKeys(), "FileVersion=1.0.0.42\r\n");
  EXPECT_TRUE(action->Execute());
  EXPECT_TRUE(Stamps("Driver", "FILEVERSION 1,0,0,43"));
}

TEST_F(VersionResources, GoIntoChosenProjectsInListOrder) {
  action->Settings().applyResourceInfoTo = btSelectedProjects;
  action->Settings().resourceSelectedProjects = TStringList({kDriverId, kGoneId, kLibId, kNativeId});
  ExpectRun(true, Lines{Updating("Driver"), Updating("Native"), "Win32 Version Info updated"} +
                      Running(devenv(), R"(/build "" ")" + solution() + '"'));
}

TEST_F(VersionResources, LeaveProjectsAloneThatAreNotChosen) {
  action->Settings().applyResourceInfoTo = btSelectedProjects;
  action->Settings().resourceSelectedProjects = TStringList({kDriverId});
  EXPECT_TRUE(action->Execute());
  EXPECT_EQ(Read("src/Native/Native.rc"), kScript);
}

TEST_F(VersionResources, SucceedWithNothingToStamp) {
  action->Settings().applyResourceInfoTo = btSelectedProjects;
  ExpectRun(true,
            Lines{"Win32 Version Info updated"} + Running(devenv(), R"(/build "" ")" + solution() + '"'));
}

TEST_F(VersionResources, LetTheErrorOfAMalformedScriptOut) {
  Write("src/Native/Native.rc", "VS_VERSION_INFO VERSIONINFO\r\nEND\r\n");
  action->SetAutoIncBuild(true);
  try {
    action->Execute();
    ADD_FAILURE() << "no exception";
  } catch (const Exception& error) {
    EXPECT_EQ(error.Message(), "Unexpected END");
  }
  EXPECT_EQ(host.Lines(), Lines{Updating("Native")});
  EXPECT_FALSE(CompilerRan());
  EXPECT_EQ(action->GetBuildVer(), 42);
  EXPECT_EQ(Read("src/Driver/Driver.rc"), kScript);
}

TEST_F(VersionResources, StayInTheScriptsBeforeOneThatFails) {
  Write("src/Driver/Driver.rc", "VS_VERSION_INFO VERSIONINFO\r\nEND\r\n");
  EXPECT_THROW(action->Execute(), Exception);
  EXPECT_TRUE(Stamps("Native", "FILEVERSION 1,0,0,41"));
  EXPECT_EQ(Read("src/Driver/Driver.rc"), "VS_VERSION_INFO VERSIONINFO\r\nEND\r\n");
  EXPECT_FALSE(CompilerRan());
}

TEST_F(VersionResources, PreventTheBuildWhenAWriterRefuses) {
  class Refused : public TQXCustomVSDotNetAction {
   public:
    Lines asked;

   private:
    bool ApplyVersionInfo(const std::string& script) override {
      asked.push_back(script);
      return false;
    }
  };
  TQXActionClass refusing = TQXVSDotNetAction::Class();
  refusing.construct = []() -> std::unique_ptr<TQXAction> { return std::make_unique<Refused>(); };
  const auto refused = host.Make<Refused>(refusing);
  refused->SetSolution(solution());
  refused->Settings().vstudioVersion = TVSDotNetVersion::vs2003;
  refused->Settings().updateWin32Resource = true;
  EXPECT_FALSE(refused->Execute());
  EXPECT_EQ(host.Lines(), Lines{"Win32 Version Info Not updated"});
  EXPECT_EQ(refused->asked, Lines{Path("src/Native/Native.rc")}) << "the others are not asked any more";
  refused->asked.clear();
  refused->Settings().applyResourceInfoTo = btSelectedProjects;
  refused->Settings().resourceSelectedProjects = TStringList({kDriverId, kNativeId});
  EXPECT_FALSE(refused->Execute());
  EXPECT_EQ(refused->asked, Lines{Path("src/Driver/Driver.rc")});
  EXPECT_FALSE(CompilerRan());
}

TEST_F(VersionResources, AreNotStampedWhenTheAssemblyAttributesFailed) {
  action->Settings().updateAssemblyInfo = true;
  action->SetAutoIncBuild(true);
  std::filesystem::remove(Path("src/Lib/AssemblyInfo.cs"));
  EXPECT_FALSE(action->Execute());
  EXPECT_EQ(Read("src/Native/Native.rc"), kScript);
  EXPECT_EQ(action->GetBuildVer(), 41);
}

}  // namespace
}  // namespace qx
