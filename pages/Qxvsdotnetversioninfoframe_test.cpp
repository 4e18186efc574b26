#include "pages/Qxvsdotnetversioninfoframe.h"

#include "actions/Qxmstestaction.h"
#include "pages/PagesFixture.h"
#include "plugin/Qxlanguages.h"

namespace qx {
namespace {

constexpr int kPage = kVersionPage;

class VersionPage : public PagesFixture {
 protected:
  VSDotNetSettings& Settings() { return action->Settings(); }
  TVC7VersionInfoFrame& Page() { return dynamic_cast<TVC7VersionInfoFrame&>(dialog->Page(kPage)); }
  TCheckBox& Box(const char* name) { return Of<TCheckBox>(kPage, name); }
  TSpinEdit& Spin(const char* name) { return Of<TSpinEdit>(kPage, name); }
  TStringGrid& Grid() { return Of<TStringGrid>(kPage, "VersionKeyGrid"); }
  TComboBox& Locales() { return Of<TComboBox>(kPage, "cbLocale"); }
  TEdit& CodePage() { return Of<TEdit>(kPage, "txtCodePage"); }
  bool On(const char* name) { return Enabled(kPage, name); }
  void Click(const char* name) { EXPECT_EQ(Any(kPage, name).UserClick(), TUserAnswer::Done) << name; }
  void Type(const char* name, const char* text) {
    EXPECT_EQ(Any(kPage, name).UserType(text), TUserAnswer::Done) << name;
  }
  void EditCell(int column, int row, const char* text) {
    EXPECT_EQ(Grid().UserEditCell(column, row, text), TUserAnswer::Done);
  }
  void OpenOn() {
    Settings().updateWin32Resource = true;
    Open();
  }
  // "Key=Value" of the rows that hold anything.
  Texts Rows() {
    Texts rows;
    for (int row = 1; row < Grid().RowCount(); ++row)
      if (!(Grid().Cell(0, row) + Grid().Cell(1, row)).empty())
        rows.push_back(Grid().Cell(0, row) + "=" + Grid().Cell(1, row));
    return rows;
  }
};

TEST_F(VersionPage, IsThePageOfTheBuildActionOnly) {
  TVC7VersionInfoFrame page;
  EXPECT_EQ(page.PageName(), "Version Info");
  EXPECT_EQ(page.GetHelpContext(), 1300);
  const auto other = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  EXPECT_EQ(MessageOf([&] { page.ReadActionData(*other); }), "Invalid class typecast");
  EXPECT_EQ(MessageOf([&] { page.WriteActionData(*other); }), "Invalid class typecast");
}

TEST_F(VersionPage, ShowsAndWritesNumbersAndFlags) {
  action->SetMajorVer(1);
  action->SetMinorVer(2);
  action->SetReleaseVer(3);
  action->SetBuildVer(65535);
  action->SetAutoIncBuild(true);
  action->SetIsDebug(true);
  action->SetIsPreRelease(true);
  action->SetIsSpecial(true);
  action->SetIsDLL(true);
  action->SetIncludeCompileDate(true);
  OpenOn();
  EXPECT_TRUE(Box("cbIncludeVerInfo").Checked());
  EXPECT_EQ(Spin("spMajorVer").Value(), 1);
  EXPECT_EQ(Spin("spMinorVer").Value(), 2);
  EXPECT_EQ(Spin("spReleaseVer").Value(), 3);
  EXPECT_EQ(Spin("spBuildNo").Value(), 65535);
  EXPECT_FALSE(Box("cbPrivateBuild").Checked());
  for (const char* name :
       {"cbIncBuildNum", "cbDebugBuild", "cbPreRelease", "cbSpecialBuild", "cbDLL", "chkIncludeDate"}) {
    EXPECT_TRUE(Box(name).Checked()) << name;
    Click(name);
  }
  Type("spMajorVer", "5");
  Type("spMinorVer", "6");
  Type("spReleaseVer", "7");
  Type("spBuildNo", "8");
  Click("cbIncludeVerInfo");
  Write();
  EXPECT_FALSE(Settings().updateWin32Resource);
  EXPECT_EQ(action->GetMajorVer(), 5);
  EXPECT_EQ(action->GetMinorVer(), 6);
  EXPECT_EQ(action->GetReleaseVer(), 7);
  EXPECT_EQ(action->GetBuildVer(), 8);
  EXPECT_FALSE(action->GetAutoIncBuild());
  EXPECT_FALSE(action->GetIsPreRelease());
  EXPECT_FALSE(action->GetIsSpecial());
  EXPECT_FALSE(action->GetIsDLL());
  EXPECT_FALSE(action->GetIncludeCompileDate());
}

TEST_F(VersionPage, WritesThePrivateBoxIntoIsDebug) {
  OpenOn();
  Click("cbDebugBuild");
  Write();
  EXPECT_FALSE(action->GetIsDebug());  // the private box is written after it
  Click("cbPrivateBuild");
  Write();
  EXPECT_TRUE(action->GetIsDebug());
  EXPECT_FALSE(action->GetIsPrivate());
}

TEST_F(VersionPage, HoldsNumbersToTheirRange) {
  action->SetMajorVer(70000);
  action->SetMinorVer(-1);
  OpenOn();
  EXPECT_EQ(Spin("spMajorVer").Value(), 65535);
  EXPECT_EQ(Spin("spMinorVer").Value(), 0);
  Type("spBuildNo", "99999");
  Write();
  EXPECT_EQ(action->GetMajorVer(), 65535);
  EXPECT_EQ(action->GetMinorVer(), 0);
  EXPECT_EQ(action->GetBuildVer(), 65535);
}

TEST_F(VersionPage, MatchesItsPanelToTheBoxBeforeAnythingIsRead) {
  TVC7VersionInfoFrame page;
  EXPECT_FALSE(page.FindControl("pnlVersionInfo")->Enabled());
  EXPECT_FALSE(page.FindControl("cbDLL")->Enabled());
  page.InitFrame();
  for (const TControl* control : page.Controls()) {
    const bool enabled = control->name == "cbIncludeVerInfo" || !control->IsWindowed();
    EXPECT_EQ(control->Enabled(), enabled) << control->name;
  }
}

TEST_F(VersionPage, EnablesEverythingInThePanelButLabels) {
  Open();
  const auto expectPanel = [&](bool enabled) {
    for (const TControl* control : Page().Controls()) {
      if (control->name == "cbIncludeVerInfo") continue;
      EXPECT_EQ(control->Enabled(), enabled || !control->IsWindowed()) << control->name;
      EXPECT_EQ(control->IsEnabled(), enabled) << control->name;
    }
  };
  expectPanel(false);
  EXPECT_EQ(Box("cbDLL").UserClick(), TUserAnswer::Disabled);
  Click("cbIncludeVerInfo");
  expectPanel(true);
  Click("cbIncludeVerInfo");
  expectPanel(false);
}

TEST_F(VersionPage, EnablesItsListWithThePanelWhicheverProjectsAreChosen) {
  OpenOn();
  EXPECT_TRUE(Of<TRadioButton>(kPage, "optAllProjects").Checked());
  EXPECT_TRUE(On("lstProjects"));
  Click("optSelectedProjects");
  EXPECT_TRUE(On("lstProjects"));
  Click("optAllProjects");
  EXPECT_FALSE(On("lstProjects"));
}

TEST_F(VersionPage, ShowsAndWritesTheKeys) {
  action->SetVersionInfoKeys("CompanyName=A=B\r\nComments=\r\n");
  OpenOn();
  EXPECT_EQ(Grid().Cell(0, 0) + "|" + Grid().Cell(1, 0), "Key|Value");
  EXPECT_EQ(Rows(), (Texts{"CompanyName=A=B", "Comments=", "FileVersion=0.0.0.0"}));
  EditCell(0, 4, "InternalName");
  EditCell(1, 5, "a value without a key");
  EditCell(0, 1, "");
  Write();
  EXPECT_EQ(action->GetVersionInfoKeys(), "Comments=\r\nFileVersion=0.0.0.0\r\nInternalName=\r\n");
}

TEST_F(VersionPage, ResetsItsHeadingsOnWriting) {
  OpenOn();
  Grid().SetCell(0, 0, "changed");
  Write();
  EXPECT_EQ(Grid().Cell(0, 0) + "|" + Grid().Cell(1, 0), "Key|Value");
}

TEST_F(VersionPage, ShowsTheKeysAsTheActionHasThemNotAsItsSpinEditsHoldThem) {
  action->SetMajorVer(70000);
  OpenOn();
  EXPECT_EQ(Rows(), (Texts{"FileVersion=70000.0.0.0"}));
}

TEST_F(VersionPage, KeepsNineteenKeys) {
  std::string keys;
  for (int i = 1; i <= 20; ++i) keys += "Key" + std::to_string(i) + "=" + std::to_string(i) + "\r\n";
  Open();
  Page().SetupVersionInfoKeys(keys);
  EXPECT_EQ(Rows().size(), 19u);
  EXPECT_EQ(Rows().back(), "Key19=19");
  EXPECT_EQ(Page().GetVersionInfoKeys(), keys.substr(0, keys.find("Key20")));
}

TEST_F(VersionPage, KeepsRowsBeyondTheKeys) {
  action->SetVersionInfoKeys("A=1\r\nB=2\r\nC=3\r\n");
  OpenOn();
  Page().SetupVersionInfoKeys("X=9\r\n");
  EXPECT_EQ(Rows(), (Texts{"X=9", "B=2", "C=3", "FileVersion=0.0.0.0"}));
}

TEST_F(VersionPage, ShowsTheFirstValueOfAKeyThatStandsTwice) {
  Open();
  Page().SetupVersionInfoKeys("A=1\r\nB=2\r\na=3\r\n");
  EXPECT_EQ(Rows(), (Texts{"A=1", "B=2", "a=1"}));
}

TEST_F(VersionPage, ShowsALineWithoutAKeyAsAnEmptyRow) {
  Open();
  Page().SetupVersionInfoKeys("no key\r\nA=1\r\n");
  EXPECT_EQ(Grid().Cell(0, 1), "");
  EXPECT_EQ(Grid().Cell(0, 2), "A");
  EXPECT_EQ(Page().GetVersionInfoKeys(), "A=1\r\n");
}

TEST_F(VersionPage, KeepsTheFileVersionInStep) {
  Open();
  Page().SetupVersionInfoKeys(
      "CompanyName=A\r\nFileVersion=old\r\nProductVersion=p\r\nFileVersion=second\r\n");
  Page().SetMajorVer(1);
  Page().SetMinorVer(2);
  Page().SetReleaseVer(3);
  Click("cbIncludeVerInfo");
  Type("spBuildNo", "7");
  EXPECT_EQ(Grid().Cell(1, 1), "A");
  EXPECT_EQ(Grid().Cell(1, 2), "1.2.3.7");
  EXPECT_EQ(Grid().Cell(1, 3), "p");
  EXPECT_EQ(Grid().Cell(1, 4), "old");  // shown with the first one's value, and not changed with it
}

TEST_F(VersionPage, ChangesNoCellWithoutAFileVersion) {
  Open();
  Page().SetupVersionInfoKeys("CompanyName=A\r\nfileversion=b\r\n");
  Page().SetBuildVer(7);
  EXPECT_EQ(Rows(), (Texts{"CompanyName=A", "fileversion=b"}));
}

TEST_F(VersionPage, ShowsTheStoredKeysAsTheyStandAndStepsThemWhenTheyAreSet) {
  Open();
  Page().SetBuildVer(7);
  Page().SetupVersionInfoKeys("FileVersion=stored\r\n");
  EXPECT_EQ(Grid().Cell(1, 1), "stored");
  Page().SetVersionInfoKeys("FileVersion=stored\r\n");
  EXPECT_EQ(Grid().Cell(1, 1), "0.0.0.7");
}

TEST_F(VersionPage, ShowsAndWritesTheLanguage) {
  action->SetLocale(0x0407);
  OpenOn();
  EXPECT_EQ(Locales().Count(), QXLanguages().GetCount());
  EXPECT_EQ(Locales().Text(), "German (Germany)");
  EXPECT_EQ(Any(kPage, "lblLocaleID").caption, "");  // until another one is picked
  EXPECT_EQ(Locales().UserSelect(QXLanguages().IndexOf(0x0409)), TUserAnswer::Done);
  EXPECT_EQ(Any(kPage, "lblLocaleID").caption, "$0409");
  EXPECT_EQ(Locales().UserSelect(QXLanguages().IndexOf(0x0C0A)), TUserAnswer::Done);
  EXPECT_EQ(Any(kPage, "lblLocaleID").caption, "$0C0A");
  Write();
  EXPECT_EQ(action->GetLocale(), 0x0C0A);
}

TEST_F(VersionPage, WritesAnUnknownLanguageAsNone) {
  action->SetLocale(0x0007);
  OpenOn();
  EXPECT_EQ(Locales().ItemIndex(), -1);
  Write();
  EXPECT_EQ(action->GetLocale(), 0);
}

TEST_F(VersionPage, FillsTheLanguagesOnceHoweverOftenItIsRead) {
  Open();
  Page().ReadActionData(*action);
  EXPECT_EQ(Locales().Count(), QXLanguages().GetCount());
}

TEST_F(VersionPage, ShowsAndWritesTheCodePage) {
  action->SetCodePage(932);
  OpenOn();
  EXPECT_EQ(CodePage().Text(), "932");
  Type("txtCodePage", "65001");
  Write();
  EXPECT_EQ(action->GetCodePage(), 65001);
  Type("txtCodePage", "0");
  Write();
  EXPECT_EQ(action->GetCodePage(), 1252);
}

TEST_F(VersionPage, StopsWritingAtACodePageThatIsNoNumber) {
  action->SetSolution(WriteSolution());
  OpenOn();
  Click("chkIncludeDate");
  Click("optSelectedProjects");
  Type("spMajorVer", "9");
  Click("cbDLL");
  EditCell(0, 1, "Comments");
  EXPECT_EQ(Locales().UserSelect(QXLanguages().IndexOf(0x0407)), TUserAnswer::Done);
  Click("cbIncludeVerInfo");
  Page().SetCodePage(0);
  CodePage().SetText("ANSI");
  EXPECT_EQ(MessageOf([&] { Write(); }), "'ANSI' is not a valid integer value");
  EXPECT_FALSE(Settings().updateWin32Resource);
  EXPECT_EQ(action->GetMajorVer(), 9);
  EXPECT_TRUE(action->GetIsDLL());
  EXPECT_EQ(action->GetVersionInfoKeys(), "Comments=\r\nFileVersion=9.0.0.0\r\n");
  EXPECT_EQ(action->GetLocale(), 0x0407);
  EXPECT_EQ(action->GetCodePage(), 0);
  EXPECT_FALSE(action->GetIncludeCompileDate());
  EXPECT_EQ(Settings().applyResourceInfoTo, TVSDotNetBuildType::btAllProjects);
}

TEST_F(VersionPage, ShowsAndWritesTheSelectedProjects) {
  action->SetSolution(WriteSolution());
  Settings().applyResourceInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Settings().resourceSelectedProjects = TStringList({kGone, "{cccccccc-0000-0000-0000-00000000000c}"});
  OpenOn();
  EXPECT_EQ(Ticks(kPage), (Texts{"- Library", "- Program", "x Tool"}));
  EXPECT_EQ(Of<TCheckListBox>(kPage, "lstProjects").UserTick(0, true), TUserAnswer::Done);
  Write();
  EXPECT_EQ(Settings().applyResourceInfoTo, TVSDotNetBuildType::btSelectedProjects);
  EXPECT_EQ(Settings().resourceSelectedProjects, TStringList({kLibrary, kTool}));
}

TEST_F(VersionPage, KeepsTheStoredSelectionWhenAllAreChosen) {
  action->SetSolution(WriteSolution());
  Settings().resourceSelectedProjects = TStringList({kGone, kTool});
  OpenOn();
  EXPECT_EQ(Ticks(kPage), (Texts{"x Library", "x Program", "x Tool"}));
  Write();
  EXPECT_EQ(Settings().applyResourceInfoTo, TVSDotNetBuildType::btAllProjects);
  EXPECT_EQ(Settings().resourceSelectedProjects, TStringList({kGone, kTool}));
}

TEST_F(VersionPage, StaysSwitchedOnForAnotherSolution) {
  action->SetSolution(WriteSolution());
  OpenOn();
  user.Queue(DrivenUser::Picker::File, WriteSolution("Other.sln", {{"Else", kGone}}));
  EXPECT_EQ(Of<TButtonEdit>(kSolutionPage, "txtSolution").UserPressButton(0), TUserAnswer::Done);
  EXPECT_TRUE(Box("cbIncludeVerInfo").Checked());
  EXPECT_EQ(Ticks(kPage), (Texts{"x Else"}));
}

TEST_F(VersionPage, TakesOtherNamesAndKeepsTheirTicksWhileProjectsAreSelected) {
  action->SetSolution(WriteSolution());
  Settings().applyResourceInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Settings().resourceSelectedProjects = TStringList({kTool, kLibrary});
  Open();
  Page().SelectedProjectsChanged(TStringList({"New", "Tool"}));
  EXPECT_EQ(Ticks(kPage), (Texts{"- New", "x Tool"}));
}

TEST_F(VersionPage, TakesOtherNamesAndTicksThemWhileAllAreChosen) {
  action->SetSolution(WriteSolution());
  Open();
  Page().SelectedProjectsChanged(TStringList({"New", "Tool"}));
  EXPECT_EQ(Ticks(kPage), (Texts{"x New", "x Tool"}));
}

TEST_F(VersionPage, AnswersAsVersionInformation) {
  Open();
  const auto info = Query<IQXVC7VersionInfo>(&dialog->Page(kPage));
  ASSERT_TRUE(info);
  info->SetMajorVer(1);
  info->SetMinorVer(2);
  info->SetReleaseVer(3);
  info->SetBuildVer(4);
  info->SetCodePage(1200);
  info->SetLocale(0x0409);
  info->SetIsDebug(true);
  info->SetIsDLL(true);
  info->SetIsPreRelease(true);
  info->SetIsPrivate(true);
  info->SetIsSpecial(true);
  info->SetIncludeCompileDate(true);
  info->SetVersionInfoKeys("FileVersion=\r\n");
  EXPECT_EQ(info->GetMajorVer(), 1);
  EXPECT_EQ(info->GetMinorVer(), 2);
  EXPECT_EQ(info->GetReleaseVer(), 3);
  EXPECT_EQ(info->GetBuildVer(), 4);
  EXPECT_EQ(info->GetCodePage(), 1200);
  EXPECT_EQ(info->GetLocale(), 0x0409);
  EXPECT_TRUE(info->GetIsDebug() && info->GetIsDLL() && info->GetIsPreRelease() && info->GetIsPrivate() &&
              info->GetIsSpecial() && info->GetIncludeCompileDate());
  EXPECT_EQ(info->GetVersionInfoKeys(), "FileVersion=1.2.3.4\r\n");
  Page().SetSelectedVI(true);
  EXPECT_TRUE(Page().GetSelectedVI());
  EXPECT_TRUE(On("cbDLL"));
  Page().ProjectChanged();
}

}  // namespace
}  // namespace qx
