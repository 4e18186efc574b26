#include "registration/Qxvsdotnetreg.h"

#include <iterator>

#include "actions/Qxmstestaction.h"
#include "actions/Qxvsdotnetaction.h"
#include "options/Qxvsdotnetoptions.h"
#include "pages/Qxmstestframe.h"
#include "pages/Qxvsdotnetassemblyframe.h"
#include "pages/Qxvsdotnetoptionsframe.h"
#include "pages/Qxvsdotnetoutputlocationframe.h"
#include "pages/Qxvsdotnetprojectframe.h"
#include "pages/Qxvsdotnetversioninfoframe.h"
#include "plugin/Qxservices.h"

namespace qx {
namespace {

// In the order in which units start: what a unit builds on stands above it.
TQXUnit g_units[] = {
    {"Vsnetsln", 0},
    {"Qxvsdotnetoptions", 0},
    {"Qxvc7versioninfo", 0},
    {"Qxresolveiisdirectory", 0},
    {"Qxassemblyinfo", 0},
    {"Qxvsdotnetaction", 0},
    {"Qxvsdotnetprojectframe", 0},
    {"Qxvsdotnetassemblyframe", 0},
    {"Qxvsdotnetoptionsframe", 0},
    {"Qxvsdotnetoutputlocationframe", 0},
    {"Qxvsdotnetversioninfoframe", 0},
    {"Qxmstestaction", 0},
    {"Qxmstestframe", 0},
    {"Qxvsdotnetreg", 0},
};

// The host's own editor: opens the action's first property page.
const TQXPropertyEditorClass& ShowPropertiesEditor() {
  static constexpr TQXPropertyEditorClass record{
      "TShowActionPropertiesEditor",
      []() -> std::unique_ptr<TQXPropertyEditor> { return std::make_unique<TShowActionPropertiesEditor>(); }};
  return record;
}

// Three of the names are no properties of the action and stay registered; hosts match names without regard to
// case, so "SolutionConfiguration" serves SolutionConFiguration (docs/deliberate.md).
void RegisterPropertyEditors(const TQXActionClass& action) {
  struct Row {
    const char* property;
    const TQXPropertyEditorClass& editor;
  };
  const Row rows[] = {
      {"Solution", TSolutionEditor::Class()},   {"SolutionConfiguration", TSolutionEditor::Class()},
      {"AssemblyInfo", ShowPropertiesEditor()}, {"Win32VersionInfo", ShowPropertiesEditor()},
      {"NSolution", TSolutionEditor::Class()},  {"NSolutionConfiguration", TSolutionEditor::Class()},
  };
  for (const Row& row : rows) QXActionServices().RegisterPropertyEditor(action, row.property, row.editor);
}

// One call a page: the dialog shows them in this order.
void RegisterPage(const TQXActionClass& action, const TFrameClass& page) {
  const TFrameClass* const pages[] = {&page};
  QXActionServices().RegisterPropertyPages(action, pages);
}

}  // namespace

void RegisterPackage(bool design) {
  IQXActionServices& services = QXActionServices();
  services.RegisterAction(TQXVSDotNetAction::Class(), TQXVSDotNetAction::ActionName(), "Compilers", "DEVENV");
  RegisterOptions();
  services.RegisterAction(TQXMSTestAction::Class(), TQXMSTestAction::ActionName(), "Testing Tools", "MSTEST");
  // Once after each action, which the services bear: hosts have always seen both calls
  // (docs/deliberate.md).
  RegisterOptions();
  if (!design) return;
  RegisterPropertyEditors(TQXVSDotNetAction::Class());
  RegisterPage(TQXVSDotNetAction::Class(), TVSDotNetProjectFrame::Class());
  RegisterPage(TQXVSDotNetAction::Class(), TVSDotNetAssemblyFrame::Class());
  RegisterPage(TQXVSDotNetAction::Class(), TVSDotNetOutputLocationFrame::Class());
  RegisterPage(TQXVSDotNetAction::Class(), TVC7VersionInfoFrame::Class());
  QXOptionsServices().RegisterOptionsPage(TVSDotNetOptions::Class(), TVSDotNetOptionsFrame::Class());
  RegisterPage(TQXMSTestAction::Class(), TMSTestFrame::Class());
}

void StartUnits() {
  for (TQXUnit& unit : g_units) ++unit.startCount;
}

void StopUnits() {
  for (auto unit = std::rbegin(g_units); unit != std::rend(g_units); ++unit) {
    if (unit->startCount > 0) --unit->startCount;
  }
}

TQXUnitTable UnitTable() { return {g_units, static_cast<int>(std::size(g_units))}; }

}  // namespace qx
