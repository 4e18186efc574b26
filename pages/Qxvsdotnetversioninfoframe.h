// The page "Version Info" of "Build VS.Net Solution": the values of the version resource that the action
// writes into C++ projects, and the projects this is done for. The values can be read from it, and set, like
// those of a resource script.
#pragma once

#include <array>
#include <string>

#include "actions/Qxvsdotnetaction.h"
#include "pages/Page.h"
#include "pages/ProjectCheckList.h"

namespace qx {

class TVC7VersionInfoFrame final : public Page<TFrameAnswering<IVSDotNetPropertyPage, IQXVC7VersionInfo>> {
 public:
  TVC7VersionInfoFrame();
  static const TFrameClass& Class();

  std::string PageName() const override { return "Version Info"; }
  int GetHelpContext() const override { return 1300; }
  void InitFrame() override { cbIncludeVerInfoClick(); }
  // Both take a TQXVSDotNetAction and raise Exception for anything else. Writing raises "'TEXT' is not a
  // valid integer value" for such a code page, when all that stands above it on the page is written.
  void ReadActionData(TPersistent& object) override;
  void WriteActionData(TPersistent& object) override;
  // Another solution leaves the stamping switched on, unlike on the page of the AssemblyInfo files.
  void UpdateSolution(bool changed, IVSDotNetSolution& solution) override;

  // IQXVC7VersionInfo over the controls. Numbers are held to the controls' ranges; a language that the host
  // does not know selects none, and none reads as what the host's table gives for the index -1.
  std::int32_t GetBuildVer() override { return spBuildNo_.Value(); }
  std::int32_t GetCodePage() override;  // raises Exception when the text is no integer
  bool GetIsDebug() override { return cbDebugBuild_.Checked(); }
  bool GetIsDLL() override { return cbDLL_.Checked(); }
  bool GetIsPreRelease() override { return cbPreRelease_.Checked(); }
  bool GetIsPrivate() override { return cbPrivateBuild_.Checked(); }
  bool GetIsSpecial() override { return cbSpecialBuild_.Checked(); }
  std::int32_t GetLocale() override;
  std::int32_t GetMajorVer() override { return spMajorVer_.Value(); }
  std::int32_t GetMinorVer() override { return spMinorVer_.Value(); }
  std::int32_t GetReleaseVer() override { return spReleaseVer_.Value(); }
  std::string GetVersionInfoKeys() override;  // the rows that have a key
  void SetBuildVer(std::int32_t value) override { spBuildNo_.SetValue(value); }
  void SetCodePage(std::int32_t value) override { txtCodePage_.SetText(std::to_string(value)); }
  void SetIsDebug(bool value) override { cbDebugBuild_.SetChecked(value); }
  void SetIsDLL(bool value) override { cbDLL_.SetChecked(value); }
  void SetIsPreRelease(bool value) override { cbPreRelease_.SetChecked(value); }
  void SetIsPrivate(bool value) override { cbPrivateBuild_.SetChecked(value); }
  void SetIsSpecial(bool value) override { cbSpecialBuild_.SetChecked(value); }
  void SetLocale(std::int32_t value) override;
  void SetMajorVer(std::int32_t value) override { spMajorVer_.SetValue(value); }
  void SetMinorVer(std::int32_t value) override { spMinorVer_.SetValue(value); }
  void SetReleaseVer(std::int32_t value) override { spReleaseVer_.SetValue(value); }
  void SetVersionInfoKeys(const std::string& value) override;
  bool GetIncludeCompileDate() override { return chkIncludeDate_.Checked(); }
  void SetIncludeCompileDate(bool value) override { chkIncludeDate_.SetChecked(value); }

  // Whether version information is stamped at all.
  bool GetSelectedVI() const { return cbIncludeVerInfo_.Checked(); }
  void SetSelectedVI(bool value) { cbIncludeVerInfo_.SetChecked(value); }
  // Shows the first nineteen of "Key=Value" lines; rows that these do not reach stay as they are.
  void SetupVersionInfoKeys(const std::string& keys);
  // Puts these names in the place of the projects; ticks stay by name while selected projects are chosen,
  // else all are ticked.
  void SelectedProjectsChanged(const TStringList& names);
  void ProjectChanged() {}

 private:
  static constexpr int kGridRows = 20;  // with the heading row

  TSpinEdit& Number(TControl& before, int tabOrder, const char* name);
  void VersionNumberChange();

  void cbIncludeVerInfoClick();
  void cbLocaleChange();

  TCheckBox& cbIncludeVerInfo_ =
      Stop<TCheckBox>(0, "cbIncludeVerInfo", "Update &version information in project");
  TPanel& pnlVersionInfo_ = Stop<TPanel>(1, "pnlVersionInfo");

  TLabel& grpVersionNumber_ = Heading(pnlVersionInfo_, "grpVersionNumber", " Module version number ");
  TLabel& lblMajorVer_ = Add<TLabel>(pnlVersionInfo_, "lblMajorVer", "&Major");
  TSpinEdit& spMajorVer_ = Number(lblMajorVer_, 0, "spMajorVer");
  TLabel& lblMinorVer_ = Add<TLabel>(pnlVersionInfo_, "lblMinorVer", "Mi&nor");
  TSpinEdit& spMinorVer_ = Number(lblMinorVer_, 1, "spMinorVer");
  TLabel& lblReleaseVer_ = Add<TLabel>(pnlVersionInfo_, "lblReleaseVer", "&Release");
  TSpinEdit& spReleaseVer_ = Number(lblReleaseVer_, 2, "spReleaseVer");
  TLabel& lblBuildNo_ = Add<TLabel>(pnlVersionInfo_, "lblBuildNo", "&Build");
  TSpinEdit& spBuildNo_ = Number(lblBuildNo_, 3, "spBuildNo");
  TCheckBox& cbIncBuildNum_ = Stop<TCheckBox>(pnlVersionInfo_, 4, "cbIncBuildNum", "&Auto-increment");

  TLabel& grpAttributes_ = Heading(pnlVersionInfo_, "grpAttributes", "Module Attributes");
  TCheckBox& cbDebugBuild_ = Stop<TCheckBox>(pnlVersionInfo_, 5, "cbDebugBuild", "&Debug build");
  TCheckBox& cbSpecialBuild_ = Stop<TCheckBox>(pnlVersionInfo_, 6, "cbSpecialBuild", "&Special build");
  TCheckBox& cbDLL_ = Stop<TCheckBox>(pnlVersionInfo_, 7, "cbDLL", "D&LL");
  TCheckBox& cbPreRelease_ = Stop<TCheckBox>(pnlVersionInfo_, 8, "cbPreRelease", "Pre-r&elease ");
  TCheckBox& cbPrivateBuild_ = Stop<TCheckBox>(pnlVersionInfo_, 9, "cbPrivateBuild", "&Private build");

  TLabel& grpLanguage_ = Heading(pnlVersionInfo_, "grpLanguage", "Language");
  TLabel& lblLocale_ = Add<TLabel>(pnlVersionInfo_, "lblLocale", "Locale &ID:");
  TComboBox& cbLocale_ = Beside<TComboBox>(lblLocale_, 10, "cbLocale");
  TLabel& lblLocaleID_ = Add<TLabel>(pnlVersionInfo_, "lblLocaleID");
  TLabel& lblCodePage_ = Add<TLabel>(pnlVersionInfo_, "lblCodePage", "Code Page :");
  TEdit& txtCodePage_ = Beside<TEdit>(lblCodePage_, 11, "txtCodePage");

  TLabel& grpKeys_ = Heading(pnlVersionInfo_, "grpKeys", "Version Information");
  TStringGrid& VersionKeyGrid_ = Stop<TStringGrid>(pnlVersionInfo_, 12, "VersionKeyGrid");
  TCheckBox& chkIncludeDate_ =
      Stop<TCheckBox>(pnlVersionInfo_, 13, "chkIncludeDate", "Include Compile Date in Version Info");

  TGroupBox& grpApplyTo_ = Stop<TGroupBox>(pnlVersionInfo_, 14, "grpApplyTo", "Apply to projects");
  TRadioButton& optAllProjects_ = Stop<TRadioButton>(grpApplyTo_, 0, "optAllProjects", "All Projects");
  TRadioButton& optSelectedProjects_ =
      Stop<TRadioButton>(grpApplyTo_, 1, "optSelectedProjects", "Selected Projects");
  TCheckListBox& lstProjects_ = Stop<TCheckListBox>(grpApplyTo_, 2, "lstProjects");

  ProjectCheckList projects_{lstProjects_};
};

}  // namespace qx
