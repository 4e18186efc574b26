// The page "Solution" of "Build VS.Net Solution": which solution is built, in which configuration, by which
// Visual Studio, and all of it or chosen projects. It opens the solution while the user edits and tells the
// action's other pages about it.
#pragma once

#include <string>
#include <vector>

#include "pages/Page.h"
#include "pages/ProjectCheckList.h"
#include "plugin/Qxpageadvice.h"

namespace qx {

struct VSDotNetSettings;

class TVSDotNetProjectFrame final : public Page<TFrameAnswering<IQXPageAdvice>> {
 public:
  TVSDotNetProjectFrame();
  static const TFrameClass& Class();

  std::string PageName() const override { return "Solution"; }
  int GetHelpContext() const override { return 1300; }
  // Both take a TQXVSDotNetAction and raise Exception for anything else. Reading opens the solution.
  void ReadActionData(TPersistent& object) override;
  void WriteActionData(TPersistent& object) override;

  // The solution's file is missing, as it was when the user left it last.
  std::string WhatIsWrongWith(const TControl& control) override;
  // Does for a solution that was typed what the refresh button does; offers its format's version.
  PageOffer TextWasLeft(TControl& control) override;
  // Projects that this page and its neighbours hold cannot be shown, and are written as they are shown.
  std::string QuestionBeforeWriting() override;

 private:
  struct Expansion {
    std::string path;
    std::string error;  // why the text could not be expanded; empty: it could
  };
  Expansion ExpandSolution() const;
  void Refresh();
  void RefreshConfigs(bool changed, const std::string& file);
  void RefreshKeepingConfiguration(const std::string& file);
  void NotifyFrames(bool changed, IVSDotNetSolution& solution);
  void EnableProjects(bool enabled);

  void txtSolutionButtonClick();
  void cboVSVersionChange();
  void optBuildSelectedProjectsClick();
  void lstProjectsClickCheck();

  // Stored selections, as they were read.
  struct Selection {
    const char* what;
    int count;
  };
  static std::vector<Selection> StoredSelections(const VSDotNetSettings& settings);
  std::vector<Selection> selections_;
  std::string missing_;  // the text whose file was not there

  TLabel& grpSolution_ = Heading("grpSolution", "Solution");
  TLabel& lblSolution_ = Add<TLabel>("lblSolution", "Solution File :");
  TButtonEdit& txtSolution_ = Beside<TButtonEdit>(lblSolution_, 0, "txtSolution");
  TLabel& lblConfigs_ = Add<TLabel>("lblConfigs", "Configuration :");
  TComboBox& cboConfigs_ = Beside<TComboBox>(lblConfigs_, 1, "cboConfigs");
  TLabel& lblVSVersion_ = Add<TLabel>("lblVSVersion", "VS.NET Version :");
  TComboBox& cboVSVersion_ = Beside<TComboBox>(lblVSVersion_, 2, "cboVSVersion");
  TCheckBox& chkUseMSBuild_ = Beside<TCheckBox>(cboVSVersion_, 8, "chkUseMSBuild", "Use MSBuild");

  TLabel& grpOptions_ = Heading("grpOptions", "Options");
  TLabel& lblAction_ = Add<TLabel>("lblAction", "Action :");
  TComboBox& cboAction_ = Beside<TComboBox>(lblAction_, 3, "cboAction");
  TCheckBox& chkUseEnv_ = Stop<TCheckBox>(4, "chkUseEnv", "Use Environment Variables for C++ Paths");

  TLabel& grpApplyTo_ = Heading("grpApplyTo", "Apply to Project");
  TRadioButton& optBuildAllProjects_ =
      Stop<TRadioButton>(5, "optBuildAllProjects", "All Projects in Solution");
  TRadioButton& optBuildSelectedProjects_ =
      Stop<TRadioButton>(6, "optBuildSelectedProjects", "Selected Projects");
  TButton& btnCheckall_ = Stop<TButton>(9, "btnCheckall", "Check All");
  TButton& btnUncheckAll_ = Beside<TButton>(btnCheckall_, 10, "btnUncheckAll", "Uncheck All");
  TCheckListBox& lstProjects_ = Stop<TCheckListBox>(7, "lstProjects");

  ProjectCheckList projects_{lstProjects_};
};

}  // namespace qx
