#include "host/runtime/HostSettings.h"

#include "platform/Registry.h"
#include "platform/TestFolder.h"
#include "plugin/Qxdotnetinfo.h"

namespace qx {
namespace {

using Values = std::vector<std::pair<std::string, std::string>>;

class Settings : public testing::Test {
 protected:
  void TearDown() override { ApplyHostSettings({}); }
};

TEST_F(Settings, NamesAreCheckedAndBroughtIntoForm) {
  EXPECT_EQ(CheckHostSettingName("framework.V2.0"), "Framework.v2.0");
  EXPECT_EQ(CheckHostSettingName("registry"), "Registry");
  EXPECT_EQ(CheckHostSettingName("unc.\\\\Server\\Share"), "Unc.\\\\Server\\Share");
}

TEST_F(Settings, OtherNamesAreRefused) {
  for (const std::string name :
       {"", "Framework", "Framework.", "Framework.2.0", "Framework.v", "Framework.v../x", "Framework.v2.",
        "Unc.server\\share", "Unc.\\\\server", "Unc.\\\\server\\", "Unc.\\\\server\\share\\sub",
        "Unc.\\\\\\share", "Registry2"}) {
    try {
      CheckHostSettingName(name);
      ADD_FAILURE() << name;
    } catch (const Exception& failure) {
      EXPECT_EQ(failure.Message(), "There is no host setting \"" + name +
                                       "\"; the names are Framework.VERSION (Framework.v2.0), "
                                       "Unc.\\\\server\\share, Registry and WebDavTimeout");
    }
  }
}

TEST_F(Settings, KnowsWhichNamesAreMeantForTheHost) {
  EXPECT_TRUE(IsHostSettingName("framework.x"));
  EXPECT_TRUE(IsHostSettingName("Unc."));
  EXPECT_TRUE(IsHostSettingName("REGISTRY"));
  EXPECT_FALSE(IsHostSettingName("DevEnvLocation"));
}

TEST_F(Settings, ComeFromTheStoresValues) {
  const Values values{{"Framework.v2.0", "/opt/v2"},
                      {"Framework.v3.5", ""},
                      {"Unc.\\\\Server\\Web", "/mnt/web"},
                      {"Registry", "/etc/machine.reg"},
                      {"Future", "unknown"}};
  const HostSettings settings = HostSettings::From(values);
  EXPECT_EQ(settings.frameworks, (std::map<std::string, std::string>{{"v2.0", "/opt/v2"}}));
  EXPECT_EQ(settings.shares, (std::map<std::string, std::string>{{"\\\\server\\web", "/mnt/web"}}));
  EXPECT_EQ(settings.registryFile, "/etc/machine.reg");
}

TEST_F(Settings, AFrameworkThatIsSetIsFoundInAnyCase) {
  ApplyHostSettings(HostSettings::From(Values{{"Framework.v2.0", "/opt/v2"}}));
  const auto info = QXDotNetInfo();
  ASSERT_TRUE(info->FindVersion("V2.0"));
  EXPECT_EQ(info->FindVersion("v2.0")->GetInstallFolder(), "/opt/v2");
}

TEST_F(Settings, AFrameworkThatNobodyHasIsNotFound) {
  const auto info = QXDotNetInfo();
  EXPECT_FALSE(info->FindVersion("v9.9"));
  EXPECT_FALSE(info->FindVersion(""));
  EXPECT_FALSE(info->FindVersion("v2.0/../v2.0"));
}

TEST_F(Settings, ARegistryThatIsNotThereIsNamed) {
  const TestFolder folder;
  HostSettings settings;
  settings.registryFile = folder / "none.reg";
  settings.frameworks["v2.0"] = "/changed";
  try {
    ApplyHostSettings(settings);
  } catch (const Exception& failure) {
    EXPECT_NE(failure.Message().find("none.reg"), std::string::npos);
    EXPECT_TRUE(CurrentHostSettings().frameworks.empty());
    return;
  }
  // The real registry needs no file.
  EXPECT_EQ(CurrentHostSettings().frameworks.size(), 1U);
}

}  // namespace
}  // namespace qx
