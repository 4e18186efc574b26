#include "pages/Qxvsdotnetversioninfoframe.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "actions/VersionNumbers.h"
#include "pages/ActionOf.h"
#include "platform/Texts.h"
#include "plugin/Qxlanguages.h"

namespace qx {
namespace {

constexpr int kKeyColumn = 0;
constexpr int kValueColumn = 1;
constexpr std::int32_t kLargestNumber = 65535;  // a version resource keeps each number in 16 bits

void NameColumns(TStringGrid& grid) {
  grid.SetCell(kKeyColumn, 0, "Key");
  grid.SetCell(kValueColumn, 0, "Value");
}

// Labels are left out.
void EnableWithContents(TControl& control, bool enabled) {
  if (!control.IsWindowed()) return;
  control.SetEnabled(enabled);
  for (TControl* child : control.Children()) EnableWithContents(*child, enabled);
}

}  // namespace

TVC7VersionInfoFrame::TVC7VersionInfoFrame() {
  // Numbers and attributes fill two rows each.
  for (TLabel* label : {&lblMinorVer_, &lblBuildNo_}) label->sameRow = true;
  for (TCheckBox* attribute : {&cbSpecialBuild_, &cbDLL_, &cbPrivateBuild_}) attribute->sameRow = true;
  lblLocaleID_.sameRow = true;
  cbLocale_.style = TComboStyle::DropDownList;
  txtCodePage_.rightAligned = true;
  txtCodePage_.SetText("1252");
  VersionKeyGrid_.SetSize(2, kGridRows);
  NameColumns(VersionKeyGrid_);
  chkIncludeDate_.SetChecked(true);
  optAllProjects_.SetChecked(true);
  lstProjects_.multiSelect = true;
  EnableWithContents(pnlVersionInfo_, false);

  cbIncludeVerInfo_.OnClick = [this] { cbIncludeVerInfoClick(); };
  for (TSpinEdit* number : {&spMajorVer_, &spMinorVer_, &spReleaseVer_, &spBuildNo_})
    number->OnChange = [this] { VersionNumberChange(); };
  cbLocale_.OnChange = [this] { cbLocaleChange(); };
  optAllProjects_.OnClick = [this] { lstProjects_.SetEnabled(false); };
  optSelectedProjects_.OnClick = [this] { lstProjects_.SetEnabled(true); };
}

const TFrameClass& TVC7VersionInfoFrame::Class() {
  static constexpr TFrameClass record{"TVC7VersionInfoFrame", []() -> std::unique_ptr<TFrame> {
                                        return std::make_unique<TVC7VersionInfoFrame>();
                                      }};
  return record;
}

TSpinEdit& TVC7VersionInfoFrame::Number(TControl& before, int tabOrder, const char* name) {
  TSpinEdit& number = Beside<TSpinEdit>(before, tabOrder, name);
  number.SetRange(0, kLargestNumber);
  return number;
}

void TVC7VersionInfoFrame::ReadActionData(TPersistent& object) {
  auto& action = ActionOf<TQXVSDotNetAction>(object);
  const VSDotNetSettings& settings = action.Settings();
  cbIncludeVerInfo_.SetChecked(settings.updateWin32Resource);
  spMajorVer_.SetValue(action.GetMajorVer());
  spMinorVer_.SetValue(action.GetMinorVer());
  spReleaseVer_.SetValue(action.GetReleaseVer());
  spBuildNo_.SetValue(action.GetBuildVer());
  cbIncBuildNum_.SetChecked(action.GetAutoIncBuild());
  cbDebugBuild_.SetChecked(action.GetIsDebug());
  cbPreRelease_.SetChecked(action.GetIsPreRelease());
  cbPrivateBuild_.SetChecked(action.GetIsPrivate());
  cbSpecialBuild_.SetChecked(action.GetIsSpecial());
  cbDLL_.SetChecked(action.GetIsDLL());
  SetupVersionInfoKeys(action.GetVersionInfoKeys());
  cbLocale_.ClearItems();
  for (int i = 0; i < QXLanguages().GetCount(); ++i) cbLocale_.AddItem(QXLanguages().GetName(i));
  SetLocale(action.GetLocale());
  SetCodePage(action.GetCodePage());
  chkIncludeDate_.SetChecked(action.GetIncludeCompileDate());
  if (settings.applyResourceInfoTo == TVSDotNetBuildType::btAllProjects) {
    optAllProjects_.SetChecked(true);
    projects_.TickAll();
  } else {
    optSelectedProjects_.SetChecked(true);
    projects_.TickOnly(settings.resourceSelectedProjects);
  }
}

void TVC7VersionInfoFrame::WriteActionData(TPersistent& object) {
  auto& action = ActionOf<TQXVSDotNetAction>(object);
  VSDotNetSettings& settings = action.Settings();
  settings.updateWin32Resource = cbIncludeVerInfo_.Checked();
  action.SetMajorVer(GetMajorVer());
  action.SetMinorVer(GetMinorVer());
  action.SetReleaseVer(GetReleaseVer());
  action.SetBuildVer(GetBuildVer());
  action.SetAutoIncBuild(cbIncBuildNum_.Checked());
  action.SetIsDebug(GetIsDebug());
  action.SetIsPreRelease(GetIsPreRelease());
  action.SetIsPrivate(GetIsPrivate());  // which sets IsDebug (docs/deliberate.md)
  action.SetIsSpecial(GetIsSpecial());
  action.SetIsDLL(GetIsDLL());
  NameColumns(VersionKeyGrid_);
  action.SetVersionInfoKeys(GetVersionInfoKeys());
  // An unknown language is written as none; a code page that is no number stops here, and what stands above
  // it is written already (docs/deliberate.md).
  action.SetLocale(GetLocale());
  action.SetCodePage(GetCodePage());
  action.SetIncludeCompileDate(GetIncludeCompileDate());
  if (optAllProjects_.Checked()) {
    // The stored choice stays: switching back finds it again (docs/deliberate.md).
    settings.applyResourceInfoTo = TVSDotNetBuildType::btAllProjects;
    return;
  }
  settings.applyResourceInfoTo = TVSDotNetBuildType::btSelectedProjects;
  settings.resourceSelectedProjects = projects_.Ticked();
}

// Stays switched on, unlike the page of the AssemblyInfo files (docs/deliberate.md).
void TVC7VersionInfoFrame::UpdateSolution(bool, IVSDotNetSolution& solution) { projects_.Rebuild(solution); }

std::int32_t TVC7VersionInfoFrame::GetCodePage() {
  if (const auto codePage = ToInteger(txtCodePage_.Text())) return *codePage;
  throw Exception("'" + txtCodePage_.Text() + "' is not a valid integer value");
}

std::int32_t TVC7VersionInfoFrame::GetLocale() { return QXLanguages().GetLCID(cbLocale_.ItemIndex()); }

void TVC7VersionInfoFrame::SetLocale(std::int32_t value) {
  cbLocale_.SetItemIndex(QXLanguages().IndexOf(value));
}

std::string TVC7VersionInfoFrame::GetVersionInfoKeys() {
  TStringList lines;
  for (int row = 1; row < VersionKeyGrid_.RowCount(); ++row) {
    const std::string& key = VersionKeyGrid_.Cell(kKeyColumn, row);
    if (!key.empty()) lines.Add(key + "=" + VersionKeyGrid_.Cell(kValueColumn, row));
  }
  return lines.Text();
}

void TVC7VersionInfoFrame::SetVersionInfoKeys(const std::string& value) {
  SetupVersionInfoKeys(value);
  VersionNumberChange();
}

// Keys beyond the grid's rows are not shown and get lost on writing; rows beyond the keys stay as they were;
// a key that stands twice shows its first value on both rows. Saved keys depend on all three
// (docs/deliberate.md).
void TVC7VersionInfoFrame::SetupVersionInfoKeys(const std::string& keys) {
  TStringList lines;
  lines.SetText(keys);
  NameColumns(VersionKeyGrid_);
  for (int i = 0; i < std::min(lines.Count(), kGridRows - 1); ++i) {
    const std::string& line = lines.Get(i);
    const std::size_t equals = line.find('=');
    const std::string key = equals == std::string::npos ? "" : line.substr(0, equals);
    VersionKeyGrid_.SetCell(kKeyColumn, i + 1, key);
    VersionKeyGrid_.SetCell(kValueColumn, i + 1, lines.Value(key));
  }
}

void TVC7VersionInfoFrame::VersionNumberChange() {
  for (int row = 1; row < VersionKeyGrid_.RowCount(); ++row) {
    if (VersionKeyGrid_.Cell(kKeyColumn, row) != "FileVersion") continue;
    VersionKeyGrid_.SetCell(kValueColumn, row,
                            DottedVersion({GetMajorVer(), GetMinorVer(), GetReleaseVer(), GetBuildVer()}));
    return;
  }
}

void TVC7VersionInfoFrame::SelectedProjectsChanged(const TStringList& names) {
  TStringList ticked;
  for (int i = 0; i < lstProjects_.Count(); ++i)
    if (lstProjects_.IsChecked(i)) ticked.Add(lstProjects_.Item(i));
  lstProjects_.ClearItems();
  for (const std::string& name : names.Items()) lstProjects_.AddItem(name);
  projects_.ItemsChanged();
  if (!optSelectedProjects_.Checked()) return lstProjects_.CheckAll();
  for (const std::string& name : ticked.Items()) {
    const int found = names.IndexOf(name);
    if (found >= 0) lstProjects_.SetChecked(found, true);
  }
}

// The list of projects too, whichever projects are chosen (docs/deliberate.md).
void TVC7VersionInfoFrame::cbIncludeVerInfoClick() {
  EnableWithContents(pnlVersionInfo_, cbIncludeVerInfo_.Checked());
}

void TVC7VersionInfoFrame::cbLocaleChange() {
  char text[16];
  std::snprintf(text, sizeof text, "$%04X", static_cast<unsigned>(GetLocale()));
  lblLocaleID_.caption = text;
}

}  // namespace qx
