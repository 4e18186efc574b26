#include "pages/Qxvsdotnetassemblyframe.h"

#include "actions/Qxmstestaction.h"
#include "pages/PagesFixture.h"

namespace qx {
namespace {

constexpr int kPage = kAssemblyPage;

struct Attribute {
  AssemblyAttribute attribute;
  const char* box;
  const char* edit;
};
constexpr Attribute kAttributes[] = {
    {AssemblyAttribute::Title, "chkUpdateTitle", "txtAssemblyTitle"},
    {AssemblyAttribute::Description, "chkUpdateDescription", "txtAssemblyDesc"},
    {AssemblyAttribute::Company, "chkUpdateCompany", "txtAssemblyCompany"},
    {AssemblyAttribute::Product, "chkUpdateProduct", "txtAssemblyProduct"},
    {AssemblyAttribute::Copyright, "chkUpdateCopyRight", "txtAssemblyCopyright"},
    {AssemblyAttribute::Trademark, "chkUpdateTrademark", "txtAssemblyTrademark"}};
constexpr const char* kVersionEdits[] = {"txtAssemblyMajor", "txtAssemblyMinor", "txtAssemblyBuild",
                                         "txtAssemblyRevision"};
constexpr const char* kFileVersionEdits[] = {"txtAssemblyFileMajor", "txtAssemblyFileMinor",
                                             "txtAssemblyFileBuild", "txtAssemblyFileRevision"};

class AssemblyPage : public PagesFixture {
 protected:
  VSDotNetSettings& Settings() { return action->Settings(); }
  bool& Updates(AssemblyAttribute attribute) {
    return Settings().updateAttribute[static_cast<std::size_t>(attribute)];
  }
  std::string& TextOf(AssemblyAttribute attribute) {
    return Settings().attributeText[static_cast<std::size_t>(attribute)];
  }
  TCheckBox& Box(const char* name) { return Of<TCheckBox>(kPage, name); }
  TEdit& Edit(const char* name) { return Of<TEdit>(kPage, name); }
  bool On(const char* name) { return Enabled(kPage, name); }
  void Click(const char* name) { EXPECT_EQ(Any(kPage, name).UserClick(), TUserAnswer::Done) << name; }
  // Opens with everything switched on.
  void OpenAll() {
    Settings().updateAssemblyInfo = true;
    Settings().updateAttribute.fill(true);
    Open();
  }
  Texts Parts(const char* const (&edits)[4]) {
    Texts parts;
    for (const char* name : edits) parts.push_back(Edit(name).Text());
    return parts;
  }
  void ExpectEnabled(const char* const (&names)[4], bool enabled) {
    for (const char* name : names) EXPECT_EQ(On(name), enabled) << name;
  }
};

TEST_F(AssemblyPage, IsThePageOfTheBuildActionOnly) {
  TVSDotNetAssemblyFrame page;
  EXPECT_EQ(page.PageName(), "Assembly Info");
  EXPECT_EQ(page.GetHelpContext(), 1300);
  const auto other = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  EXPECT_EQ(MessageOf([&] { page.ReadActionData(*other); }), "Invalid class typecast");
  EXPECT_EQ(MessageOf([&] { page.WriteActionData(*other); }), "Invalid class typecast");
}

TEST_F(AssemblyPage, ShowsAndWritesEachAttribute) {
  Settings().updateAssemblyInfo = true;
  for (const Attribute& row : kAttributes) TextOf(row.attribute) = std::string("text of ") + row.box;
  Updates(AssemblyAttribute::Company) = true;
  Open();
  for (const Attribute& row : kAttributes) {
    EXPECT_EQ(Edit(row.edit).Text(), std::string("text of ") + row.box);
    EXPECT_EQ(Box(row.box).Checked(), row.attribute == AssemblyAttribute::Company) << row.box;
    Click(row.box);
    if (Box(row.box).Checked()) {
      EXPECT_EQ(Edit(row.edit).UserType(std::string("new ") + row.edit), TUserAnswer::Done);
    }
  }
  Write();
  for (const Attribute& row : kAttributes) {
    const bool ticked = row.attribute != AssemblyAttribute::Company;
    EXPECT_EQ(Updates(row.attribute), ticked) << row.box;
    EXPECT_EQ(TextOf(row.attribute), ticked ? std::string("new ") + row.edit : "text of chkUpdateCompany");
  }
}

TEST_F(AssemblyPage, LeavesTheCommentAlone) {
  TextOf(AssemblyAttribute::Comment) = "kept";
  Updates(AssemblyAttribute::Comment) = true;
  OpenAll();
  Write();
  EXPECT_EQ(TextOf(AssemblyAttribute::Comment), "kept");
  EXPECT_TRUE(Updates(AssemblyAttribute::Comment));
}

TEST_F(AssemblyPage, ShowsAndWritesTheSwitches) {
  action->SetAutoIncAssemblyBuildNo(true);
  action->SetAutoIncAssemblyFileRevisionNo(true);
  Settings().linkAssemblyFileVersionInfo = true;
  OpenAll();
  EXPECT_TRUE(Box("chkUpdateAssemblyInfo").Checked());
  EXPECT_TRUE(Box("chkAutoIncAssemblyBuild").Checked());
  EXPECT_FALSE(Box("chkAutoIncAssemblyVersion").Checked());
  EXPECT_FALSE(Box("chkAutoIncAssemblyFileBuild").Checked());
  EXPECT_TRUE(Box("chkAutoIncAssemblyFileVersion").Checked());
  EXPECT_TRUE(Box("chkLinkVersions").Checked());
  for (const char* name : {"chkLinkVersions", "chkAutoIncAssemblyBuild", "chkAutoIncAssemblyVersion",
                           "chkAutoIncAssemblyFileBuild", "chkAutoIncAssemblyFileVersion"})
    Click(name);
  Write();
  EXPECT_FALSE(action->GetAutoIncAssemblyBuildNo());
  EXPECT_TRUE(action->GetAutoIncAssemblyRevisionNo());
  EXPECT_TRUE(action->GetAutoIncAssemblyFileBuildNo());
  EXPECT_FALSE(action->GetAutoIncAssemblyFileRevisionNo());
  EXPECT_FALSE(Settings().linkAssemblyFileVersionInfo);
  Click("chkUpdateAssemblyInfo");
  Write();
  EXPECT_FALSE(Settings().updateAssemblyInfo);
}

TEST_F(AssemblyPage, WritesTheIncrementsInAnOrderThatTheHostSees) {
  OpenAll();
  for (const char* name : {"chkAutoIncAssemblyBuild", "chkAutoIncAssemblyVersion",
                           "chkAutoIncAssemblyFileBuild", "chkAutoIncAssemblyFileVersion"})
    Click(name);
  Write();
  EXPECT_EQ(action->Host().dynamicProperties, (Texts{"AssemblyVersion", "AssemblyFileVersion"}));
  // The file revision is cleared before the file build looks at it, so the file version is taken away; the
  // build number is cleared last and takes away a name that was never there.
  for (const char* name : {"chkAutoIncAssemblyBuild", "chkAutoIncAssemblyVersion",
                           "chkAutoIncAssemblyFileBuild", "chkAutoIncAssemblyFileVersion"})
    Click(name);
  Write();
  EXPECT_EQ(action->Host().dynamicProperties, (Texts{"AssemblyVersion"}));
}

TEST_F(AssemblyPage, SplitsAndJoinsVersions) {
  action->SetAssemblyVersion("1|%MINOR%|*|");
  action->SetAssemblyFileVersion("5|6|7|8");
  OpenAll();
  EXPECT_EQ(Parts(kVersionEdits), (Texts{"1", "%MINOR%", "*", ""}));
  EXPECT_EQ(Parts(kFileVersionEdits), (Texts{"5", "6", "7", "8"}));
  EXPECT_EQ(Edit("txtAssemblyRevision").UserType("any text"), TUserAnswer::Done);
  EXPECT_EQ(Edit("txtAssemblyFileMajor").UserType(""), TUserAnswer::Done);
  Write();
  EXPECT_EQ(action->GetAssemblyVersion(), "1|%MINOR%|*|any text");
  EXPECT_EQ(action->GetAssemblyFileVersion(), "|6|7|8");
}

TEST_F(AssemblyPage, LeavesEditsThatAShorterVersionDoesNotReach) {
  action->SetAssemblyVersion("1|2|3|4");
  action->SetAssemblyFileVersion("1|2|3|4");
  OpenAll();
  action->SetAssemblyVersion("7|8");
  action->SetAssemblyFileVersion("");
  dialog->Page(kPage).ReadActionData(*action);
  EXPECT_EQ(Parts(kVersionEdits), (Texts{"7", "8", "3", "4"}));
  EXPECT_EQ(Parts(kFileVersionEdits), (Texts{"", "2", "3", "4"}));
}

TEST_F(AssemblyPage, DropsAFifthPart) {
  action->SetAssemblyVersion("1|2|3|4|5");
  OpenAll();
  EXPECT_EQ(Parts(kVersionEdits), (Texts{"1", "2", "3", "4"}));
  Write();
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|4");
}

TEST_F(AssemblyPage, KeepsAVersionThatIsNotTicked) {
  action->SetAssemblyVersion("1|2|3|4|5");
  action->SetAssemblyFileVersion("6|7");
  OpenAll();
  for (const char* name : {"txtAssemblyMajor", "txtAssemblyFileMajor"})
    EXPECT_EQ(Edit(name).UserType("99"), TUserAnswer::Done);
  Click("chkUpdateAssemblyVersion");
  Click("chkUpdateFileVersion");
  Write();
  EXPECT_EQ(action->GetAssemblyVersion(), "1|2|3|4|5");
  EXPECT_EQ(action->GetAssemblyFileVersion(), "6|7");
}

TEST_F(AssemblyPage, UnticksTheIncrementsOfAVersionThatIsNotTicked) {
  action->SetAutoIncAssemblyBuildNo(true);
  action->SetAutoIncAssemblyRevisionNo(true);
  action->SetAutoIncAssemblyFileBuildNo(true);
  action->SetAutoIncAssemblyFileRevisionNo(true);
  Open();
  for (const char* name : {"chkAutoIncAssemblyBuild", "chkAutoIncAssemblyVersion",
                           "chkAutoIncAssemblyFileBuild", "chkAutoIncAssemblyFileVersion"})
    EXPECT_FALSE(Box(name).Checked()) << name;
  Write();
  EXPECT_FALSE(action->GetAutoIncAssemblyBuildNo());
  EXPECT_FALSE(action->GetAutoIncAssemblyRevisionNo());
  EXPECT_FALSE(action->GetAutoIncAssemblyFileBuildNo());
  EXPECT_FALSE(action->GetAutoIncAssemblyFileRevisionNo());
}

TEST_F(AssemblyPage, IsDisabledAsAWhole) {
  OpenAll();
  for (const TControl* control : dialog->Page(kPage).Controls())
    EXPECT_EQ(control->Enabled(), control->name != "lstProjects") << control->name;
  Click("chkUpdateAssemblyInfo");
  for (const TControl* control : dialog->Page(kPage).Root().Children()) {
    // These two follow their versions even now.
    const bool stays = control->name == "chkUpdateAssemblyInfo" ||
                       control->name == "chkAutoIncAssemblyVersion" ||
                       control->name == "chkAutoIncAssemblyFileVersion";
    EXPECT_EQ(control->Enabled(), stays) << control->name;
  }
  // The group as a whole: what is inside keeps its own flag.
  EXPECT_TRUE(Any(kPage, "optApplyToAll").Enabled());
  EXPECT_FALSE(On("optApplyToAll"));
}

TEST_F(AssemblyPage, EnablesWhatIsTickedWhenSwitchedOn) {
  Updates(AssemblyAttribute::Title) = true;
  Updates(AssemblyAttribute::Version) = true;
  Settings().applyAssemblyInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Open();
  EXPECT_FALSE(On("lstProjects"));
  Click("chkUpdateAssemblyInfo");
  for (const Attribute& row : kAttributes)
    EXPECT_EQ(On(row.edit), row.attribute == AssemblyAttribute::Title) << row.edit;
  ExpectEnabled(kVersionEdits, true);
  ExpectEnabled(kFileVersionEdits, false);
  EXPECT_TRUE(On("lstProjects"));
  EXPECT_TRUE(On("chkAutoIncAssemblyVersion"));
  EXPECT_FALSE(On("chkAutoIncAssemblyFileVersion"));
  // By the page as a whole, although the file version is not ticked.
  EXPECT_TRUE(On("chkAutoIncAssemblyFileBuild"));
}

TEST_F(AssemblyPage, EnablesNoVersionThatIsNotTickedWhenSwitchedOn) {
  Open();
  Click("chkUpdateAssemblyInfo");
  ExpectEnabled(kVersionEdits, false);
  ExpectEnabled(kFileVersionEdits, false);
  EXPECT_FALSE(On("chkAutoIncAssemblyVersion"));
  EXPECT_FALSE(On("lstProjects"));
}

TEST_F(AssemblyPage, EnablesAnEditWithItsBox) {
  OpenAll();
  for (const Attribute& row : kAttributes) {
    EXPECT_TRUE(On(row.edit)) << row.edit;
    Click(row.box);
    EXPECT_FALSE(On(row.edit)) << row.edit;
  }
}

TEST_F(AssemblyPage, EnablesTheVersionWithItsBox) {
  OpenAll();
  Click("chkAutoIncAssemblyBuild");
  Click("chkAutoIncAssemblyVersion");
  Click("chkUpdateAssemblyVersion");
  ExpectEnabled(kVersionEdits, false);
  for (const char* name : {"chkAutoIncAssemblyBuild", "chkAutoIncAssemblyVersion"}) {
    EXPECT_FALSE(Box(name).Checked()) << name;
    EXPECT_FALSE(On(name)) << name;
  }
  Click("chkUpdateAssemblyVersion");
  ExpectEnabled(kVersionEdits, true);
  for (const char* name : {"chkAutoIncAssemblyBuild", "chkAutoIncAssemblyVersion"}) {
    EXPECT_FALSE(Box(name).Checked()) << name;
    EXPECT_TRUE(On(name)) << name;
  }
}

TEST_F(AssemblyPage, EnablesTheFileVersionWithItsBoxUnlessItIsLinked) {
  OpenAll();
  Click("chkAutoIncAssemblyFileBuild");
  Click("chkAutoIncAssemblyFileVersion");
  Click("chkUpdateFileVersion");
  ExpectEnabled(kFileVersionEdits, false);
  for (const char* name : {"chkAutoIncAssemblyFileBuild", "chkAutoIncAssemblyFileVersion"}) {
    EXPECT_FALSE(Box(name).Checked()) << name;
    EXPECT_FALSE(On(name)) << name;
  }
  Click("chkLinkVersions");
  Click("chkUpdateFileVersion");
  ExpectEnabled(kFileVersionEdits, false);
  EXPECT_FALSE(On("chkAutoIncAssemblyFileBuild"));
  EXPECT_FALSE(On("chkAutoIncAssemblyFileVersion"));
}

TEST_F(AssemblyPage, RunsEachBoxesRuleWhileItReadsAPageThatIsOff) {
  Settings().updateAttribute.fill(true);
  Open();
  for (const Attribute& one : kAttributes) {
    EXPECT_FALSE(On(one.box)) << one.box;
    EXPECT_TRUE(On(one.edit)) << one.edit;
  }
  ExpectEnabled(kVersionEdits, true);
  EXPECT_TRUE(On("chkAutoIncAssemblyBuild"));
  EXPECT_TRUE(On("chkAutoIncAssemblyVersion"));
}

TEST_F(AssemblyPage, KeepsTicksOfItsListWhileAllAreChosen) {
  action->SetSolution(WriteSolution());
  OpenAll();
  Of<TCheckListBox>(kPage, "lstProjects").SetChecked(1, false);
  EXPECT_EQ(Of<TButtonEdit>(kSolutionPage, "txtSolution").UserPressButton(1), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kPage), (Texts{"x Library", "- Program", "x Tool"}));
}

TEST_F(AssemblyPage, LinkingLeavesTheIncrementsAlone) {
  OpenAll();
  Click("chkAutoIncAssemblyFileBuild");
  Click("chkLinkVersions");
  ExpectEnabled(kFileVersionEdits, false);
  EXPECT_TRUE(On("chkAutoIncAssemblyFileBuild"));
  EXPECT_TRUE(On("chkAutoIncAssemblyFileVersion"));
  EXPECT_TRUE(Box("chkAutoIncAssemblyFileBuild").Checked());
  // The page as a whole, switched off and on again, disables the revision's box and not the build's.
  Click("chkUpdateAssemblyInfo");
  Click("chkUpdateAssemblyInfo");
  ExpectEnabled(kFileVersionEdits, false);
  EXPECT_TRUE(On("chkAutoIncAssemblyFileBuild"));
  EXPECT_FALSE(On("chkAutoIncAssemblyFileVersion"));
  Click("chkLinkVersions");
  ExpectEnabled(kFileVersionEdits, true);
  EXPECT_FALSE(On("chkAutoIncAssemblyFileVersion"));
}

TEST_F(AssemblyPage, EnablesTheListForSelectedProjectsOnly) {
  OpenAll();
  EXPECT_FALSE(On("lstProjects"));
  Click("optApplyToSelected");
  EXPECT_TRUE(On("lstProjects"));
  Click("optApplyToAll");
  EXPECT_FALSE(On("lstProjects"));
}

TEST_F(AssemblyPage, ShowsAndWritesTheSelectedProjects) {
  action->SetSolution(WriteSolution());
  Settings().applyAssemblyInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Settings().assemblySelectedProjects = TStringList({kGone, kTool, "{aaaaaaaa-0000-0000-0000-00000000000A}"});
  OpenAll();
  EXPECT_EQ(Ticks(kPage), (Texts{"x Library", "- Program", "x Tool"}));
  EXPECT_EQ(Of<TCheckListBox>(kPage, "lstProjects").UserTick(0, false), TUserAnswer::Done);
  Write();
  EXPECT_EQ(Settings().applyAssemblyInfoTo, TVSDotNetBuildType::btSelectedProjects);
  EXPECT_EQ(Settings().assemblySelectedProjects, TStringList({kTool}));
}

TEST_F(AssemblyPage, KeepsTheStoredSelectionWhenAllAreChosen) {
  action->SetSolution(WriteSolution());
  Settings().assemblySelectedProjects = TStringList({kGone, kTool});
  OpenAll();
  EXPECT_EQ(Ticks(kPage), (Texts{"x Library", "x Program", "x Tool"}));
  Write();
  EXPECT_EQ(Settings().applyAssemblyInfoTo, TVSDotNetBuildType::btAllProjects);
  EXPECT_EQ(Settings().assemblySelectedProjects, TStringList({kGone, kTool}));
}

TEST_F(AssemblyPage, IsSwitchedOffByAnotherSolutionOnly) {
  action->SetSolution(WriteSolution());
  OpenAll();
  auto& file = Of<TButtonEdit>(kSolutionPage, "txtSolution");
  EXPECT_EQ(file.UserPressButton(1), TUserAnswer::Done);
  EXPECT_TRUE(Box("chkUpdateAssemblyInfo").Checked());
  user.Queue(DrivenUser::Picker::File, WriteSolution("Other.sln", {{"Else", kGone}}));
  EXPECT_EQ(file.UserPressButton(0), TUserAnswer::Done);
  EXPECT_FALSE(Box("chkUpdateAssemblyInfo").Checked());
  EXPECT_FALSE(On("chkUpdateTitle"));
  EXPECT_EQ(Ticks(kPage), (Texts{"x Else"}));
}

TEST_F(AssemblyPage, TellsOfAVersionPartThatIsNoNumber) {
  Settings().updateAssemblyInfo = true;
  Settings().updateAttribute[static_cast<std::size_t>(AssemblyAttribute::Version)] = true;
  Settings().updateAttribute[static_cast<std::size_t>(AssemblyAttribute::FileVersion)] = true;
  Open();
  auto& page = dynamic_cast<IQXPageAdvice&>(dialog->Page(kAssemblyPage));
  const auto wrong = [&](const char* name, const char* text) {
    auto& edit = Of<TEdit>(kAssemblyPage, name);
    edit.SetText(text);
    return page.WhatIsWrongWith(edit);
  };
  EXPECT_EQ(wrong("txtAssemblyMinor", "2x"), "the minor part \"2x\" is no number from 0 to 65534");
  EXPECT_NE(wrong("txtAssemblyMajor", "*"), "");
  EXPECT_NE(wrong("txtAssemblyFileBuild", "*"), "");
  EXPECT_NE(wrong("txtAssemblyFileBuild", "65536"), "");
  for (const char* text : {"", "0", "65534", "%NUMBER%", "*"})
    EXPECT_EQ(wrong("txtAssemblyBuild", text), "") << text;
  EXPECT_EQ(wrong("txtAssemblyFileMajor", "65535"), "");
  Any(kAssemblyPage, "txtAssemblyFileMajor").SetEnabled(false);
  EXPECT_EQ(wrong("txtAssemblyFileMajor", "x"), "");
}

}  // namespace
}  // namespace qx
