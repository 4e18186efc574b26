#include "plugin/Qxutils.h"

#include "host/system/UserInterface.h"
#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"
#include "plugin/Qxcontrols.h"

namespace qx {
namespace {

using Lines = std::vector<std::string>;

Lines LoadedFrom(std::string_view bytes) {
  const TestFolder folder;
  TStringList lines({"old"});
  LoadUnicodeFile(folder.Write("file.txt", bytes), lines);
  return lines.Items();
}

TEST(Utils, LoadsLinesOfEveryEncodingWithoutTheMark) {
  using namespace std::string_view_literals;
  EXPECT_EQ(LoadedFrom("\xEF\xBB\xBF\xC3\xA4\r\nb"), (Lines{"\xC3\xA4", "b"}));
  EXPECT_EQ(LoadedFrom("\xFF\xFE\xE4\0\r\0\n\0b\0"sv), (Lines{"\xC3\xA4", "b"}));
  EXPECT_EQ(LoadedFrom("\xFE\xFF\0\xE4\0\r\0\n\0b"sv), (Lines{"\xC3\xA4", "b"}));
  EXPECT_EQ(LoadedFrom("\xE4\nb\n"), (Lines{"\xE4", "b"}));
  EXPECT_EQ(LoadedFrom(""), Lines());
}

TEST(Utils, AFileThatIsNotThereIsNamed) {
  const TestFolder folder;
  TStringList lines;
  try {
    LoadUnicodeFile(folder / "none.sln", lines);
    FAIL();
  } catch (const Exception& failure) {
    EXPECT_NE(failure.Message().find("none.sln"), std::string::npos) << failure.Message();
  }
}

TEST(Utils, ExpandsRelativePathsToTheCaseOnDisk) {
  const TestFolder folder;
  const std::string file = folder.Write("Lib/Source/A.rc", "");
  const std::string slash(1, NativeDelimiter());
  EXPECT_EQ(ExpandRelativePath(folder / "Lib", "source\\.\\..\\SOURCE\\a.RC"),
            slash == "\\" ? folder.Path() + "Lib\\SOURCE\\a.RC" : file);
  EXPECT_EQ(ExpandRelativePath(folder / "Lib", "no\\such"), (folder / "Lib") + slash + "no" + slash + "such");
  EXPECT_EQ(ExpandRelativePath("elsewhere", folder / "Lib"), folder / "Lib");
}

class Picker : public UserInterface {
 public:
  std::optional<std::string> PickFile(const FileQuestion& question) override {
    asked = question.title + "," + question.filter + "," + question.defaultExtension + "," + question.current;
    return answer;
  }
  std::optional<std::string> PickFolder(const std::string& title, const std::string& current) override {
    asked = title + "," + current;
    return answer;
  }
  void ShowMessage(const std::string& text) override { asked = "message: " + text; }
  void ShowError(const std::string& text) override { asked = "error: " + text; }
  std::string asked;
  std::optional<std::string> answer;
};

TEST(Utils, PickersAskTheUserInterface) {
  Picker picker;
  SetUserInterface(&picker);
  std::string path = "old";
  EXPECT_FALSE(QXBrowseForFile("Title", "All|*.*", path));
  EXPECT_EQ(path, "old");
  EXPECT_EQ(picker.asked, "Title,All|*.*,,old");
  picker.answer = "new";
  EXPECT_TRUE(QXBrowseForFile("Title", "All|*.*", path));
  EXPECT_EQ(path, "new");
  EXPECT_TRUE(QXBrowseForDirectory("Folder", path));
  EXPECT_EQ(picker.asked, "Folder,new");
  SetUserInterface(nullptr);
}

TEST(Utils, FileDialogsKeepTheirNameWhenCancelled) {
  Picker picker;
  SetUserInterface(&picker);
  TOpenDialog dialog{"Select", "Results|*.trx", "trx", "old"};
  EXPECT_FALSE(dialog.Execute());
  EXPECT_EQ(dialog.fileName, "old");
  EXPECT_EQ(picker.asked, "Select,Results|*.trx,trx,old");
  picker.answer = "new";
  EXPECT_TRUE(dialog.Execute());
  EXPECT_EQ(dialog.fileName, "new.trx");
  picker.answer = "other.xml";
  EXPECT_TRUE(dialog.Execute());
  EXPECT_EQ(dialog.fileName, "other.xml");
  SetUserInterface(nullptr);
}

TEST(Utils, MessagesGoToTheUserInterface) {
  Picker picker;
  SetUserInterface(&picker);
  QXShowMessage("Ready");
  EXPECT_EQ(picker.asked, "message: Ready");
  QXShowError("Not ready");
  EXPECT_EQ(picker.asked, "error: Not ready");
  SetUserInterface(nullptr);
  QXShowMessage("Nobody sees it");
  QXShowError("Nor this");
}

TEST(Utils, WithoutAUserInterfacePickersAreCancelled) {
  std::string path = "old";
  EXPECT_FALSE(QXBrowseForFile("Title", "", path));
  EXPECT_FALSE(QXBrowseForDirectory("Title", path));
  EXPECT_EQ(path, "old");
}

TEST(Utils, TemporaryPathIsAFolderWithoutTrailingDelimiter) {
  const std::string folder = GetTemporaryPath();
  EXPECT_TRUE(std::filesystem::is_directory(folder));
  EXPECT_FALSE(IsDelimiter(folder.back()));
  EXPECT_EQ(GetTemporaryPath(), folder);
}

TEST(Utils, MachineHasAName) { EXPECT_FALSE(MachineName().empty()); }

}  // namespace
}  // namespace qx
