// What the pickers and boxes are made with, and what their answers become. The dialogs themselves are
// answered before they show.
#include "host/desktop/views/WxUser.h"

#include <gtest/gtest.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>

#include "host/desktop/testdata/Toolkit.h"
#include "host/desktop/views/WxText.h"
#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"
#include "tests/support/Screen.h"

namespace qx::desktop {
namespace {

// Cancels every dialog and keeps what it was made with.
class Answers final : public wxModalDialogHook {
 public:
  Answers() { Register(); }
  ~Answers() override { Unregister(); }
  Answers(const Answers&) = delete;
  Answers& operator=(const Answers&) = delete;

  wxString title, filter, folder, name, message;
  long style = 0;

 private:
  int Enter(wxDialog* dialog) override {
    if (auto* file = dynamic_cast<wxFileDialog*>(dialog)) {
      title = file->GetMessage();
      filter = file->GetWildcard();
      folder = file->GetDirectory();
      name = file->GetFilename();
    } else if (auto* picker = dynamic_cast<wxDirDialog*>(dialog)) {
      title = picker->GetMessage();
      folder = picker->GetPath();
    } else if (auto* box = dynamic_cast<wxMessageDialog*>(dialog)) {
      message = box->GetMessage();
      style = box->GetMessageDialogStyle();
    }
    return wxID_CANCEL;
  }
};

class WxUsers : public testing::Test {
 protected:
  void SetUp() override {
    if (!test::HasScreen()) GTEST_SKIP() << test::kNoScreen;
    NeedToolkit();
    answers_ = std::make_unique<Answers>();
    folder_.Write("sub/App.sln", "");
  }
  void TearDown() override { answers_.reset(); }

  std::unique_ptr<Answers> answers_;
  TestFolder folder_;
  WxUser user_;
};

TEST_F(WxUsers, BeginPickingAFileWhereTheEditPoints) {
  EXPECT_EQ(user_.PickFile({"Select Solution", "Solutions(*.sln)|*.sln", "", folder_ / "sub/App.sln"}),
            std::nullopt);
  EXPECT_EQ(answers_->title, "Select Solution");
  EXPECT_EQ(answers_->filter, "Solutions(*.sln)|*.sln");
  EXPECT_EQ(answers_->name, "App.sln");
  EXPECT_EQ(WithTrailingDelimiter(FromWx(answers_->folder)), WithTrailingDelimiter(folder_ / "sub"));
  EXPECT_EQ(user_.PickFile({"t", "", "", folder_ / "missing/App.sln"}), std::nullopt);
  EXPECT_EQ(FromWx(answers_->folder).find("missing"), std::string::npos);
}

TEST_F(WxUsers, BeginPickingAFolderWhereTheEditPoints) {
  EXPECT_EQ(user_.PickFolder("Location", folder_ / "sub"), std::nullopt);
  EXPECT_EQ(answers_->title, "Location");
}

TEST(DefaultExtensions, AreAddedToNamesWithoutOne) {
  EXPECT_EQ(WithDefaultExtension("/a.b/Other", "sln"), "/a.b/Other.sln");
  EXPECT_EQ(WithDefaultExtension("/a.b/Other", ".sln"), "/a.b/Other.sln");
  EXPECT_EQ(WithDefaultExtension("/a.b/Other.txt", "sln"), "/a.b/Other.txt");
  EXPECT_EQ(WithDefaultExtension("/a.b/Other", ""), "/a.b/Other");
}

TEST_F(WxUsers, ShowMessagesAndErrors) {
  user_.ShowMessage("It is \xC3\xBC");
  EXPECT_EQ(FromWx(answers_->message), "It is \xC3\xBC");
  EXPECT_TRUE(answers_->style & wxICON_INFORMATION);
  user_.ShowError("It is not");
  EXPECT_EQ(answers_->message, "It is not");
  EXPECT_TRUE(answers_->style & wxICON_ERROR);
}

}  // namespace
}  // namespace qx::desktop
