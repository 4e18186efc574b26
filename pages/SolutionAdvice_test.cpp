#include "pages/PagesFixture.h"
#include "plugin/Qxpageadvice.h"

namespace qx {
namespace {

// A page tells what depends on a typed path only to who asks.
class SolutionAdvice : public PagesFixture {
 protected:
  VSDotNetSettings& Settings() { return action->Settings(); }
  TComboBox& Configs() { return Of<TComboBox>(kSolutionPage, "cboConfigs"); }
  TComboBox& Versions() { return Of<TComboBox>(kSolutionPage, "cboVSVersion"); }
  TButtonEdit& File() { return Of<TButtonEdit>(kSolutionPage, "txtSolution"); }
  TCheckListBox& List() { return Of<TCheckListBox>(kSolutionPage, "lstProjects"); }
  IQXPageAdvice& Advice() { return dynamic_cast<IQXPageAdvice&>(dialog->Page(kSolutionPage)); }
  PageOffer Type(const std::string& text) {
    EXPECT_EQ(File().UserType(text), TUserAnswer::Done);
    return Advice().TextWasLeft(File());
  }
};

TEST_F(SolutionAdvice, FillsTheListsFromATypedPath) {
  Open();
  Type(WriteSolution());
  EXPECT_EQ(Configs().Count(), 2);
  EXPECT_EQ(List().Count(), 3);
  EXPECT_EQ(Advice().WhatIsWrongWith(File()), "");
}

TEST_F(SolutionAdvice, TellsQuietlyThatATypedFileIsMissing) {
  action->SetSolution(WriteSolution());
  Open();
  const std::string missing = folder / "Missing.sln";
  EXPECT_EQ(Type(missing).question, "");
  EXPECT_EQ(Shown(), Texts{});
  EXPECT_EQ(List().Count(), 3);
  EXPECT_EQ(Advice().WhatIsWrongWith(File()), "Solution File not found: " + missing);
  EXPECT_EQ(Advice().WhatIsWrongWith(Configs()), "");
  EXPECT_EQ(File().UserType("else"), TUserAnswer::Done);
  EXPECT_EQ(Advice().WhatIsWrongWith(File()), "");
}

TEST_F(SolutionAdvice, OffersTheVersionOfTheSolutionsFormat) {
  Settings().vstudioVersion = TVSDotNetVersion::vs2002;
  Open();
  const PageOffer offer = Type(WriteSolution());
  EXPECT_EQ(offer.question.rfind("The solution is of format ", 0), 0u) << offer.question;
  EXPECT_EQ(Versions().ItemIndex(), 0);
  offer.accept();
  EXPECT_NE(Versions().ItemIndex(), 0);
  EXPECT_EQ(Advice().TextWasLeft(File()).question, "");
}

TEST_F(SolutionAdvice, AsksBeforeSelectionsAreEmptied) {
  Settings().buildType = TVSDotNetBuildType::btSelectedProjects;
  Settings().selectedProjects = TStringList({kTool, kProgram});
  Settings().applyResourceInfoTo = TVSDotNetBuildType::btSelectedProjects;
  Settings().resourceSelectedProjects = TStringList({kTool});
  action->SetSolution(folder / "Missing.sln");
  Open();
  EXPECT_EQ(Advice().QuestionBeforeWriting(),
            "The projects of this solution cannot be listed: " + (folder / "Missing.sln") +
                "\n\nWhat is written now empties the projects that were selected (2 to build, 1 for Version "
                "Info). Write it all the same?");
  Type(WriteSolution());
  EXPECT_EQ(Advice().QuestionBeforeWriting(), "");
}

TEST_F(SolutionAdvice, AsksNothingWhereNothingIsLost) {
  action->SetSolution(folder / "Missing.sln");
  Open();
  EXPECT_EQ(Advice().QuestionBeforeWriting(), "");
}

}  // namespace
}  // namespace qx
