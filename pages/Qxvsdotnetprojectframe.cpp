#include "pages/Qxvsdotnetprojectframe.h"

#include <memory>

#include "actions/Qxvsdotnetaction.h"
#include "actions/SolutionVersion.h"
#include "pages/ActionOf.h"
#include "platform/files/Files.h"
#include "plugin/Qxservices.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

// What UpdateSolution is told: whether the user browsed to another file.
constexpr bool kSameSolution = false;

void ShowOpenError(const std::string& reason) { QXShowError("Error opening project: " + reason); }

// An ordinal beyond the list's items selects none of them; the action then keeps its value.
template <class Enumeration>
Enumeration Chosen(const TComboBox& box, Enumeration kept) {
  return box.ItemIndex() < 0 ? kept : static_cast<Enumeration>(box.ItemIndex());
}

}  // namespace

TVSDotNetProjectFrame::TVSDotNetProjectFrame() {
  txtSolution_.buttons = {
      {TEditButton::Picture::Folder, "", [this] { txtSolutionButtonClick(); }},
      {TEditButton::Picture::Refresh, "Refresh Configuration List", [this] { Refresh(); }}};
  MakeDropDown(cboVSVersion_, {"VS.NET 2002", "VS.NET 2003", "VS.NET 2005"});
  MakeDropDown(cboAction_, {"Build", "ReBuild", "Clean", "Deploy"});
  optBuildAllProjects_.SetChecked(true);
  lstProjects_.multiSelect = true;
  EnableProjects(false);

  cboVSVersion_.OnChange = [this] { cboVSVersionChange(); };
  optBuildAllProjects_.OnClick = [this] { EnableProjects(false); };
  optBuildSelectedProjects_.OnClick = [this] { optBuildSelectedProjectsClick(); };
  btnCheckall_.OnClick = [this] { lstProjects_.CheckAll(); };
  btnUncheckAll_.OnClick = [this] { lstProjects_.UncheckAll(); };
  lstProjects_.OnTick = [this](int, bool) { lstProjectsClickCheck(); };
}

const TFrameClass& TVSDotNetProjectFrame::Class() {
  static constexpr TFrameClass record{"TVSDotNetProjectFrame", []() -> std::unique_ptr<TFrame> {
                                        return std::make_unique<TVSDotNetProjectFrame>();
                                      }};
  return record;
}

void TVSDotNetProjectFrame::ReadActionData(TPersistent& object) {
  const auto& action = ActionOf<TQXVSDotNetAction>(object);
  const VSDotNetSettings& settings = action.Settings();
  selections_ = StoredSelections(settings);
  txtSolution_.SetText(action.GetSolution());
  chkUseEnv_.SetChecked(settings.useEnv);
  cboVSVersion_.SetItemIndex(static_cast<int>(settings.vstudioVersion));
  chkUseMSBuild_.SetChecked(settings.useMSBuild);
  chkUseMSBuild_.SetEnabled(cboVSVersion_.ItemIndex() >= static_cast<int>(TVSDotNetVersion::vs2005));
  Refresh();
  cboAction_.SetItemIndex(static_cast<int>(settings.buildAction));
  if (settings.buildType == TVSDotNetBuildType::btAllProjects) {
    optBuildAllProjects_.SetChecked(true);
    projects_.TickAll();
  } else {
    optBuildSelectedProjects_.SetChecked(true);
    projects_.TickOnly(settings.selectedProjects);
  }
  cboConfigs_.SetText(settings.solutionConfiguration);
  if (cboConfigs_.Text().empty() && cboConfigs_.Count() > 0) cboConfigs_.SetItemIndex(0);
  btnCheckall_.SetEnabled(optBuildSelectedProjects_.Checked());
  btnUncheckAll_.SetEnabled(optBuildSelectedProjects_.Checked());
}

void TVSDotNetProjectFrame::WriteActionData(TPersistent& object) {
  auto& action = ActionOf<TQXVSDotNetAction>(object);
  VSDotNetSettings& settings = action.Settings();
  action.SetSolution(txtSolution_.Text());
  settings.useEnv = chkUseEnv_.Checked();
  settings.vstudioVersion = Chosen(cboVSVersion_, settings.vstudioVersion);
  // Disabled or not: an action of an older version keeps the tick for the day it moves to 2005
  // (docs/deliberate.md).
  settings.useMSBuild = chkUseMSBuild_.Checked();
  settings.solutionConfiguration = cboConfigs_.Text();
  settings.buildAction = Chosen(cboAction_, settings.buildAction);
  // As the list is shown, which without the solution's file is empty (docs/deliberate.md).
  settings.selectedProjects.Clear();
  if (optBuildAllProjects_.Checked()) {
    settings.buildType = TVSDotNetBuildType::btAllProjects;
    return;
  }
  settings.buildType = TVSDotNetBuildType::btSelectedProjects;
  settings.selectedProjects = projects_.Ticked();
}

TVSDotNetProjectFrame::Expansion TVSDotNetProjectFrame::ExpandSolution() const {
  constexpr bool kNested = true;
  try {
    return {QXDesignApplicationServices()->ExpandExpression(txtSolution_.Text(), kNested), ""};
  } catch (const std::exception& error) {
    return {"", error.what()};
  }
}

void TVSDotNetProjectFrame::Refresh() {
  const Expansion solution = ExpandSolution();
  if (!solution.error.empty()) return ShowOpenError(solution.error);
  if (solution.path.empty()) return;
  missing_.clear();
  if (!FileExists(solution.path)) {
    missing_ = txtSolution_.Text();
    return QXShowMessage("Solution File not found!");
  }
  RefreshConfigs(kSameSolution, solution.path);
}

void TVSDotNetProjectFrame::RefreshConfigs(bool changed, const std::string& file) {
  const std::string remembered = cboConfigs_.Text();
  cboConfigs_.ClearItems();
  InterfacePtr<IVSDotNetSolution> solution;
  try {
    solution = OpenSolution(file);
  } catch (const std::exception& error) {
    return ShowOpenError(error.what());
  }
  projects_.Rebuild(*solution);
  const InterfacePtr<IVSDotNetSolutionConfigurations> configurations = solution->GetConfigurations();
  for (int i = 0; configurations && i < configurations->GetCount(); ++i)
    cboConfigs_.AddItem(configurations->GetItem(i)->GetName());
  // A name that the solution lacks is dropped, the text with it (docs/deliberate.md).
  if (!remembered.empty())
    cboConfigs_.SetItemIndex(cboConfigs_.IndexOf(remembered));
  else if (cboConfigs_.Count() > 0)
    cboConfigs_.SetItemIndex(0);
  NotifyFrames(changed, *solution);
}

void TVSDotNetProjectFrame::RefreshKeepingConfiguration(const std::string& file) {
  const std::string remembered = cboConfigs_.Text();
  RefreshConfigs(kSameSolution, file);
  if (!remembered.empty()) cboConfigs_.SetText(remembered);
}

void TVSDotNetProjectFrame::NotifyFrames(bool changed, IVSDotNetSolution& solution) {
  const InterfacePtr<IQXPageList> pages = Query<IQXPageList>(Owner());
  for (int i = 0; pages && i < pages->GetPageCount(); ++i)
    if (const auto page = Query<IVSDotNetPropertyPage>(pages->GetPage(i)))
      page->UpdateSolution(changed, solution);
}

void TVSDotNetProjectFrame::EnableProjects(bool enabled) {
  lstProjects_.SetEnabled(enabled);
  btnCheckall_.SetEnabled(enabled);
  btnUncheckAll_.SetEnabled(enabled);
}

// A text that cannot be expanded is where browsing starts as it stands.
void TVSDotNetProjectFrame::txtSolutionButtonClick() {
  const Expansion former = ExpandSolution();
  TOpenDialog dialog;
  dialog.title = "Select Solution";
  dialog.filter = "Visual Studio.Net Solutions(*.sln)|*.sln";
  dialog.fileName = former.error.empty() ? former.path : txtSolution_.Text();
  if (!dialog.Execute()) return;
  txtSolution_.SetText(dialog.fileName);
  RefreshConfigs(dialog.fileName != former.path, dialog.fileName);
}

void TVSDotNetProjectFrame::cboVSVersionChange() {
  const bool canUseMSBuild = cboVSVersion_.ItemIndex() >= static_cast<int>(TVSDotNetVersion::vs2005);
  chkUseMSBuild_.SetEnabled(canUseMSBuild);
  if (canUseMSBuild) chkUseMSBuild_.SetChecked(true);
}

void TVSDotNetProjectFrame::optBuildSelectedProjectsClick() {
  if (!lstProjects_.Enabled()) {
    const Expansion solution = ExpandSolution();
    if (!solution.path.empty() && FileExists(solution.path)) RefreshKeepingConfiguration(solution.path);
  }
  EnableProjects(true);
}

// Reads the solution anew, so that the other pages learn of it. A missing file is not looked for first:
// unlike the refresh button it ends in the error dialog, which users know (docs/deliberate.md).
void TVSDotNetProjectFrame::lstProjectsClickCheck() {
  const Expansion solution = ExpandSolution();
  if (!solution.error.empty()) return ShowOpenError(solution.error);
  if (!solution.path.empty()) RefreshKeepingConfiguration(solution.path);
}

// The projects that are chosen for building and for stamping, where they are chosen one by one.
std::vector<TVSDotNetProjectFrame::Selection> TVSDotNetProjectFrame::StoredSelections(
    const VSDotNetSettings& settings) {
  std::vector<Selection> stored;
  const auto add = [&](TVSDotNetBuildType type, const TStringList& list, const char* what) {
    if (type == TVSDotNetBuildType::btSelectedProjects && list.Count() > 0)
      stored.push_back({what, list.Count()});
  };
  add(settings.buildType, settings.selectedProjects, "to build");
  add(settings.applyAssemblyInfoTo, settings.assemblySelectedProjects, "for Assembly Info");
  add(settings.applyResourceInfoTo, settings.resourceSelectedProjects, "for Version Info");
  return stored;
}

std::string TVSDotNetProjectFrame::WhatIsWrongWith(const TControl& control) {
  const bool isMissing = &control == &txtSolution_ && !missing_.empty() && missing_ == txtSolution_.Text();
  return isMissing ? "Solution File not found: " + ExpandSolution().path : std::string();
}

PageOffer TVSDotNetProjectFrame::TextWasLeft(TControl& control) {
  if (&control != &txtSolution_) return {};
  missing_.clear();
  const Expansion solution = ExpandSolution();
  if (solution.path.empty()) return {};
  if (!FileExists(solution.path)) {
    missing_ = txtSolution_.Text();
    return {};
  }
  RefreshConfigs(kSameSolution, solution.path);
  const SolutionVersion found = VersionOfSolution(solution.path);
  const int wanted = found.version ? static_cast<int>(*found.version) : -1;
  if (wanted < 0 || wanted == cboVSVersion_.ItemIndex()) return {};
  const auto nameOf = [this](int index) { return cboVSVersion_.Items()[static_cast<std::size_t>(index)]; };
  return {"The solution is of format " + found.format + ", that of " + nameOf(wanted) +
              ". Build it with that version?",
          [this, wanted] { cboVSVersion_.UserSelect(wanted); }};
}

std::string TVSDotNetProjectFrame::QuestionBeforeWriting() {
  if (lstProjects_.Count() > 0 || selections_.empty()) return {};
  std::string lost;
  for (const Selection& selection : selections_)
    lost += (lost.empty() ? "" : ", ") + std::to_string(selection.count) + " " + selection.what;
  const std::string& file = txtSolution_.Text();
  return (file.empty() ? "No solution is named."
                       : "The projects of this solution cannot be listed: " + file) +
         "\n\nWhat is written now empties the projects that were selected (" + lost +
         "). Write it all the same?";
}

}  // namespace qx
