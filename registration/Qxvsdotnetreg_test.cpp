#include "registration/Qxvsdotnetreg.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "actions/Qxvsdotnetaction.h"
#include "host/pages/Pages.h"
#include "host/testing/TestHost.h"

namespace qx {
namespace {

using Calls = std::vector<std::string>;

// "Operation(argument, argument)", a list argument in brackets.
std::string Text(const RegistrationCall& call) {
  std::string out = call.operation + "(";
  for (const RegistrationCall::Argument& argument : call.arguments) {
    if (out.back() != '(') out += ", ";
    std::string values;
    for (const std::string& value : argument.values) values += (values.empty() ? "" : " ") + value;
    out += argument.isList ? "[" + values + "]" : values;
  }
  return out + ")";
}

class PackageRegistration : public testing::Test {
 protected:
  Calls Made() const {
    Calls calls;
    for (const RegistrationCall& call : catalogue_.Calls()) calls.push_back(Text(call));
    return calls;
  }

  Catalogue catalogue_;
  CatalogueInUse use_{catalogue_};
};

const Calls kWithoutDesign = {
    "RegisterAction(TQXVSDotNetAction, Build VS.Net Solution, Compilers, DEVENV)",
    "RegisterOptions(TVSDotNetOptions, DEVENV)",
    "RegisterFunction(VSDotNetOptions)",
    "RegisterEnumeration(TVSDotNetVersion, [vs2002 vs2003 vs2005])",
    "RegisterAction(TQXMSTestAction, Run MSTest, Testing Tools, MSTEST)",
    "RegisterOptions(TVSDotNetOptions, DEVENV)",
    "RegisterFunction(VSDotNetOptions)",
    "RegisterEnumeration(TVSDotNetVersion, [vs2002 vs2003 vs2005])",
};

TEST_F(PackageRegistration, GivesActionsAndOptionsWithoutDesign) {
  RegisterPackage(false);
  EXPECT_EQ(Made(), kWithoutDesign);
}

TEST_F(PackageRegistration, GivesEditorsAndPagesForDesign) {
  RegisterPackage(true);
  Calls expected = kWithoutDesign;
  for (const char* row :
       {"Solution, TSolutionEditor", "SolutionConfiguration, TSolutionEditor",
        "AssemblyInfo, TShowActionPropertiesEditor", "Win32VersionInfo, TShowActionPropertiesEditor",
        "NSolution, TSolutionEditor", "NSolutionConfiguration, TSolutionEditor"})
    expected.push_back("RegisterPropertyEditor(TQXVSDotNetAction, " + std::string(row) + ")");
  for (const char* call : {"RegisterPropertyPages(TQXVSDotNetAction, [TVSDotNetProjectFrame])",
                           "RegisterPropertyPages(TQXVSDotNetAction, [TVSDotNetAssemblyFrame])",
                           "RegisterPropertyPages(TQXVSDotNetAction, [TVSDotNetOutputLocationFrame])",
                           "RegisterPropertyPages(TQXVSDotNetAction, [TVC7VersionInfoFrame])",
                           "RegisterOptionsPage(TVSDotNetOptions, TVSDotNetOptionsFrame)",
                           "RegisterPropertyPages(TQXMSTestAction, [TMSTestFrame])"})
    expected.push_back(call);
  EXPECT_EQ(Made(), expected);
}

TEST_F(PackageRegistration, LeavesOneOptionsObject) {
  RegisterPackage(true);
  EXPECT_EQ(catalogue_.Options().size(), 1u);
  EXPECT_TRUE(VSDotNetOptions());
}

TEST_F(PackageRegistration, ServesTheConfigurationsOddSpelling) {
  RegisterPackage(true);
  EXPECT_EQ(catalogue_.FindEditor(TQXVSDotNetAction::Class(), "SolutionConFiguration"),
            &TSolutionEditor::Class());
}

TEST_F(PackageRegistration, OpensThePagesOfTheSolutionAtTheSolutionPage) {
  RegisterPackage(true);
  TestHost host;
  const std::unique_ptr<TQXAction> action = host.Make(TQXVSDotNetAction::Class());
  const auto dialog = PageDialog::ForAction(catalogue_.Actions()[0], *action);
  for (const char* property : {"Solution", "SolutionConFiguration"}) {
    const auto page = EditorPage(catalogue_, TQXVSDotNetAction::Class(), property);
    ASSERT_TRUE(page) << property;
    EXPECT_EQ(dialog->Find(*page), 0) << property;
    EXPECT_EQ(dialog->Name(0), "Solution");
  }
  EXPECT_FALSE(EditorPage(catalogue_, TQXVSDotNetAction::Class(), "SharePath"));
}

TEST_F(PackageRegistration, PresetsTheOptionsVersionInNewActions) {
  RegisterPackage(false);
  VSDotNetOptions()->SetDefaultVSVersion(TVSDotNetVersion::vs2002);
  const std::unique_ptr<TQXAction> action = TQXVSDotNetAction::Class().construct();
  action->Create();
  EXPECT_EQ(dynamic_cast<TQXVSDotNetAction&>(*action).Settings().vstudioVersion, TVSDotNetVersion::vs2002);
}

Calls Units() {
  Calls units;
  for (int i = 0; i < UnitTable().count; ++i) {
    const TQXUnit& unit = UnitTable().units[i];
    units.push_back(unit.name + std::string(" ") + std::to_string(unit.startCount));
  }
  return units;
}

TEST(PackageUnits, CountTheirStarts) {
  const Calls stopped = {"Vsnetsln 0",
                         "Qxvsdotnetoptions 0",
                         "Qxvc7versioninfo 0",
                         "Qxresolveiisdirectory 0",
                         "Qxassemblyinfo 0",
                         "Qxvsdotnetaction 0",
                         "Qxvsdotnetprojectframe 0",
                         "Qxvsdotnetassemblyframe 0",
                         "Qxvsdotnetoptionsframe 0",
                         "Qxvsdotnetoutputlocationframe 0",
                         "Qxvsdotnetversioninfoframe 0",
                         "Qxmstestaction 0",
                         "Qxmstestframe 0",
                         "Qxvsdotnetreg 0"};
  EXPECT_EQ(Units(), stopped);
  StartUnits();
  EXPECT_EQ(Units()[0], "Vsnetsln 1");
  EXPECT_EQ(Units().back(), "Qxvsdotnetreg 1");
  StartUnits();
  EXPECT_EQ(Units()[0], "Vsnetsln 2");
  StopUnits();
  StopUnits();
  StopUnits();
  EXPECT_EQ(Units(), stopped);
}

}  // namespace
}  // namespace qx
