#include "pages/Qxvsdotnetoptionsframe.h"

#include <gtest/gtest.h>

#include "host/pages/PageDriver.h"
#include "host/testing/TestFolder.h"
#include "options/Qxvsdotnetoptions.h"

namespace qx {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kDevEnvEdits[] = {"txtMSDevLocation", "txtMSDev2003Location", "txtMSDev2005Location"};

class OptionsPage : public testing::Test {
 protected:
  OptionsPage() { page.InitFrame(); }
  template <class Control>
  Control& Of(const char* name) {
    return dynamic_cast<Control&>(*page.FindControl(name));
  }
  TButtonEdit& Edit(const char* name) { return Of<TButtonEdit>(name); }
  void Type(const char* name, const std::string& text) {
    EXPECT_EQ(Edit(name).UserType(text), TUserAnswer::Done);
  }
  Texts Chosen() {
    Texts chosen;
    for (const char* name : {"rbVS2002", "rbVS2003", "rbVS2005"})
      if (Of<TRadioButton>(name).Checked()) chosen.push_back(name);
    return chosen;
  }

  DrivenUser user;
  TVSDotNetOptions options;
  TVSDotNetOptionsFrame page;
};

TEST_F(OptionsPage, HasNoNameAndTakesThesePackagesOptionsOnly) {
  class Others final : public TQXOptionsObject {
   public:
    Others() : TQXOptionsObject(TVSDotNetOptions::Class()) {}
  } others;
  EXPECT_EQ(page.GetPageName(), "");
  EXPECT_EQ(MessageOf([&] { page.ReadOptions(others); }), "Invalid class typecast");
  EXPECT_EQ(MessageOf([&] { page.WriteOptions(others); }), "Invalid class typecast");
}

TEST_F(OptionsPage, ShowsAndWritesEverySetting) {
  options.SetDevEnvLocation("C:\\2002");
  options.SetDevEnv2003Location("C:\\2003\\");
  options.SetDevEnv2005Location("C:\\2005");
  options.SetMSTestLocation("C:\\2005\\MSTest.exe");
  page.ReadOptions(options);
  EXPECT_EQ(Edit("txtMSDevLocation").Text(), "C:\\2002");
  EXPECT_EQ(Edit("txtMSDev2003Location").Text(), "C:\\2003\\");
  EXPECT_EQ(Edit("txtMSDev2005Location").Text(), "C:\\2005");
  EXPECT_EQ(Edit("txtMSTestLoc").Text(), "C:\\2005\\MSTest.exe");
  Type("txtMSDevLocation", "D:\\2");
  Type("txtMSDev2003Location", "D:\\3");
  Type("txtMSDev2005Location", "");
  Type("txtMSTestLoc", "D:\\MSTest.exe");
  page.WriteOptions(options);
  EXPECT_EQ(options.GetDevEnvLocation(), "D:\\2");
  EXPECT_EQ(options.GetDevEnv2003Location(), "D:\\3");
  EXPECT_EQ(options.GetDevEnv2005Location(), "");
  EXPECT_EQ(options.GetMSTestLocation(), "D:\\MSTest.exe");
}

TEST_F(OptionsPage, ShowsAndWritesTheDefaultVersion) {
  constexpr std::pair<TVSDotNetVersion, const char*> kVersions[] = {{TVSDotNetVersion::vs2002, "rbVS2002"},
                                                                    {TVSDotNetVersion::vs2003, "rbVS2003"},
                                                                    {TVSDotNetVersion::vs2005, "rbVS2005"}};
  for (const auto& [version, name] : kVersions) {
    options.SetDefaultVSVersion(version);
    page.ReadOptions(options);
    EXPECT_EQ(Chosen(), Texts{name});
    for (const auto& [other, otherName] : kVersions) {
      EXPECT_EQ(Of<TRadioButton>(otherName).UserClick(), TUserAnswer::Done);
      page.WriteOptions(options);
      EXPECT_EQ(options.GetDefaultVSVersion(), other);
    }
  }
}

TEST_F(OptionsPage, Stores2005WhenNoVersionIsChosen) {
  options.SetDefaultVSVersion(static_cast<TVSDotNetVersion>(9));
  page.ReadOptions(options);
  EXPECT_EQ(Chosen(), Texts{});
  page.WriteOptions(options);
  EXPECT_EQ(options.GetDefaultVSVersion(), TVSDotNetVersion::vs2005);
}

TEST_F(OptionsPage, KeepsTheFolderOfAProgramThatWasNamed) {
  for (const char* name : kDevEnvEdits) {
    Type(name, "C:\\VS\\IDE\\devenv.com");
    page.WriteOptions(options);
    EXPECT_EQ(Edit(name).Text(), "C:\\VS\\IDE\\");
    Type(name, "C:\\VS\\IDE\\DevEnv.EXE");
    page.WriteOptions(options);
    EXPECT_EQ(Edit(name).Text(), "C:\\VS\\IDE\\");
  }
  EXPECT_EQ(options.GetDevEnvLocation(), "C:\\VS\\IDE\\");
  EXPECT_EQ(options.GetDevEnv2003Location(), "C:\\VS\\IDE\\");
  EXPECT_EQ(options.GetDevEnv2005Location(), "C:\\VS\\IDE\\");
}

TEST_F(OptionsPage, CutsBackAFolderThatIsNamedLikeTheProgram) {
  Type("txtMSDevLocation", "C:\\VS\\my devenv.exe folder");
  Type("txtMSDev2003Location", "C:\\devenv.com\\IDE");
  Type("txtMSDev2005Location", "devenv.exe");
  page.WriteOptions(options);
  EXPECT_EQ(options.GetDevEnvLocation(), "C:\\VS\\");
  EXPECT_EQ(options.GetDevEnv2003Location(), "C:\\devenv.com\\");
  EXPECT_EQ(options.GetDevEnv2005Location(), "");
}

TEST_F(OptionsPage, KeepsTheLocationOfMSTestWhole) {
  for (const char* text : {"C:\\VS\\MSTest.exe", "C:\\VS\\devenv.exe", ""}) {
    Type("txtMSTestLoc", text);
    page.WriteOptions(options);
    EXPECT_EQ(options.GetMSTestLocation(), text);
  }
}

TEST_F(OptionsPage, MarksTheOptionsAsChangedOnlyWhenTheyAre) {
  page.ReadOptions(options);
  page.WriteOptions(options);
  EXPECT_FALSE(options.IsModified());
  Type("txtMSTestLoc", "C:\\MSTest.exe");
  page.WriteOptions(options);
  EXPECT_TRUE(options.IsModified());
}

TEST_F(OptionsPage, PicksFolders) {
  for (const char* name : kDevEnvEdits) {
    Type(name, "C:\\old");
    EXPECT_EQ(Edit(name).UserPressButton(0), TUserAnswer::Done);
    EXPECT_EQ(Edit(name).Text(), "C:\\old");  // cancelled
    user.Queue(DrivenUser::Picker::Folder, "C:\\new");
    EXPECT_EQ(Edit(name).UserPressButton(0), TUserAnswer::Done);
    EXPECT_EQ(Edit(name).Text(), "C:\\new");
    const auto shown = user.TakeShown();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1]["kind"], "folder");
    EXPECT_EQ(shown[1]["title"], "Devenv.com Location");
    EXPECT_EQ(shown[1]["path"], "C:\\old");
  }
  EXPECT_EQ(Edit("txtMSTestLoc").Text(), "");  // one button, one edit
}

TEST_F(OptionsPage, PicksMSTest) {
  Type("txtMSTestLoc", "C:\\old.exe");
  user.Queue(DrivenUser::Picker::File, "C:\\MSTest.exe");
  EXPECT_EQ(Edit("txtMSTestLoc").UserPressButton(0), TUserAnswer::Done);
  EXPECT_EQ(Edit("txtMSTestLoc").Text(), "C:\\MSTest.exe");
  const auto shown = user.TakeShown();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0]["kind"], "file");
  EXPECT_EQ(shown[0]["title"], "Select File");
  EXPECT_EQ(shown[0]["filter"], "MSTest.exe|MSTest.exe");
  EXPECT_EQ(shown[0]["defaultExtension"], "");
  EXPECT_EQ(shown[0]["path"], "C:\\old.exe");
}

}  // namespace
}  // namespace qx
