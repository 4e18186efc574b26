#include "actions/Qxmstestaction.h"

#include "actions/RunFixture.h"

namespace qx {
namespace {

using Errors = std::vector<ValidationErrors::Error>;

// Keeps what the action asks for.
class Builder final : public AnswersUncounted<ICommandLineBuilder> {
 public:
  std::vector<std::string> calls;
  void Reset(const std::string& initial) override { calls = {"reset:" + initial}; }
  InterfacePtr<IArgument> AddArgument(const std::string& argumentSwitch, const std::string& value,
                                      TArgumentOption option) override {
    calls.push_back(argumentSwitch + "|" + value + "|" + std::to_string(static_cast<int>(option)));
    return nullptr;
  }
  std::string GetCommandLine() override { return {}; }
};

class MSTest : public RunFixture {
 protected:
  MSTest() { VSDotNetOptions()->SetMSTestLocation(devenv()); }
  Errors Validated(bool expected) {
    ValidationErrors errors;
    EXPECT_EQ(test->Validate(errors), expected);
    return errors.Errors();
  }
  std::unique_ptr<TQXMSTestAction> test = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  Builder builder;
};

TEST_F(MSTest, PublishesThreeTexts) {
  Lines names;
  for (const PublishedProperty& row : TQXMSTestAction::Class().properties) {
    EXPECT_EQ(row.kind, PropertyKind::Text);
    EXPECT_EQ(row.get(*test), PropertyValue(std::string()));
    row.set(*test, std::string(row.name));
    EXPECT_EQ(row.get(*test), PropertyValue(std::string(row.name)));
    names.emplace_back(row.name);
  }
  EXPECT_EQ(names, (Lines{"AssemblyFileName", "ConfigFileName", "OutputFileName"}));
}

TEST_F(MSTest, HasItsFixedTexts) {
  EXPECT_EQ(TQXMSTestAction::Class().className, "TQXMSTestAction");
  EXPECT_EQ(test->GetActionName(TQXMSTestAction::Class()), "Run MSTest");
  EXPECT_EQ(TQXMSTestAction::Class().getActionName(), "Run MSTest");
  EXPECT_EQ(test->GetHelpTopicID(), 3500);
  EXPECT_EQ(test->GetQuickHelpFilename(), "Plugins\\MSTest.html");
}

TEST_F(MSTest, IsValidWithProgramAndAssembly) {
  test->SetAssemblyFileName("%NOPE%");
  EXPECT_EQ(Validated(true), Errors{});
}

TEST_F(MSTest, ReportsEveryFailedCheck) {
  VSDotNetOptions()->SetMSTestLocation("");
  EXPECT_EQ(Validated(false),
            (Errors{{"MSTest Locatation", "MSTest.exe location not set in Tools->Options"},
                    {"MSTest Locatation", "MSTest.exe not found, check location in Tools->Options"},
                    {"Assembly Filename", "Assembly Filename is blank"}}));
}

TEST_F(MSTest, ReportsAProgramThatIsNotThere) {
  VSDotNetOptions()->SetMSTestLocation(Path("vs/MSTest.exe"));
  test->SetAssemblyFileName("a.dll");
  EXPECT_EQ(Validated(false),
            (Errors{{"MSTest Locatation", "MSTest.exe not found, check location in Tools->Options"}}));
}

TEST_F(MSTest, TakesTheProgramFromTheOptionsAsItStands) {
  VSDotNetOptions()->SetMSTestLocation(" C:\\VS8\\MSTest.exe ");
  EXPECT_EQ(test->GetExecutable(), " C:\\VS8\\MSTest.exe ");
}

TEST_F(MSTest, StartsInTheAssemblysFolder) {
  test->SetAssemblyFileName("C:\\t\\a.dll");
  EXPECT_EQ(test->GetStartingDir(), "C:\\t\\");
  host.variables.SetProject("OUT", "%IN%\\bin");
  host.variables.SetProject("IN", "C:\\t");
  test->SetAssemblyFileName("%OUT%\\a.dll");
  EXPECT_EQ(test->GetStartingDir(), "C:\\t\\bin\\");
}

TEST_F(MSTest, StartsNowhereWhenTheAssemblyCannotBeExpanded) {
  test->SetAssemblyFileName("%NOPE%\\a.dll");
  EXPECT_EQ(test->GetStartingDir(), "");
  EXPECT_EQ(host.Lines(), Lines{});
}

TEST_F(MSTest, GivesItsArgumentsInOrder) {
  test->SetAssemblyFileName("C:\\t\\a.dll");
  test->SetOutputFileName("r.trx");
  test->SetConfigFileName("c.testrunconfig");
  EXPECT_TRUE(test->GetCommandLine(builder));
  EXPECT_EQ(builder.calls, (Lines{"reset:", "/testcontainer:|C:\\t\\a.dll|4", "/resultsfile:|r.trx|4",
                                  "/runconfig:|c.testrunconfig|4"}));
}

TEST_F(MSTest, ExpandsNestedVariablesInTheAssemblyOnly) {
  host.variables.SetProject("OUTER", "%INNER%");
  host.variables.SetProject("INNER", "x");
  test->SetAssemblyFileName("%OUTER%");
  test->SetOutputFileName("%OUTER%");
  test->SetConfigFileName("%OUTER%");
  EXPECT_TRUE(test->GetCommandLine(builder));
  EXPECT_EQ(builder.calls,
            (Lines{"reset:", "/testcontainer:|x|4", "/resultsfile:|%INNER%|4", "/runconfig:|%INNER%|4"}));
}

TEST_F(MSTest, StopsAtTheFirstTextThatCannotBeExpanded) {
  test->SetAssemblyFileName("a.dll");
  test->SetOutputFileName("%NOPE%");
  test->SetConfigFileName("c");
  EXPECT_FALSE(test->GetCommandLine(builder));
  EXPECT_EQ(builder.calls, (Lines{"reset:", "/testcontainer:|a.dll|4"}));
  EXPECT_EQ(host.Lines(), Lines{"Output File\n    Undefined variable : NOPE"});
}

TEST_F(MSTest, NamesEachTextThatCannotBeExpanded) {
  test->SetAssemblyFileName("%NOPE%");
  EXPECT_FALSE(test->GetCommandLine(builder));
  EXPECT_EQ(host.Entries().back().text, "Assembly File");
  test->SetAssemblyFileName("a");
  test->SetConfigFileName("%NOPE%");
  EXPECT_FALSE(test->GetCommandLine(builder));
  EXPECT_EQ(host.Entries().back().text, "Configuration File");
}

TEST_F(MSTest, SucceedsWithExitCodeZeroOnly) {
  EXPECT_TRUE(test->InterpretResult(0));
  EXPECT_FALSE(test->InterpretResult(1));
  EXPECT_FALSE(test->InterpretResult(-1));
}

TEST_F(MSTest, RunsTheProgram) {
  Write("src/a.dll", "");
  test->SetAssemblyFileName(Path("src/a.dll"));
  test->SetConfigFileName("with blank");
  Script("out Passed\n");
  EXPECT_TRUE(test->Execute());
  EXPECT_EQ(Calls(), Lines{"in " + Path("src") + " | /testcontainer:" + Path("src/a.dll") +
                           " | /runconfig:with blank"});
  Script("exit 1\n");
  EXPECT_FALSE(test->Execute());
}

}  // namespace
}  // namespace qx
