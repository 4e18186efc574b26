#include "pages/Qxmstestframe.h"

#include "actions/Qxmstestaction.h"
#include "pages/PagesFixture.h"

namespace qx {
namespace {

struct FileEdit {
  const char* name;
  const char* filter;
};
constexpr FileEdit kEdits[] = {
    {"txtAssemblyFilename", "Assemblies (*.dll, *.exe)|*.dll;*.exe"},
    {"txtConfigFileName", "Config Files (*.testrunconfig)|*.testrunconfig"},
    {"txtOutputFileName", "Output File (*.trx)|*.trx"},
};

class TestPage : public testing::Test {
 protected:
  TButtonEdit& Edit(const char* name) { return dynamic_cast<TButtonEdit&>(*page.FindControl(name)); }

  DrivenUser user;
  TestHost host;
  std::unique_ptr<TQXMSTestAction> action = host.Make<TQXMSTestAction>(TQXMSTestAction::Class());
  TMSTestFrame page;
};

TEST_F(TestPage, IsThePageOfTheTestActionOnly) {
  EXPECT_EQ(page.PageName(), "Settings");
  const auto other = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
  EXPECT_EQ(MessageOf([&] { page.ReadActionData(*other); }), "Invalid class typecast");
  EXPECT_EQ(MessageOf([&] { page.WriteActionData(*other); }), "Invalid class typecast");
}

TEST_F(TestPage, ShowsAndWritesTextsAsTheyStand) {
  action->SetAssemblyFileName("%OUT%\\a.dll");
  action->SetConfigFileName("b");
  action->SetOutputFileName(" c ");
  page.ReadActionData(*action);
  EXPECT_EQ(Edit("txtAssemblyFilename").Text(), "%OUT%\\a.dll");
  EXPECT_EQ(Edit("txtConfigFileName").Text(), "b");
  EXPECT_EQ(Edit("txtOutputFileName").Text(), " c ");
  EXPECT_EQ(Edit("txtAssemblyFilename").UserType("%NOWHERE%"), TUserAnswer::Done);
  EXPECT_EQ(Edit("txtConfigFileName").UserType(" d "), TUserAnswer::Done);
  EXPECT_EQ(Edit("txtOutputFileName").UserType(""), TUserAnswer::Done);
  page.WriteActionData(*action);
  EXPECT_EQ(action->GetAssemblyFileName(), "%NOWHERE%");
  EXPECT_EQ(action->GetConfigFileName(), " d ");
  EXPECT_EQ(action->GetOutputFileName(), "");
}

TEST_F(TestPage, PicksEachFileToBeOpened) {
  for (const FileEdit& edit : kEdits) {
    EXPECT_EQ(Edit(edit.name).UserType("old"), TUserAnswer::Done);
    EXPECT_EQ(Edit(edit.name).UserPressButton(0), TUserAnswer::Done);
    EXPECT_EQ(Edit(edit.name).Text(), "old");  // cancelled
    user.Queue(DrivenUser::Picker::File, edit.name);
    EXPECT_EQ(Edit(edit.name).UserPressButton(0), TUserAnswer::Done);
    EXPECT_EQ(Edit(edit.name).Text(), edit.name);
    const Json shown = user.TakeShown();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1]["kind"], "file");
    EXPECT_EQ(shown[1]["title"], "Select File");
    EXPECT_EQ(shown[1]["filter"], edit.filter);
    EXPECT_EQ(shown[1]["defaultExtension"], "");
    EXPECT_EQ(shown[1]["path"], "old");
  }
}

}  // namespace
}  // namespace qx
