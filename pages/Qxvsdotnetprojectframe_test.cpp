#include "pages/Qxvsdotnetprojectframe.h"

#include "actions/Qxmstestaction.h"
#include "pages/PagesFixture.h"

namespace qx {
namespace {

class SolutionPage : public PagesFixture {
 protected:
  VSDotNetSettings& Settings() { return action->Settings(); }
  TComboBox& Configs() { return Of<TComboBox>(kSolutionPage, "cboConfigs"); }
  TComboBox& Versions() { return Of<TComboBox>(kSolutionPage, "cboVSVersion"); }
  TButtonEdit& File() { return Of<TButtonEdit>(kSolutionPage, "txtSolution"); }
  TCheckBox& UseMSBuild() { return Of<TCheckBox>(kSolutionPage, "chkUseMSBuild"); }
  TCheckListBox& List(int page = kSolutionPage) { return Of<TCheckListBox>(page, "lstProjects"); }
  TUserAnswer Click(const char* name) { return Any(kSolutionPage, name).UserClick(); }
  void Browse() { EXPECT_EQ(File().UserPressButton(0), TUserAnswer::Done); }
  void Refresh() { EXPECT_EQ(File().UserPressButton(1), TUserAnswer::Done); }
  bool StampsAssemblyInfo() { return Of<TCheckBox>(kAssemblyPage, "chkUpdateAssemblyInfo").Checked(); }

  void OpenApp() {
    action->SetSolution(WriteSolution());
    Open();
  }
  void OpenSelected(const TStringList& identifiers) {
    Settings().buildType = TVSDotNetBuildType::btSelectedProjects;
    Settings().selectedProjects = identifiers;
    OpenApp();
  }
};

TEST_F(SolutionPage, IsThePageOfTheBuildActionOnly) {
  TVSDotNetProjectFrame page;
  EXPECT_EQ(page.PageName(), "Solution");
  EXPECT_EQ(page.GetHelpContext(), 1300);
  const auto other = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  EXPECT_EQ(MessageOf([&] { page.ReadActionData(*other); }), "Invalid class typecast");
  EXPECT_EQ(MessageOf([&] { page.WriteActionData(*other); }), "Invalid class typecast");
}

TEST_F(SolutionPage, ShowsWhatTheActionHas) {
  Settings().solutionConfiguration = "Release|Win32";
  Settings().useEnv = true;
  Settings().vstudioVersion = TVSDotNetVersion::vs2005;
  Settings().useMSBuild = true;
  Settings().buildAction = TVSDotNetBuildAction::baClean;
  OpenSelected(TStringList({kTool}));
  EXPECT_EQ(File().Text(), folder / "App.sln");
  EXPECT_EQ(Configs().Items(), (Texts{"Debug|Win32", "Release|Win32"}));
  EXPECT_EQ(Configs().Text(), "Release|Win32");
  EXPECT_TRUE(Of<TCheckBox>(kSolutionPage, "chkUseEnv").Checked());
  EXPECT_EQ(Versions().ItemIndex(), 2);
  EXPECT_TRUE(UseMSBuild().Checked());
  EXPECT_TRUE(UseMSBuild().IsEnabled());
  EXPECT_EQ(Of<TComboBox>(kSolutionPage, "cboAction").Text(), "Clean");
  EXPECT_TRUE(Of<TRadioButton>(kSolutionPage, "optBuildSelectedProjects").Checked());
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"- Library", "- Program", "x Tool"}));
  EXPECT_EQ(Shown(), Texts{});
}

TEST_F(SolutionPage, TicksEverythingWhenEverythingIsBuilt) {
  Settings().selectedProjects = TStringList({kTool});
  OpenApp();
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Library", "x Program", "x Tool"}));
}

TEST_F(SolutionPage, OffersMSBuildFor2005OnlyAndKeepsItsTick) {
  Settings().useMSBuild = true;
  for (const TVSDotNetVersion version : {TVSDotNetVersion::vs2002, TVSDotNetVersion::vs2003}) {
    Settings().vstudioVersion = version;
    Open();
    EXPECT_FALSE(UseMSBuild().IsEnabled());
    EXPECT_TRUE(UseMSBuild().Checked());
  }
  Settings().vstudioVersion = TVSDotNetVersion::vs2005;
  Settings().useMSBuild = false;
  Open();
  EXPECT_TRUE(UseMSBuild().IsEnabled());
  EXPECT_FALSE(UseMSBuild().Checked());
}

TEST_F(SolutionPage, WithoutASolutionShowsNothingAndKeepsTheConfiguration) {
  Settings().solutionConfiguration = "Nightly";
  Open();
  EXPECT_EQ(Shown(), Texts{});
  EXPECT_EQ(Configs().Text(), "Nightly");
  EXPECT_EQ(Configs().Count(), 0);
  Refresh();
  EXPECT_EQ(Shown(), Texts{});
  EXPECT_EQ(Configs().Text(), "Nightly");
}

TEST_F(SolutionPage, SaysThatTheSolutionIsMissing) {
  variables.SetProject("ROOT", folder.Path());
  action->SetSolution("%ROOT%Missing.sln");
  Open();
  EXPECT_EQ(Shown(), (Texts{"message: Solution File not found!"}));
  EXPECT_EQ(Configs().Count(), 0);
  EXPECT_EQ(List().Count(), 0);
}

TEST_F(SolutionPage, ExpandsTheSolutionAndShowsItAsWritten) {
  WriteSolution();
  variables.SetProject("ROOT", "%OUTER%");
  variables.SetProject("OUTER", folder.Path());
  action->SetSolution("%ROOT%App.sln");
  Open();
  EXPECT_EQ(File().Text(), "%ROOT%App.sln");
  EXPECT_EQ(List().Count(), 3);
}

TEST_F(SolutionPage, SaysWhyATextCannotBeExpandedAndLosesNothing) {
  action->SetSolution("%NOWHERE%\\App.sln");
  Settings().solutionConfiguration = "Nightly";
  Settings().buildAction = TVSDotNetBuildAction::baDeploy;
  Open();
  EXPECT_EQ(Shown(), (Texts{"error: Error opening project: Undefined variable : NOWHERE"}));
  Write();
  EXPECT_EQ(Settings().solutionConfiguration, "Nightly");
  EXPECT_EQ(Settings().buildAction, TVSDotNetBuildAction::baDeploy);
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  EXPECT_EQ(Shown(), Texts{});
}

TEST_F(SolutionPage, ShowsAStoredConfigurationThatTheSolutionLacks) {
  Settings().solutionConfiguration = "Nightly";
  OpenApp();
  EXPECT_EQ(Configs().Text(), "Nightly");
  EXPECT_EQ(Configs().ItemIndex(), -1);
}

TEST_F(SolutionPage, SelectsTheFirstConfigurationWhenNoneIsStored) {
  OpenApp();
  EXPECT_EQ(Configs().Text(), "Debug|Win32");
  EXPECT_EQ(Configs().ItemIndex(), 0);
}

TEST_F(SolutionPage, BearsASolutionWithoutConfigurations) {
  action->SetSolution(WriteSolution("Bare.sln", {{"Library", kLibrary}}, {}));
  Open();
  EXPECT_EQ(Configs().Text(), "");
  EXPECT_EQ(Configs().Count(), 0);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Library"}));
}

TEST_F(SolutionPage, FindsSelectedProjectsInAnyLetterCaseAndDropsUnknownOnes) {
  OpenSelected(TStringList({kGone, "{aaaaaaaa-0000-0000-0000-00000000000A}"}));
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Library", "- Program", "- Tool"}));
  EXPECT_EQ(Shown(), Texts{});
  Write();
  EXPECT_EQ(Settings().selectedProjects, TStringList({kLibrary}));
}

// On all three pages: what is not shown is not written.
TEST_F(SolutionPage, WithoutTheSolutionsFileWritesEmptyLists) {
  action->SetSolution(folder / "Missing.sln");
  Settings().buildType = TVSDotNetBuildType::btSelectedProjects;
  Settings().applyAssemblyInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Settings().applyResourceInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Settings().selectedProjects = TStringList({kLibrary});
  Settings().assemblySelectedProjects = TStringList({kLibrary});
  Settings().resourceSelectedProjects = TStringList({kLibrary});
  Open();
  Write();
  EXPECT_EQ(Settings().selectedProjects, TStringList());
  EXPECT_EQ(Settings().assemblySelectedProjects, TStringList());
  EXPECT_EQ(Settings().resourceSelectedProjects, TStringList());
}

TEST_F(SolutionPage, WritesEveryControl) {
  Open();
  EXPECT_EQ(File().UserType("%ROOT%\\Other.sln"), TUserAnswer::Done);
  EXPECT_EQ(Click("chkUseEnv"), TUserAnswer::Done);
  EXPECT_EQ(Versions().UserSelect(0), TUserAnswer::Done);
  EXPECT_EQ(Configs().UserType("%CONFIGURATION%"), TUserAnswer::Done);
  EXPECT_EQ(Of<TComboBox>(kSolutionPage, "cboAction").UserSelect(1), TUserAnswer::Done);
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  Write();
  EXPECT_EQ(action->GetSolution(), "%ROOT%\\Other.sln");
  EXPECT_TRUE(Settings().useEnv);
  EXPECT_EQ(Settings().vstudioVersion, TVSDotNetVersion::vs2002);
  EXPECT_EQ(Settings().solutionConfiguration, "%CONFIGURATION%");
  EXPECT_EQ(Settings().buildAction, TVSDotNetBuildAction::baRebuild);
  EXPECT_EQ(Settings().buildType, TVSDotNetBuildType::btSelectedProjects);
  EXPECT_EQ(Settings().selectedProjects.Count(), 0);
}

TEST_F(SolutionPage, WritesTheTickedProjectsInTheListsOrder) {
  OpenSelected(TStringList({kTool, kProgram}));
  EXPECT_EQ(List().UserTick(0, true), TUserAnswer::Done);
  EXPECT_EQ(List().UserTick(1, false), TUserAnswer::Done);
  Write();
  EXPECT_EQ(Settings().selectedProjects, TStringList({kLibrary, kTool}));
}

TEST_F(SolutionPage, KeepsTicksWhileAllAreBuiltButWritesNone) {
  OpenSelected(TStringList({kTool}));
  EXPECT_EQ(Click("optBuildAllProjects"), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"- Library", "- Program", "x Tool"}));
  Write();
  EXPECT_EQ(Settings().buildType, TVSDotNetBuildType::btAllProjects);
  EXPECT_EQ(Settings().selectedProjects.Count(), 0);
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"- Library", "- Program", "x Tool"}));
}

TEST_F(SolutionPage, EnablesTheListAndItsButtonsForSelectedProjectsOnly) {
  const auto expectEnabled = [&](bool enabled) {
    for (const char* name : {"lstProjects", "btnCheckall", "btnUncheckAll"})
      EXPECT_EQ(Enabled(kSolutionPage, name), enabled) << name;
  };
  OpenApp();
  expectEnabled(false);
  EXPECT_EQ(List().UserTick(0, false), TUserAnswer::Disabled);
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  expectEnabled(true);
  EXPECT_EQ(Click("optBuildAllProjects"), TUserAnswer::Done);
  expectEnabled(false);
  OpenSelected({});
  expectEnabled(true);
}

TEST_F(SolutionPage, ChecksAndUnchecksAll) {
  OpenSelected(TStringList({kTool}));
  EXPECT_EQ(Click("btnCheckall"), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Library", "x Program", "x Tool"}));
  EXPECT_EQ(Click("btnUncheckAll"), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"- Library", "- Program", "- Tool"}));
}

TEST_F(SolutionPage, ReadsNothingWhenAButtonTicks) {
  OpenSelected({});
  RemoveFile(folder / "App.sln");
  EXPECT_EQ(Click("btnCheckall"), TUserAnswer::Done);
  EXPECT_EQ(Shown(), Texts{});
}

TEST_F(SolutionPage, TicksMSBuildWhenever2005IsChosen) {
  Open();
  EXPECT_EQ(Versions().UserSelect(2), TUserAnswer::Done);
  EXPECT_TRUE(UseMSBuild().Checked());
  EXPECT_TRUE(UseMSBuild().IsEnabled());
  EXPECT_EQ(Versions().UserSelect(1), TUserAnswer::Done);
  EXPECT_TRUE(UseMSBuild().Checked());
  EXPECT_FALSE(UseMSBuild().IsEnabled());
  EXPECT_EQ(UseMSBuild().UserClick(), TUserAnswer::Disabled);
  Write();
  EXPECT_EQ(Settings().vstudioVersion, TVSDotNetVersion::vs2003);
  EXPECT_TRUE(Settings().useMSBuild);
}

TEST_F(SolutionPage, KeepsAVersionThatItsListDoesNotHave) {
  Settings().vstudioVersion = static_cast<TVSDotNetVersion>(7);
  Open();
  EXPECT_EQ(Versions().ItemIndex(), -1);
  EXPECT_FALSE(UseMSBuild().IsEnabled());
  Write();
  EXPECT_EQ(Settings().vstudioVersion, static_cast<TVSDotNetVersion>(7));
}

TEST_F(SolutionPage, KeepsABuildActionThatItsListDoesNotHave) {
  Settings().buildAction = static_cast<TVSDotNetBuildAction>(9);
  OpenApp();
  EXPECT_EQ(Of<TComboBox>(kSolutionPage, "cboAction").ItemIndex(), -1);
  Write();
  EXPECT_EQ(Settings().buildAction, static_cast<TVSDotNetBuildAction>(9));
}

// Ticked as new at the first reading, by the rule at every later one.
TEST_F(SolutionPage, TicksEverythingAtEachReadingWhenEverythingIsBuilt) {
  OpenApp();
  for (const int page : {kSolutionPage, kAssemblyPage, kVersionPage}) {
    List(page).SetChecked(1, false);
    dialog->Page(page).ReadActionData(*action);
    EXPECT_EQ(Ticks(page), (Texts{"x Library", "x Program", "x Tool"})) << page;
  }
}

TEST_F(SolutionPage, BrowsesFromTheExpandedPath) {
  const std::string file = WriteSolution();
  variables.SetProject("ROOT", folder.Path());
  action->SetSolution("%ROOT%App.sln");
  Open();
  Browse();
  const Json shown = user.TakeShown();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0]["kind"], "file");
  EXPECT_EQ(shown[0]["title"], "Select Solution");
  EXPECT_EQ(shown[0]["filter"], "Visual Studio.Net Solutions(*.sln)|*.sln");
  EXPECT_EQ(shown[0]["path"], file);
  EXPECT_EQ(File().Text(), "%ROOT%App.sln");  // cancelled
  EXPECT_EQ(File().buttons.at(0).hint, "");
  EXPECT_EQ(File().buttons.at(1).hint, "Refresh Configuration List");
}

TEST_F(SolutionPage, BrowsesFromATextThatCannotBeExpandedAsItStands) {
  action->SetSolution("%NOWHERE%\\App.sln");
  Open();
  user.TakeShown();
  const std::string file = WriteSolution();
  user.Queue(DrivenUser::Picker::File, file);
  Browse();
  const Json shown = user.TakeShown();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0]["path"], "%NOWHERE%\\App.sln");
  EXPECT_EQ(File().Text(), file);
  EXPECT_EQ(List().Count(), 3);
}

TEST_F(SolutionPage, OpensTheSolutionThatWasPicked) {
  OpenApp();
  const std::string other = WriteSolution("Other.sln", {{"Else", kGone}}, {"Checked"});
  user.Queue(DrivenUser::Picker::File, other);
  Browse();
  EXPECT_EQ(File().Text(), other);
  EXPECT_EQ(Configs().Items(), (Texts{"Checked"}));
  for (const int page : {kSolutionPage, kAssemblyPage, kVersionPage})
    EXPECT_EQ(Ticks(page), (Texts{"x Else"}));
}

TEST_F(SolutionPage, TellsItsSiblingsWhetherAnotherFileWasPicked) {
  Settings().updateAssemblyInfo = true;
  OpenApp();
  user.Queue(DrivenUser::Picker::File, folder / "App.sln");
  Browse();
  EXPECT_TRUE(StampsAssemblyInfo());
  Refresh();
  EXPECT_TRUE(StampsAssemblyInfo());
  // A mere letter's case makes it another file.
  WriteSolution("APP.sln", {{"Library", kLibrary}});
  user.Queue(DrivenUser::Picker::File, folder / "APP.sln");
  Browse();
  EXPECT_FALSE(StampsAssemblyInfo());
}

TEST_F(SolutionPage, TakesTheFileOfAVariableForTheSameFile) {
  WriteSolution();
  Settings().updateAssemblyInfo = true;
  variables.SetProject("ROOT", folder.Path());
  action->SetSolution("%ROOT%App.sln");
  Open();
  user.Queue(DrivenUser::Picker::File, folder / "App.sln");
  Browse();
  EXPECT_TRUE(StampsAssemblyInfo());
}

TEST_F(SolutionPage, RefreshesFromTheChangedFile) {
  OpenSelected(TStringList({kTool}));
  WriteSolution("App.sln", {{"Tool", kTool}, {"Library", kLibrary}, {"New", kGone}},
                {"Checked", "debug|win32"});
  Refresh();
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Tool", "- Library", "x New"}));
  EXPECT_EQ(Configs().Items(), (Texts{"Checked", "debug|win32"}));
  EXPECT_EQ(Configs().Text(), "debug|win32");  // the one that was shown, as the file writes it now
  EXPECT_EQ(Settings().selectedProjects, TStringList({kTool}));  // until the page is written
  Write();
  EXPECT_EQ(Settings().selectedProjects, TStringList({kTool, kGone}));
}

TEST_F(SolutionPage, ShowsNoConfigurationAfterARefreshThatFindsNotItsOwn) {
  OpenApp();
  EXPECT_EQ(Configs().UserType("Nightly"), TUserAnswer::Done);
  Refresh();
  EXPECT_EQ(Configs().ItemIndex(), -1);
  EXPECT_EQ(Configs().Text(), "");
  Refresh();  // now there is none to remember
  EXPECT_EQ(Configs().Text(), "Debug|Win32");
}

TEST_F(SolutionPage, ChangesNothingWhenARefreshMissesTheFile) {
  OpenApp();
  RemoveFile(folder / "App.sln");
  Refresh();
  EXPECT_EQ(Shown(), (Texts{"message: Solution File not found!"}));
  EXPECT_EQ(Configs().Count(), 2);
  EXPECT_EQ(List().Count(), 3);
}

TEST_F(SolutionPage, SaysWhyASolutionCannotBeOpened) {
  OpenApp();
  EXPECT_EQ(Configs().UserType("Nightly"), TUserAnswer::Done);
  folder.Write("App.sln", "Something else\r\n");
  Refresh();
  EXPECT_EQ(Shown(), (Texts{"error: Error opening project: Invalid Solution File Format : Something else"}));
  EXPECT_EQ(Configs().Count(), 0);
  EXPECT_EQ(Configs().Text(), "Nightly");
  for (const int page : {kSolutionPage, kAssemblyPage, kVersionPage}) EXPECT_EQ(List(page).Count(), 3);
}

TEST_F(SolutionPage, ReadsTheSolutionAnewWhenSelectedProjectsAreChosen) {
  OpenApp();
  EXPECT_EQ(Configs().UserType("Nightly"), TUserAnswer::Done);
  WriteSolution("App.sln", {{"New", kGone}}, {"Checked"});
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x New"}));
  EXPECT_EQ(Ticks(kVersionPage), (Texts{"x New"}));
  EXPECT_EQ(Configs().Items(), (Texts{"Checked"}));
  EXPECT_EQ(Configs().Text(), "Nightly");
}

TEST_F(SolutionPage, SaysNothingOfAMissingFileWhenSelectedProjectsAreChosen) {
  OpenApp();
  RemoveFile(folder / "App.sln");
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  EXPECT_EQ(Shown(), Texts{});
  EXPECT_EQ(List().Count(), 3);
  EXPECT_TRUE(List().IsEnabled());
}

TEST_F(SolutionPage, ReadsTheSolutionAnewOnEveryTick) {
  OpenSelected({});
  EXPECT_EQ(Configs().UserType("Nightly"), TUserAnswer::Done);
  WriteSolution("App.sln", {{"Library", kLibrary}, {"New", kGone}}, {"Checked"});
  EXPECT_EQ(List().UserTick(0, true), TUserAnswer::Done);
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Library", "x New"}));
  EXPECT_EQ(Ticks(kAssemblyPage), (Texts{"x Library", "x New"}));
  EXPECT_EQ(Configs().Text(), "Nightly");
  EXPECT_TRUE(List().IsEnabled());
}

TEST_F(SolutionPage, LeavesStampingOnAtAClickOrATick) {
  Settings().updateAssemblyInfo = true;
  OpenApp();
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  EXPECT_TRUE(StampsAssemblyInfo());
  EXPECT_EQ(List().UserTick(0, false), TUserAnswer::Done);
  EXPECT_TRUE(StampsAssemblyInfo());
}

TEST_F(SolutionPage, SelectsAConfigurationAtAClickOrATickWhenNoneWasTyped) {
  OpenApp();
  EXPECT_EQ(Configs().UserType(""), TUserAnswer::Done);
  EXPECT_EQ(Click("optBuildSelectedProjects"), TUserAnswer::Done);
  EXPECT_EQ(Configs().Text(), "Debug|Win32");
  EXPECT_EQ(Configs().UserType(""), TUserAnswer::Done);
  EXPECT_EQ(List().UserTick(0, false), TUserAnswer::Done);
  EXPECT_EQ(Configs().Text(), "Debug|Win32");
}

TEST_F(SolutionPage, EndsATickWithoutItsFileInTheErrorDialog) {
  OpenSelected({});
  RemoveFile(folder / "App.sln");
  EXPECT_EQ(List().UserTick(0, true), TUserAnswer::Done);
  const Texts shown = Shown();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_TRUE(shown[0].starts_with("error: Error opening project: Cannot read ")) << shown[0];
  EXPECT_NE(shown[0].find("App.sln"), std::string::npos);
}

TEST_F(SolutionPage, ReadsNothingOnATickWithoutASolution) {
  OpenSelected({});
  EXPECT_EQ(File().UserType(""), TUserAnswer::Done);
  EXPECT_EQ(List().UserTick(0, true), TUserAnswer::Done);
  EXPECT_EQ(Shown(), Texts{});
  EXPECT_EQ(Ticks(kSolutionPage), (Texts{"x Library", "- Program", "- Tool"}));
}

TEST_F(SolutionPage, TellsThoseSiblingsThatAskForSolutions) {
  registered.pages.insert(registered.pages.begin(), &PlainPage());
  OpenApp();
  EXPECT_EQ(List(1 + kAssemblyPage).Count(), 3);
  EXPECT_EQ(List(1 + kVersionPage).Count(), 3);
}

TEST_F(SolutionPage, StandsAloneToo) {
  registered.pages = {&TVSDotNetProjectFrame::Class()};
  OpenApp();
  EXPECT_EQ(List().Count(), 3);
  TVSDotNetProjectFrame page;  // in no dialog at all
  page.ReadActionData(*action);
  EXPECT_EQ(dynamic_cast<TCheckListBox&>(*page.FindControl("lstProjects")).Count(), 3);
}

}  // namespace
}  // namespace qx
