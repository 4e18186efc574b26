// The page "Assembly Info" of "Build VS.Net Solution": which attributes of the AssemblyInfo files are
// replaced and by what, the two versions, and the projects this is done for.
#pragma once

#include <array>
#include <string>

#include "actions/Qxvsdotnetaction.h"
#include "pages/Page.h"
#include "pages/ProjectCheckList.h"
#include "plugin/Qxpageadvice.h"

namespace qx {

class TVSDotNetAssemblyFrame final : public Page<TFrameAnswering<IVSDotNetPropertyPage, IQXPageAdvice>> {
 public:
  TVSDotNetAssemblyFrame();
  static const TFrameClass& Class();

  std::string PageName() const override { return "Assembly Info"; }
  int GetHelpContext() const override { return 1300; }
  // Both take a TQXVSDotNetAction and raise Exception for anything else. A version whose box is not ticked is
  // not written, and neither is the choice of projects while all are chosen: the action keeps its own.
  void ReadActionData(TPersistent& object) override;
  void WriteActionData(TPersistent& object) override;
  // A part of a version is no number.
  std::string WhatIsWrongWith(const TControl& control) override;
  PageOffer TextWasLeft(TControl&) override { return {}; }
  std::string QuestionBeforeWriting() override { return {}; }  // the solution's page asks for this one too
  // Another solution switches the stamping off until the user asks for it again.
  void UpdateSolution(bool changed, IVSDotNetSolution& solution) override;

 private:
  // A box and the text that replaces the attribute when it is ticked.
  struct AttributeRow {
    AssemblyAttribute attribute;
    TCheckBox& box;
    TEdit& text;
  };
  // Major, minor, build, revision.
  using VersionRow = std::array<TEdit*, 4>;

  AttributeRow Attribute(AssemblyAttribute attribute, int tabOrder, const char* boxName, const char* caption,
                         const char* textName);
  TLabel& Column(TLabel* before, const char* name, const char* caption);
  VersionRow Version(TControl& before, int tabOrder, const std::string& prefix);
  static void Split(const std::string& version, const VersionRow& row);
  static std::string Join(const VersionRow& row);
  static void Enable(const VersionRow& row, bool enabled);
  bool EditsFileVersion() const { return chkUpdateFileVersion_.Checked() && !chkLinkVersions_.Checked(); }
  void SetComponentsState(bool enabled);

  void chkUpdateAssemblyVersionClick();
  void chkUpdateFileVersionClick();

  TCheckBox& chkUpdateAssemblyInfo_ = Stop<TCheckBox>(0, "chkUpdateAssemblyInfo", "Update Assembly Info");

  using A = AssemblyAttribute;
  const std::array<AttributeRow, 6> attributes_{
      Attribute(A::Title, 1, "chkUpdateTitle", "Title", "txtAssemblyTitle"),
      Attribute(A::Description, 3, "chkUpdateDescription", "Description", "txtAssemblyDesc"),
      Attribute(A::Company, 5, "chkUpdateCompany", "Company", "txtAssemblyCompany"),
      Attribute(A::Product, 7, "chkUpdateProduct", "Product", "txtAssemblyProduct"),
      Attribute(A::Copyright, 9, "chkUpdateCopyRight", "Copyright", "txtAssemblyCopyright"),
      Attribute(A::Trademark, 11, "chkUpdateTrademark", "Trademark", "txtAssemblyTrademark")};

  TLabel& lblMajor_ = Column(nullptr, "lblMajor", "Major");
  TLabel& lblMinor_ = Column(&lblMajor_, "lblMinor", "Minor");
  TLabel& lblBuild_ = Column(&lblMinor_, "lblBuild", "Build");
  TLabel& lblRevision_ = Column(&lblBuild_, "lblRevision", "Revision");
  TCheckBox& chkUpdateAssemblyVersion_ = Stop<TCheckBox>(13, "chkUpdateAssemblyVersion", "Assembly Version");
  const VersionRow assemblyVersion_ = Version(chkUpdateAssemblyVersion_, 14, "txtAssembly");
  TCheckBox& chkAutoIncAssemblyBuild_ =
      Stop<TCheckBox>(27, "chkAutoIncAssemblyBuild", "Auto Increment Build");
  TCheckBox& chkAutoIncAssemblyVersion_ =
      Beside<TCheckBox>(chkAutoIncAssemblyBuild_, 18, "chkAutoIncAssemblyVersion", "Auto Increment Revision");
  TCheckBox& chkUpdateFileVersion_ = Stop<TCheckBox>(19, "chkUpdateFileVersion", "File Version");
  const VersionRow fileVersion_ = Version(chkUpdateFileVersion_, 20, "txtAssemblyFile");
  TCheckBox& chkAutoIncAssemblyFileBuild_ =
      Stop<TCheckBox>(28, "chkAutoIncAssemblyFileBuild", "Auto Increment Build");
  TCheckBox& chkAutoIncAssemblyFileVersion_ = Beside<TCheckBox>(
      chkAutoIncAssemblyFileBuild_, 25, "chkAutoIncAssemblyFileVersion", "Auto Increment Revision");
  TCheckBox& chkLinkVersions_ =
      Stop<TCheckBox>(24, "chkLinkVersions", "Link File Version to Assembly Version");

  TGroupBox& grpApplyTo_ = Stop<TGroupBox>(26, "grpApplyTo", "Apply to");
  TRadioButton& optApplyToAll_ =
      Stop<TRadioButton>(grpApplyTo_, 0, "optApplyToAll", "All Projects in Solution");
  TRadioButton& optApplyToSelected_ =
      Stop<TRadioButton>(grpApplyTo_, 1, "optApplyToSelected", "Selected Projects");
  TCheckListBox& lstProjects_ = Stop<TCheckListBox>(grpApplyTo_, 2, "lstProjects");

  ProjectCheckList projects_{lstProjects_};
};

}  // namespace qx
