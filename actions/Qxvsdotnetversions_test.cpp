// The version numbers of the build action: what a setter changes besides its own property, and what the host
// is told about it.
#include "actions/ActionFixture.h"

namespace qx {
namespace {

// Assembly versions

TEST_F(BuildAction, SplitsAWholeVersion) {
  Set("AssemblyVersion", std::string("1|2|3|4"));
  EXPECT_EQ(Text("AssemblyVersionMajor"), "1");
  EXPECT_EQ(Text("AssemblyVersionMinor"), "2");
  EXPECT_EQ(Text("AssemblyVersionBuild"), "3");
  EXPECT_EQ(Text("AssemblyVersionRevision"), "4");
  Set("AssemblyFileVersion", std::string("5|6|7|8"));
  EXPECT_EQ(Text("AssemblyFileVersionMajor"), "5");
  EXPECT_EQ(Text("AssemblyFileVersionMinor"), "6");
  EXPECT_EQ(Text("AssemblyFileVersionBuild"), "7");
  EXPECT_EQ(Text("AssemblyFileVersionRevision"), "8");
  EXPECT_EQ(Text("AssemblyVersion"), "1|2|3|4");
}

TEST_F(BuildAction, RebuildsTheWholeVersionFromEachPart) {
  Set("AssemblyVersionMajor", std::string("1"));
  EXPECT_EQ(Text("AssemblyVersion"), "1|||");
  Set("AssemblyVersionMinor", std::string("2"));
  EXPECT_EQ(Text("AssemblyVersion"), "1|2||");
  Set("AssemblyVersionBuild", std::string("3"));
  EXPECT_EQ(Text("AssemblyVersion"), "1|2|3|");
  Set("AssemblyVersionRevision", std::string("4"));
  EXPECT_EQ(Text("AssemblyVersion"), "1|2|3|4");
  EXPECT_EQ(Text("AssemblyFileVersion"), "|||");
  Set("AssemblyFileVersionMajor", std::string("5"));
  EXPECT_EQ(Text("AssemblyFileVersion"), "5|||");
  Set("AssemblyFileVersionMinor", std::string("6"));
  EXPECT_EQ(Text("AssemblyFileVersion"), "5|6||");
  Set("AssemblyFileVersionBuild", std::string("7"));
  EXPECT_EQ(Text("AssemblyFileVersion"), "5|6|7|");
  Set("AssemblyFileVersionRevision", std::string("8"));
  EXPECT_EQ(Text("AssemblyFileVersion"), "5|6|7|8");
}

TEST_F(BuildAction, TakesADottedVersionAsMajorUntilARebuild) {
  Set("AssemblyVersion", std::string("1.2.3.4"));
  EXPECT_EQ(Text("AssemblyVersionMajor"), "1.2.3.4");
  EXPECT_EQ(Text("AssemblyVersionRevision"), "");
  EXPECT_EQ(Text("AssemblyVersion"), "1.2.3.4");
  Set("AssemblyVersionBuild", std::string("7"));
  EXPECT_EQ(Text("AssemblyVersion"), "1.2.3.4||7|");
}

TEST_F(BuildAction, KeepsAFifthPartUntilARebuild) {
  Set("AssemblyVersion", std::string("1|2|3|4|5"));
  EXPECT_EQ(Text("AssemblyVersion"), "1|2|3|4|5");
  Set("AssemblyVersionMinor", std::string("0"));
  EXPECT_EQ(Text("AssemblyVersion"), "1|0|3|4");
}

TEST_F(BuildAction, RebuildsAssemblyVersionWhenAnotherPropertyIsRead) {
  for (const char* quiet :
       {"AssemblyVersionMajor", "AssemblyVersionMinor", "AssemblyVersionBuild", "AssemblyVersionRevision",
        "AssemblyFileVersionMajor", "AssemblyFileVersionMinor", "AssemblyFileVersionRevision"}) {
    Set("AssemblyVersion", std::string("1|2|3|4|5"));
    Set("AssemblyFileVersion", std::string("5|6|7|8|9"));
    Text(quiet);
    EXPECT_EQ(Text("AssemblyVersion"), "1|2|3|4|5") << quiet;
  }
  EXPECT_EQ(Text("AssemblyFileVersionBuild"), "7");
  EXPECT_EQ(Text("AssemblyVersion"), "1|2|3|4");
  EXPECT_EQ(Text("AssemblyFileVersion"), "5|6|7|8|9");
}

// Dynamic properties, asymmetries included

TEST_F(BuildAction, RegistersAssemblyVersionForTheRevision) {
  Set("AutoIncAssemblyRevisionNo", true);
  EXPECT_EQ(Dynamic(), Names{"AssemblyVersion"});
  Set("AutoIncAssemblyRevisionNo", false);
  EXPECT_EQ(Dynamic(), Names{});
}

TEST_F(BuildAction, KeepsAssemblyVersionWhileTheBuildNumberNeedsIt) {
  Set("AutoIncAssemblyBuildNumber", true);
  Set("AutoIncAssemblyRevisionNo", true);
  Set("AutoIncAssemblyRevisionNo", false);
  EXPECT_EQ(Dynamic(), Names{"AssemblyVersion"});
}

TEST_F(BuildAction, TakesAwayTheWrongNameForTheBuildNumber) {
  action->RegisterDynamicProperty("AssemblyBuildNo");
  Set("AutoIncAssemblyBuildNumber", true);
  EXPECT_EQ(Dynamic(), (Names{"AssemblyBuildNo", "AssemblyVersion"}));
  Set("AutoIncAssemblyBuildNumber", false);
  EXPECT_EQ(Dynamic(), Names{"AssemblyVersion"});
}

TEST_F(BuildAction, TakesAwayNothingForTheBuildNumberWhileTheRevisionIsRaised) {
  action->RegisterDynamicProperty("AssemblyBuildNo");
  Set("AutoIncAssemblyRevisionNo", true);
  Set("AutoIncAssemblyBuildNumber", true);
  Set("AutoIncAssemblyBuildNumber", false);
  EXPECT_EQ(Dynamic(), (Names{"AssemblyBuildNo", "AssemblyVersion"}));
}

TEST_F(BuildAction, RegistersNothingForTheFileRevision) {
  Set("AutoIncAssemblyFileRevisionNo", true);
  EXPECT_TRUE(Get<bool>("AutoIncAssemblyFileRevisionNo"));
  EXPECT_EQ(Dynamic(), Names{});
  action->RegisterDynamicProperty("AssemblyFileVersion");
  Set("AutoIncAssemblyFileRevisionNo", false);
  EXPECT_FALSE(Get<bool>("AutoIncAssemblyFileRevisionNo"));
  EXPECT_EQ(Dynamic(), Names{"AssemblyFileVersion"});
}

TEST_F(BuildAction, RegistersAssemblyFileVersionForTheFileBuildNumber) {
  Set("AutoIncAssemblyFileBuildNumber", true);
  EXPECT_EQ(Dynamic(), Names{"AssemblyFileVersion"});
  Set("AutoIncAssemblyFileBuildNumber", false);
  EXPECT_EQ(Dynamic(), Names{});
}

TEST_F(BuildAction, KeepsAssemblyFileVersionWhileTheFileRevisionIsRaised) {
  Set("AutoIncAssemblyFileRevisionNo", true);
  Set("AutoIncAssemblyFileBuildNumber", true);
  Set("AutoIncAssemblyFileBuildNumber", false);
  EXPECT_EQ(Dynamic(), Names{"AssemblyFileVersion"});
}

TEST_F(BuildAction, RegistersBuildVersionForTheWin32Build) {
  Set("AutoIncBuild", true);
  EXPECT_EQ(Dynamic(), Names{"BuildVersion"});
  Set("AutoIncBuild", false);
  EXPECT_EQ(Dynamic(), Names{});
}

TEST_F(BuildAction, RegistersNothingForAnUnchangedFlag) {
  for (const char* flag : {"AutoIncAssemblyRevisionNo", "AutoIncAssemblyBuildNumber",
                           "AutoIncAssemblyFileBuildNumber", "AutoIncBuild"}) {
    Set(flag, true);
    action->Host().dynamicProperties.clear();
    Set(flag, true);
    EXPECT_EQ(Dynamic(), Names{}) << flag;
    Set(flag, false);
    action->Host().dynamicProperties = {"AssemblyVersion", "AssemblyFileVersion", "BuildVersion"};
    Set(flag, false);
    EXPECT_EQ(Dynamic().size(), 3u) << flag;
  }
}

// The version resource

TEST_F(BuildAction, KeepsTheFileVersionKeyInStepWithEachNumber) {
  Set("VersionInfoKeys", std::string("CompanyName=A"));
  EXPECT_EQ(Text("VersionInfoKeys"), "CompanyName=A\r\nFileVersion=0.0.0.0\r\n");
  Set("MajorVersion", 2);
  EXPECT_EQ(Text("VersionInfoKeys"), "CompanyName=A\r\nFileVersion=2.0.0.0\r\n");
  Set("MinorVersion", 3);
  EXPECT_EQ(Text("VersionInfoKeys"), "CompanyName=A\r\nFileVersion=2.3.0.0\r\n");
  Set("ReleaseVersion", 4);
  EXPECT_EQ(Text("VersionInfoKeys"), "CompanyName=A\r\nFileVersion=2.3.4.0\r\n");
  Set("BuildVersion", 5);
  EXPECT_EQ(Text("VersionInfoKeys"), "CompanyName=A\r\nFileVersion=2.3.4.5\r\n");
  EXPECT_EQ(Get<std::int32_t>("BuildVersion"), 5);
}

TEST_F(BuildAction, ChangesNoOtherVersionKey) {
  Set("VersionInfoKeys", std::string("ProductVersion=9\r\nFileVersion=x\r\nComments=\r\n"));
  EXPECT_EQ(Text("VersionInfoKeys"), "ProductVersion=9\r\nFileVersion=0.0.0.0\r\nComments=\r\n");
}

TEST_F(BuildAction, SetsIsDebugInThePlaceOfIsPrivate) {
  Set("IsPrivate", true);
  EXPECT_TRUE(Get<bool>("IsDebug"));
  EXPECT_FALSE(Get<bool>("IsPrivate"));
  Set("IsPrivate", false);
  EXPECT_FALSE(Get<bool>("IsDebug"));
}

// The saved order has IsPrivate behind IsDebug.
TEST_F(BuildAction, LosesIsDebugOnLoadingToIsPrivate) {
  Set("IsDebug", true);
  for (const PublishedProperty& row : TQXVSDotNetAction::Class().properties)
    if (row.kind == PropertyKind::Boolean) row.set(*action, row.get(*action));
  EXPECT_FALSE(Get<bool>("IsDebug"));
}

TEST_F(BuildAction, StoresCodePageZeroAs1252) {
  EXPECT_EQ(Get<std::int32_t>("CodePage"), 0);
  Set("CodePage", 0);
  EXPECT_EQ(Get<std::int32_t>("CodePage"), 1252);
  Set("CodePage", 932);
  EXPECT_EQ(Get<std::int32_t>("CodePage"), 932);
}

TEST_F(BuildAction, IncrementsTheLastPartOfAText) {
  EXPECT_EQ(action->DoAutoIncBuild("1|2|3|x"), "1|2|3|0");
  EXPECT_EQ(action->DoAutoIncBuild("9"), "10");
  EXPECT_EQ(action->DoAutoIncBuild("1|2|"), "1|2|0");
  EXPECT_EQ(action->DoAutoIncBuild(""), "0");
}

TEST_F(BuildAction, ExpandsTheLastPartBeforeIncrementing) {
  host.variables.SetProject("OUTER", "%N%");
  host.variables.SetProject("N", "41");
  EXPECT_EQ(action->DoAutoIncBuild("%N%|1|%OUTER%"), "%N%|1|42");
  EXPECT_THROW(action->DoAutoIncBuild("1|%MISSING%"), Exception);
}

// As a person tells them

std::string Told(const std::vector<ActionVersion>& versions) {
  std::string text;
  for (const ActionVersion& version : versions) text += version.name + "=" + version.value + " ";
  return text;
}

TEST_F(BuildAction, TellsAllItsVersionsWithPoints) {
  EXPECT_EQ(VersionsOf(*action), action.get());
  EXPECT_EQ(Told(action->GetVersions()), "AssemblyVersion= AssemblyFileVersion= FileVersion=0.0.0.0 ");
  Set("AssemblyVersion", std::string("1|2|0|7"));
  Set("AssemblyFileVersion", std::string("3|%N%|*|"));
  Set("BuildVersion", 45);
  EXPECT_EQ(Told(action->GetVersions()),
            "AssemblyVersion=1.2.0.7 AssemblyFileVersion=3.%N%.*. FileVersion=0.0.0.45 ");
}

TEST_F(BuildAction, TakesOneVersionForAll) {
  action->SetVersions("2.1.0.9");
  EXPECT_EQ(Text("AssemblyVersion"), "2|1|0|9");
  EXPECT_EQ(Text("AssemblyFileVersionMinor"), "1");
  EXPECT_EQ(Get<std::int32_t>("BuildVersion"), 9);
  EXPECT_EQ(Text("VersionInfoKeys"), "FileVersion=2.1.0.9\r\n");
}

TEST_F(BuildAction, TakesThePart65535WhileNoAssemblyIsStamped) {
  action->SetVersions("1.0.0.65535");
  EXPECT_THROW(action->BumpVersions(VersionPart::Revision), Exception);
  Set("UpdateAssemblyInfo", true);
  EXPECT_THROW(action->SetVersions("2.0.0.65535"), Exception);
  EXPECT_EQ(Text("AssemblyVersion"), "1|0|0|65535");
  action->SetVersions("2.0.0.65534");
  EXPECT_THROW(action->BumpVersions(VersionPart::Revision), Exception);
  EXPECT_EQ(Text("AssemblyVersion"), "2|0|0|65534");
}

TEST_F(BuildAction, RaisesAllItsVersionsOrNone) {
  Set("AssemblyVersion", std::string("1|2|3|4"));
  Set("MajorVersion", 7);
  action->BumpVersions(VersionPart::Minor);
  EXPECT_EQ(Told(action->GetVersions()),
            "AssemblyVersion=1.3.0.0 AssemblyFileVersion=0.1.0.0 FileVersion=7.1.0.0 ");
  EXPECT_EQ(Text("VersionInfoKeys"), "FileVersion=7.1.0.0\r\n");
  Set("MajorVersion", -1);
  EXPECT_THROW(action->BumpVersions(VersionPart::Major), Exception);
  EXPECT_EQ(Text("AssemblyVersion"), "1|3|0|0");
}

TEST_F(BuildAction, WarnsOfAVersionWithPointsAlone) {
  EXPECT_EQ(action->WarnOfText("AssemblyVersion", "1.2.3.4"),
            "AssemblyVersion: \"1.2.3.4\" has no \"|\" between its parts and counts as the major part alone; "
            "\"1|2|3|4\" is meant");
  EXPECT_NE(action->WarnOfText("AssemblyFileVersion", "1.2"), "");
  for (const char* text : {"1|2|3|4", "7", "", "%V%", "1.x|2"})
    EXPECT_EQ(action->WarnOfText("AssemblyVersion", text), "") << text;
  EXPECT_EQ(action->WarnOfText("AssemblyTitle", "a.b"), "");
}

}  // namespace
}  // namespace qx
