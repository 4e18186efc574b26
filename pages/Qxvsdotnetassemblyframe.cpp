#include "pages/Qxvsdotnetassemblyframe.h"

#include <algorithm>
#include <memory>

#include "actions/VersionNumbers.h"
#include "pages/ActionOf.h"

namespace qx {
namespace {

std::size_t IndexOf(AssemblyAttribute attribute) { return static_cast<std::size_t>(attribute); }

}  // namespace

TVSDotNetAssemblyFrame::TVSDotNetAssemblyFrame() {
  chkAutoIncAssemblyBuild_.captionOnLeft = true;
  chkAutoIncAssemblyVersion_.captionOnLeft = true;
  optApplyToAll_.SetChecked(true);
  lstProjects_.multiSelect = true;
  lstProjects_.SetEnabled(false);

  chkUpdateAssemblyInfo_.OnClick = [this] { SetComponentsState(chkUpdateAssemblyInfo_.Checked()); };
  for (const AttributeRow& row : attributes_)
    row.box.OnClick = [&row] { row.text.SetEnabled(row.box.Checked()); };
  chkUpdateAssemblyVersion_.OnClick = [this] { chkUpdateAssemblyVersionClick(); };
  chkUpdateFileVersion_.OnClick = [this] { chkUpdateFileVersionClick(); };
  // The auto-increment boxes wait for the next click on chkUpdateFileVersion_; users know the page so
  // (docs/deliberate.md).
  chkLinkVersions_.OnClick = [this] { Enable(fileVersion_, EditsFileVersion()); };
  optApplyToAll_.OnClick = [this] { lstProjects_.SetEnabled(false); };
  optApplyToSelected_.OnClick = [this] { lstProjects_.SetEnabled(true); };
}

const TFrameClass& TVSDotNetAssemblyFrame::Class() {
  static constexpr TFrameClass record{"TVSDotNetAssemblyFrame", []() -> std::unique_ptr<TFrame> {
                                        return std::make_unique<TVSDotNetAssemblyFrame>();
                                      }};
  return record;
}

TVSDotNetAssemblyFrame::AttributeRow TVSDotNetAssemblyFrame::Attribute(AssemblyAttribute attribute,
                                                                       int tabOrder, const char* boxName,
                                                                       const char* caption,
                                                                       const char* textName) {
  TCheckBox& box = Stop<TCheckBox>(tabOrder, boxName, caption);
  return {attribute, box, Beside<TEdit>(box, tabOrder + 1, textName)};
}

TLabel& TVSDotNetAssemblyFrame::Column(TLabel* before, const char* name, const char* caption) {
  TLabel& label = Add<TLabel>(name, caption);
  label.sameRow = before != nullptr;
  return label;
}

TVSDotNetAssemblyFrame::VersionRow TVSDotNetAssemblyFrame::Version(TControl& before, int tabOrder,
                                                                   const std::string& prefix) {
  VersionRow row{};
  TControl* last = &before;
  const char* const parts[] = {"Major", "Minor", "Build", "Revision"};
  for (std::size_t i = 0; i < row.size(); ++i)
    last = row[i] = &Beside<TEdit>(*last, tabOrder + static_cast<int>(i), prefix + parts[i]);
  return row;
}

void TVSDotNetAssemblyFrame::ReadActionData(TPersistent& object) {
  const auto& action = ActionOf<TQXVSDotNetAction>(object);
  const VSDotNetSettings& settings = action.Settings();
  chkUpdateAssemblyInfo_.SetChecked(settings.updateAssemblyInfo);
  SetComponentsState(settings.updateAssemblyInfo);
  for (const AttributeRow& row : attributes_)
    row.box.SetChecked(settings.updateAttribute[IndexOf(row.attribute)]);
  chkUpdateAssemblyVersion_.SetChecked(settings.updateAttribute[IndexOf(AssemblyAttribute::Version)]);
  chkUpdateFileVersion_.SetChecked(settings.updateAttribute[IndexOf(AssemblyAttribute::FileVersion)]);
  chkAutoIncAssemblyBuild_.SetChecked(action.GetAutoIncAssemblyBuildNo());
  chkAutoIncAssemblyVersion_.SetChecked(action.GetAutoIncAssemblyRevisionNo());
  chkAutoIncAssemblyFileBuild_.SetChecked(action.GetAutoIncAssemblyFileBuildNo());
  chkAutoIncAssemblyFileVersion_.SetChecked(action.GetAutoIncAssemblyFileRevisionNo());
  if (!chkUpdateAssemblyVersion_.Checked()) {
    chkAutoIncAssemblyBuild_.SetChecked(false);
    chkAutoIncAssemblyVersion_.SetChecked(false);
  }
  if (!chkUpdateFileVersion_.Checked()) {
    chkAutoIncAssemblyFileBuild_.SetChecked(false);
    chkAutoIncAssemblyFileVersion_.SetChecked(false);
  }
  chkLinkVersions_.SetChecked(settings.linkAssemblyFileVersionInfo);
  for (const AttributeRow& row : attributes_)
    row.text.SetText(settings.attributeText[IndexOf(row.attribute)]);
  Split(action.GetAssemblyFileVersion(), fileVersion_);
  Split(action.GetAssemblyVersion(), assemblyVersion_);
  if (settings.applyAssemblyInfoTo == TVSDotNetBuildType::btAllProjects) {
    optApplyToAll_.SetChecked(true);
    projects_.TickAll();
  } else {
    optApplyToSelected_.SetChecked(true);
    projects_.TickOnly(settings.assemblySelectedProjects);
  }
}

void TVSDotNetAssemblyFrame::WriteActionData(TPersistent& object) {
  auto& action = ActionOf<TQXVSDotNetAction>(object);
  VSDotNetSettings& settings = action.Settings();
  settings.updateAssemblyInfo = chkUpdateAssemblyInfo_.Checked();
  for (const AttributeRow& row : attributes_)
    settings.updateAttribute[IndexOf(row.attribute)] = row.box.Checked();
  settings.updateAttribute[IndexOf(AssemblyAttribute::Version)] = chkUpdateAssemblyVersion_.Checked();
  settings.updateAttribute[IndexOf(AssemblyAttribute::FileVersion)] = chkUpdateFileVersion_.Checked();
  // In this order: each tells the host of properties that change, and looks at its neighbour as it does.
  action.SetAutoIncAssemblyFileRevisionNo(chkAutoIncAssemblyFileVersion_.Checked());
  action.SetAutoIncAssemblyRevisionNo(chkAutoIncAssemblyVersion_.Checked());
  action.SetAutoIncAssemblyFileBuildNo(chkAutoIncAssemblyFileBuild_.Checked());
  action.SetAutoIncAssemblyBuildNo(chkAutoIncAssemblyBuild_.Checked());
  settings.linkAssemblyFileVersionInfo = chkLinkVersions_.Checked();
  for (const AttributeRow& row : attributes_)
    settings.attributeText[IndexOf(row.attribute)] = row.text.Text();
  // A version that is not ticked keeps its stored value, whatever its edits show: saved numbers depend on it
  // (docs/deliberate.md).
  if (chkUpdateFileVersion_.Checked()) action.SetAssemblyFileVersion(Join(fileVersion_));
  if (chkUpdateAssemblyVersion_.Checked()) action.SetAssemblyVersion(Join(assemblyVersion_));
  if (optApplyToAll_.Checked()) {
    // The stored choice stays, unlike the solution page's: switching back finds it again
    // (docs/deliberate.md).
    settings.applyAssemblyInfoTo = TVSDotNetBuildType::btAllProjects;
    return;
  }
  settings.applyAssemblyInfoTo = TVSDotNetBuildType::btSelectedProjects;
  settings.assemblySelectedProjects = projects_.Ticked();
}

void TVSDotNetAssemblyFrame::UpdateSolution(bool changed, IVSDotNetSolution& solution) {
  // Unlike the page of the version resource, which stays switched on (docs/deliberate.md).
  if (changed) chkUpdateAssemblyInfo_.SetChecked(false);
  projects_.Rebuild(solution);
}

// A version of fewer parts leaves the later edits as they were, one of more parts loses them: users' saved
// versions have always been shown so (docs/deliberate.md).
void TVSDotNetAssemblyFrame::Split(const std::string& version, const VersionRow& row) {
  const std::vector<std::string_view> parts = PartsOfVersion(version);
  for (std::size_t i = 0; i < parts.size(); ++i) row[i]->SetText(std::string(parts[i]));
}

std::string TVSDotNetAssemblyFrame::Join(const VersionRow& row) {
  return JoinVersion({row[0]->Text(), row[1]->Text(), row[2]->Text(), row[3]->Text()});
}

void TVSDotNetAssemblyFrame::Enable(const VersionRow& row, bool enabled) {
  for (TEdit* edit : row) edit->SetEnabled(enabled);
}

void TVSDotNetAssemblyFrame::SetComponentsState(bool enabled) {
  for (TControl* control : Root().Children())
    if (control != &chkUpdateAssemblyInfo_) control->SetEnabled(enabled);
  if (enabled) {
    for (const AttributeRow& row : attributes_) row.text.SetEnabled(row.box.Checked());
    Enable(assemblyVersion_, chkUpdateAssemblyVersion_.Checked());
    Enable(fileVersion_, EditsFileVersion());
    lstProjects_.SetEnabled(optApplyToSelected_.Checked());
  }
  // While the page is being disabled too: these two boxes stay usable, as users know them
  // (docs/deliberate.md).
  chkAutoIncAssemblyVersion_.SetEnabled(chkUpdateAssemblyVersion_.Checked());
  chkAutoIncAssemblyFileVersion_.SetEnabled(EditsFileVersion());
}

void TVSDotNetAssemblyFrame::chkUpdateAssemblyVersionClick() {
  const bool ticked = chkUpdateAssemblyVersion_.Checked();
  Enable(assemblyVersion_, ticked);
  if (!ticked) {
    chkAutoIncAssemblyVersion_.SetChecked(false);
    chkAutoIncAssemblyBuild_.SetChecked(false);
  }
  chkAutoIncAssemblyVersion_.SetEnabled(ticked);
  chkAutoIncAssemblyBuild_.SetEnabled(ticked);
}

void TVSDotNetAssemblyFrame::chkUpdateFileVersionClick() {
  Enable(fileVersion_, EditsFileVersion());
  if (!chkUpdateFileVersion_.Checked()) {
    chkAutoIncAssemblyFileVersion_.SetChecked(false);
    chkAutoIncAssemblyFileBuild_.SetChecked(false);
  }
  chkAutoIncAssemblyFileVersion_.SetEnabled(EditsFileVersion());
  chkAutoIncAssemblyFileBuild_.SetEnabled(EditsFileVersion());
}

// What a run refuses; an empty part may be on its way, and what a variable holds is known by then.
std::string TVSDotNetAssemblyFrame::WhatIsWrongWith(const TControl& control) {
  const auto fault = [&](const VersionRow& row, std::int32_t largest, bool takesStar) -> std::string {
    const auto found = std::ranges::find(row, &control);
    if (found == row.end() || !control.IsEnabled()) return {};
    const std::string& text = (*found)->Text();
    if (text.empty() || text.find('%') != text.npos) return {};
    return WhyNoPart(text, static_cast<std::size_t>(found - row.begin()), largest, takesStar);
  };
  const std::string ofAssembly = fault(assemblyVersion_, kLargestAssemblyPart, true);
  return ofAssembly.empty() ? fault(fileVersion_, kLargestFilePart, false) : ofAssembly;
}

}  // namespace qx
