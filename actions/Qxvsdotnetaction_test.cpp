#include <map>
#include <random>
#include <set>

#include "actions/ActionFixture.h"

namespace qx {
namespace {

// Name, kind and storage of every property in the order in which build projects hold them.
std::string Dump(const PublishedProperty& row) {
  static constexpr const char* kKinds[] = {"text", "integer", "boolean", "enumeration", "list"};
  static constexpr const char* kStorage[] = {"", " not stored", " secret"};
  std::string line(row.name);
  line += std::string(" ") + kKinds[static_cast<int>(row.kind)] + kStorage[static_cast<int>(row.storage)];
  for (const std::string_view name : row.valueNames) line += " " + std::string(name);
  return line;
}

constexpr const char* kGoldenRows[] = {
    "Solution text",
    "SolutionConFiguration text",
    "UpdateWin32Resource boolean",
    "UpdateAssemblyInfo boolean",
    "BuildType enumeration btAllProjects btSelectedProjects",
    "BuildAction enumeration baBuild baRebuild baClean baDeploy",
    "SelectedProjects list",
    "UseEnv boolean",
    "VStudioVersion enumeration vs2002 vs2003 vs2005",
    "ApplyAssemblyInfoTo enumeration btAllProjects btSelectedProjects",
    "ApplyResourceInfoTo enumeration btAllProjects btSelectedProjects",
    "AssemblySelectedProjects list",
    "ResourceSelectedProjects list",
    "AssemblyInfo text not stored",
    "UpdateAssemblyTitle boolean",
    "UpdateAssemblyComment boolean",
    "UpdateAssemblyCompany boolean",
    "UpdateAssemblyDescription boolean",
    "UpdateAssemblyCopyright boolean",
    "UpdateAssemblyTradeMark boolean",
    "UpdateAssemblyProductName boolean",
    "UpdateAssemblyFileVersion boolean",
    "UpdateAssemblyVersion boolean",
    "AutoIncAssemblyBuildNumber boolean",
    "AutoIncAssemblyFileBuildNumber boolean",
    "AutoIncAssemblyRevisionNo boolean",
    "AutoIncAssemblyFileRevisionNo boolean",
    "LinkAssemblyFileVersionInfo boolean",
    "AssemblyTitle text",
    "AssemblyComment text",
    "AssemblyCompany text",
    "AssemblyDescription text",
    "AssemblyCopyright text",
    "AssemblyTradeMark text",
    "AssemblyProductName text",
    "AssemblyFileVersion text",
    "AssemblyVersion text",
    "AssemblyVersionMajor text not stored",
    "AssemblyVersionMinor text not stored",
    "AssemblyVersionBuild text not stored",
    "AssemblyVersionRevision text not stored",
    "AssemblyFileVersionMajor text not stored",
    "AssemblyFileVersionMinor text not stored",
    "AssemblyFileVersionBuild text not stored",
    "AssemblyFileVersionRevision text not stored",
    "AutoIncBuild boolean",
    "MajorVersion integer",
    "MinorVersion integer",
    "ReleaseVersion integer",
    "BuildVersion integer",
    "IsDebug boolean",
    "IsPreRelease boolean",
    "IsSpecial boolean",
    "IsPrivate boolean",
    "IsDLL boolean",
    "Locale integer",
    "CodePage integer",
    "VersionInfoKeys text",
    "IncludeCompileDate boolean",
    "ProjLocationDetectMethod enumeration useWMI useShare useWebDAV",
    "WMIWebsiteNum integer",
    "SharePath text",
    "WebDAVUsername text",
    "WebDAVPassword text secret",
    "_WebDAVPassword text",
    "UseMSBuild boolean",
};

TEST_F(BuildAction, PublishesItsPropertiesInTheSavedOrder) {
  Names rows;
  for (const PublishedProperty& row : TQXVSDotNetAction::Class().properties) rows.push_back(Dump(row));
  EXPECT_EQ(rows, Names(std::begin(kGoldenRows), std::end(kGoldenRows)));
  EXPECT_EQ(rows.size(), 66u);
}

TEST_F(BuildAction, StartsWithItsDefaults) {
  const std::map<std::string_view, PropertyValue> others = {
      {"VStudioVersion", EnumerationValue{static_cast<int>(kFirstDefaultVersion)}},
      {"AssemblyInfo", "Assembly Info"},
      {"AssemblyVersion", "|||"},
      {"AssemblyFileVersion", "|||"},
      {"WMIWebsiteNum", 1},
      {"SharePath", "wwwroot$"},
  };
  for (const PublishedProperty& row : TQXVSDotNetAction::Class().properties) {
    PropertyValue expected;
    switch (row.kind) {
      case PropertyKind::Text:
        expected = std::string();
        break;
      case PropertyKind::Integer:
        expected = 0;
        break;
      case PropertyKind::Boolean:
        expected = false;
        break;
      case PropertyKind::Enumeration:
        expected = EnumerationValue{0};
        break;
      case PropertyKind::TextList:
        expected = TStringList();
        break;
    }
    if (const auto other = others.find(row.name); other != others.end()) expected = other->second;
    EXPECT_EQ(row.get(*action), expected) << row.name;
  }
}

TEST_F(BuildAction, HasTheCapitalFThatSavedProjectsHold) {
  EXPECT_NO_THROW(Row("SolutionConFiguration"));
  EXPECT_THROW(Row("SolutionConfiguration"), Exception);
}

const Names kHiddenNames = {"UpdateVersionComment",
                            "UpdateAssemblyTitle",
                            "UpdateAssemblyComment",
                            "UpdateAssemblyCompany",
                            "UpdateAssemblyDescription",
                            "UpdateAssemblyCopyright",
                            "UpdateAssemblyTradeMark",
                            "UpdateAssemblyProductName",
                            "UpdateAssemblyVersion",
                            "UpdateAssemblyFileVersion",
                            "AssemblyTitle",
                            "AssemblyComment",
                            "AssemblyCompany",
                            "AssemblyDescription",
                            "AssemblyCopyright",
                            "AssemblyTradeMark",
                            "AssemblyProductName",
                            "AssemblyVersion",
                            "AssemblyFileVersion",
                            "UpdateWin32Resource",
                            "UpdateAssemblyInfo",
                            "BuildType",
                            "BuildAction",
                            "SelectedProjects",
                            "ApplyAssemblyInfoTo",
                            "ApplyResourceInfoTo",
                            "AssemblySelectedProjects",
                            "ResourceSelectedProjects",
                            "UseEnv",
                            "AutoIncAssemblyBuildNumber",
                            "AutoIncAssemblyFileBuildNumber",
                            "AutoIncAssemblyRevisionNo",
                            "AutoIncAssemblyFileRevisionNo",
                            "LinkAssemblyFileVersionInfo",
                            "AssemblyVersionMajor",
                            "AssemblyVersionMinor",
                            "AssemblyVersionBuild",
                            "AssemblyVersionRevision",
                            "AssemblyFileVersionMajor",
                            "AssemblyFileVersionMinor",
                            "AssemblyFileVersionBuild",
                            "AssemblyFileVersionRevision",
                            "AutoIncBuild",
                            "MajorVersion",
                            "MinorVersion",
                            "ReleaseVersion",
                            "BuildVersion",
                            "IsDebug",
                            "IsPreRelease",
                            "IsSpecial",
                            "IsPrivate",
                            "IsDLL",
                            "Locale",
                            "CodePage",
                            "VersionInfoKeys",
                            "IncludeCompileDate",
                            "_WebDAVPassword"};

TEST_F(BuildAction, HidesWhatItsPagesEdit) {
  TStringList hidden;
  action->GetHiddenProperties(hidden);
  EXPECT_EQ(hidden.Items(), kHiddenNames);
  EXPECT_EQ(hidden.Count(), 57);
}

TEST_F(BuildAction, LeavesTenPropertiesInTheGrid) {
  TStringList hidden;
  action->GetHiddenProperties(hidden);
  Names visible;
  for (const PublishedProperty& row : TQXVSDotNetAction::Class().properties)
    if (hidden.IndexOf(row.name) < 0) visible.emplace_back(row.name);
  EXPECT_EQ(visible, (Names{"Solution", "SolutionConFiguration", "VStudioVersion", "AssemblyInfo",
                            "ProjLocationDetectMethod", "WMIWebsiteNum", "SharePath", "WebDAVUsername",
                            "WebDAVPassword", "UseMSBuild"}));
}

TEST_F(BuildAction, GivesAliases) {
  TStringList lines;
  action->GetPropertyAlias(lines);
  EXPECT_EQ(lines.Items(),
            (Names{"[Solution]", "Solution=Solution", "SolutionConfiguration=SolutionConfiguration",
                   "VStudioVersion=Visual Studio Version"}));
}

TEST_F(BuildAction, AddsNoPropertyHelp) {
  TStringList lines;
  action->GetPropertyHelp(lines);
  EXPECT_EQ(lines.Count(), 0);
}

TEST_F(BuildAction, HasItsFixedTexts) {
  EXPECT_EQ(action->GetActionName(TQXVSDotNetAction::Class()), "Build VS.Net Solution");
  EXPECT_EQ(TQXVSDotNetAction::Class().getActionName(), "Build VS.Net Solution");
  EXPECT_EQ(TQXVSDotNetAction::Class().className, "TQXVSDotNetAction");
  EXPECT_EQ(action->GetQuickHelpFilename(), "Plugins\\VSDotNet.html");
  EXPECT_EQ(action->GetHelpTopicID(), 1300);
  EXPECT_TRUE(action->CanTerminate());
  EXPECT_FALSE(action->RequiresSync());
}

TEST_F(BuildAction, ShowsAHeadingRowThatCannotBeSet) {
  Set("AssemblyInfo", std::string("other"));
  EXPECT_EQ(Text("AssemblyInfo"), "Assembly Info");
}

TEST_F(BuildAction, CopiesAssignedLists) {
  TStringList list;
  list.Add("{A}");
  Set("SelectedProjects", list);
  list.Add("{B}");
  EXPECT_EQ(Get<TStringList>("SelectedProjects").Items(), Names{"{A}"});
}

TEST_F(BuildAction, KeepsThePasswordEncryptedOnly) {
  Set("WebDAVPassword", std::string("s3cret \xC3\xA4"));
  EXPECT_EQ(Text("WebDAVPassword"), "s3cret \xC3\xA4");
  EXPECT_NE(Text("_WebDAVPassword"), "");
  EXPECT_EQ(Text("_WebDAVPassword").find("s3cret"), std::string::npos);
}

TEST_F(BuildAction, RestoresThePasswordFromTheEncryptedTextAlone) {
  Set("WebDAVPassword", std::string("s3cret"));
  const std::unique_ptr<TQXVSDotNetAction> other = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
  Row("_WebDAVPassword").set(*other, Text("_WebDAVPassword"));
  EXPECT_EQ(other->GetWebDAVPassword(), "s3cret");
}

TEST_F(BuildAction, HandsThePasswordToTheUpdater) {
  Set("ProjLocationDetectMethod", EnumerationValue{2});
  Set("WMIWebsiteNum", 7);
  Set("SharePath", std::string("web$"));
  Set("WebDAVUsername", std::string("ann"));
  Set("WebDAVPassword", std::string("s3cret"));
  const ProjectLocationSettings location = action->GetProjectLocation();
  EXPECT_EQ(location.projLocationDetectMethod, 2);
  EXPECT_EQ(location.wmiWebsiteNum, 7);
  EXPECT_EQ(location.sharePath, "web$");
  EXPECT_EQ(location.webDavUsername, "ann");
  EXPECT_EQ(location.webDavPassword(), "s3cret");
}

TEST_F(BuildAction, HandsOutACopyOfItsWebSettings) {
  Set("WMIWebsiteNum", 7);
  Set("WebDAVPassword", std::string("s3cret"));
  const ProjectLocationSettings location = action->GetProjectLocation();
  Set("WMIWebsiteNum", 8);
  Set("WebDAVPassword", std::string("another"));
  EXPECT_EQ(location.wmiWebsiteNum, 7);
  EXPECT_EQ(location.webDavPassword(), "s3cret");
}

TEST_F(BuildAction, NamesThePasswordThatCannotBeReadAndTheRemedy) {
  action->Settings().webDavPasswordEncrypted = "from another computer";
  const ProjectLocationSettings location = action->GetProjectLocation();
  try {
    location.webDavPassword();
    FAIL() << "it was read";
  } catch (const Exception& fault) {
    EXPECT_EQ(
        fault.Message(),
        "WebDAVPassword: The stored text is no encrypted secret; set WebDAVPassword again on this computer");
  }
}

TEST_F(BuildAction, AnswersItsInterfaces) {
  EXPECT_EQ(Query<IQXProcessCallback>(static_cast<IQXProcessCallback*>(action.get())).get(), action.get());
  EXPECT_EQ(Query<IQXVC7VersionInfo>(static_cast<IQXProcessCallback*>(action.get())).get(), action.get());
  EXPECT_EQ(Query<IAssemblyInfoSource>(static_cast<IQXProcessCallback*>(action.get())).get(), action.get());
  EXPECT_EQ(static_cast<IQXProcessCallback*>(action.get())->_AddRef(), -1);
}

TEST_F(BuildAction, HandsOutTheAttributesByName) {
  const std::pair<AssemblyAttribute, const char*> rows[] = {
      {AssemblyAttribute::Title, "AssemblyTitle"},
      {AssemblyAttribute::Comment, "AssemblyComment"},
      {AssemblyAttribute::Company, "AssemblyCompany"},
      {AssemblyAttribute::Description, "AssemblyDescription"},
      {AssemblyAttribute::Copyright, "AssemblyCopyright"},
      {AssemblyAttribute::Trademark, "AssemblyTradeMark"},
      {AssemblyAttribute::Product, "AssemblyProductName"},
      {AssemblyAttribute::FileVersion, "AssemblyFileVersion"},
      {AssemblyAttribute::Version, "AssemblyVersion"}};
  for (const auto& [attribute, name] : rows) {
    EXPECT_FALSE(action->IsAttributeUpdated(attribute)) << name;
    Set("Update" + std::string(name), true);
    Set(name, std::string(name) + " text");
    EXPECT_TRUE(action->IsAttributeUpdated(attribute)) << name;
    EXPECT_EQ(action->GetAttributeText(attribute), std::string(name) + " text");
  }
  EXPECT_FALSE(action->IsFileVersionLinked());
  Set("LinkAssemblyFileVersionInfo", true);
  EXPECT_TRUE(action->IsFileVersionLinked());
}

TEST_F(BuildAction, ExpandsNestedVariablesForTheUpdater) {
  host.variables.SetProject("COMPANY", "%NAME% Ltd");
  host.variables.SetProject("NAME", "Acme");
  EXPECT_EQ(action->ExpandText("(%COMPANY%)"), "(Acme Ltd)");
  EXPECT_EQ(action->GetServices()->ExpandExpression("%NAME%", true), "Acme");
}

TEST(SolutionEditor, OpensTheSolutionPage) {
  EXPECT_EQ(TSolutionEditor::Class().className, "TSolutionEditor");
  const std::unique_ptr<TQXPropertyEditor> editor = TSolutionEditor::Class().construct();
  EXPECT_EQ(dynamic_cast<TShowActionPropertiesEditor&>(*editor).GetPageName(), "Solution");
}

// Any value set to a property with no rule of its own comes back, whatever the others hold.
TEST_F(BuildAction, GivesBackWhatWasSet) {
  const std::set<std::string_view> ruled = {"AssemblyInfo", "IsPrivate", "VersionInfoKeys",
                                            "_WebDAVPassword"};
  std::mt19937 random(7);
  const auto text = [&random] {
    static constexpr std::string_view kAlphabet = "ab|\\%\"\r\n<&;=,. \xC3\xA4\xFF";
    std::string value(random() % 12, ' ');
    for (char& c : value) c = kAlphabet[random() % kAlphabet.size()];
    return value;
  };
  const PropertyTable table = TQXVSDotNetAction::Class().properties;
  for (int i = 0; i < 1000; ++i) {
    const PublishedProperty& row = table[random() % table.size()];
    if (ruled.contains(row.name)) continue;
    PropertyValue value;
    switch (row.kind) {
      case PropertyKind::Text:
        value = text();
        break;
      case PropertyKind::Integer:
        value = static_cast<std::int32_t>(random() | 1u);
        break;
      case PropertyKind::Boolean:
        value = random() % 2 == 0;
        break;
      case PropertyKind::Enumeration:
        value = EnumerationValue{static_cast<std::int32_t>(random() % row.valueNames.size())};
        break;
      case PropertyKind::TextList:
        value = TStringList({text(), text()});
        break;
    }
    row.set(*action, value);
    ASSERT_EQ(row.get(*action), value) << row.name;
  }
}

}  // namespace
}  // namespace qx
