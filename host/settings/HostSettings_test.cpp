#include "host/settings/HostSettings.h"

#include <algorithm>
#include <array>

#include "host/testing/TestFolder.h"
#include "platform/registry/Registry.h"
#include "plugin/Qxdotnetinfo.h"

namespace qx {
namespace {

using Values = std::vector<std::pair<std::string, std::string>>;

TEST(Settings, NamesAreCheckedAndBroughtIntoForm) {
  EXPECT_EQ(CheckHostSettingName("framework.V2.0"), "Framework.v2.0");
  EXPECT_EQ(CheckHostSettingName("registry"), "Registry");
  EXPECT_EQ(CheckHostSettingName("engine.LAUNCHER"), "Engine.Launcher");
  EXPECT_EQ(CheckHostSettingName("unc.\\\\Server\\Share"), "Unc.\\\\Server\\Share");
}

TEST(Settings, OtherNamesAreRefused) {
  for (const std::string name :
       {"", "Framework", "Framework.", "Framework.2.0", "Framework.v", "Framework.v../x", "Framework.v2.",
        "Unc.server\\share", "Unc.\\\\server", "Unc.\\\\server\\", "Unc.\\\\server\\share\\sub",
        "Unc.\\\\\\share", "Registry2", "Engine.", "Engine.Speed"}) {
    try {
      CheckHostSettingName(name);
      ADD_FAILURE() << name;
    } catch (const Exception& failure) {
      EXPECT_TRUE(failure.Message().starts_with("There is no host setting \"" + name +
                                                "\"; the names are Framework.VERSION (Framework.v2.0), "
                                                "Unc.\\\\server\\share, Registry"))
          << failure.Message();
      for (const HostSettingRow& row : HostSettingRows()) {
        EXPECT_NE(failure.Message().find(row.name), std::string::npos) << row.name;
      }
    }
  }
}

TEST(Settings, KnowsWhichNamesAreMeantForTheHost) {
  EXPECT_TRUE(IsHostSettingName("framework.x"));
  EXPECT_TRUE(IsHostSettingName("Unc."));
  EXPECT_TRUE(IsHostSettingName("REGISTRY"));
  EXPECT_FALSE(IsHostSettingName("DevEnvLocation"));
}

TEST(Settings, ComeFromTheStoresValues) {
  const Values values{{"Framework.v2.0", "/opt/v2"},       {"Framework.v3.5", ""},
                      {"Unc.\\\\Server\\Web", "/mnt/web"}, {"Registry", "/etc/machine.reg"},
                      {"Engine.Launcher", "ccache"},       {"engine.jobs", "3"},
                      {"Engine.Skip", "VB,setup"},         {"Future", "unknown"}};
  const HostSettings settings = HostSettings::From(values);
  EXPECT_EQ(settings.frameworks, (std::map<std::string, std::string>{{"v2.0", "/opt/v2"}}));
  EXPECT_EQ(settings.shares, (std::map<std::string, std::string>{{"\\\\server\\web", "/mnt/web"}}));
  EXPECT_EQ(settings.registryFile, "/etc/machine.reg");
  EXPECT_EQ(settings.engineLauncher, "ccache");
  EXPECT_EQ(settings.engineJobs, 3);
  EXPECT_EQ(settings.engineSkip, (std::vector<std::string>{"vb", "setup"}));
}

// What one kind of setting takes, tried on a row of its own.
std::string Checked(const HostValue& value, const std::string& given) {
  try {
    return CheckHostSettingValue(HostSettingRow{"Row", "", value, ""}, given);
  } catch (const Exception& refusal) {
    return "refused: " + refusal.Message();
  }
}

TEST(Settings, ValuesAreCheckedByTheirKind) {
  static constexpr std::array<std::string_view, 2> kWords{"fail", "warn"};
  const WholeNumber number{&HostSettings::webDavTimeout, 1, 20, "a number up to 20"};
  EXPECT_EQ(Checked(AnyText{}, " any, "), " any, ");
  EXPECT_EQ(Checked(number, "20"), "20");
  for (const std::string given : {"0", "21", "-1", "x", "1 ", "99999999999"}) {
    EXPECT_EQ(Checked(number, given), "refused: Row takes a number up to 20, not \"" + given + "\"");
  }
  EXPECT_EQ(Checked(OneWord{nullptr, kWords}, "WARN"), "warn");
  EXPECT_EQ(Checked(OneWord{nullptr, kWords}, "off"), "refused: Row takes fail or warn, not \"off\"");
  EXPECT_EQ(Checked(SomeWords{nullptr, kWords}, "Warn, fail"), "warn,fail");
  EXPECT_EQ(Checked(SomeWords{nullptr, kWords}, "warn,"),
            "refused: Row takes words with commas between them, of fail and warn, not \"warn,\"");
  const TestFolder folder;
  EXPECT_EQ(Checked(ExistingFile{}, folder / "none"), "refused: Row: there is no file " + (folder / "none"));
}

TEST(Settings, AValueThatASettingCannotHaveIsAsGoodAsNone) {
  for (const std::string given : {"0", "86401", "soon", ""}) {
    EXPECT_EQ(HostSettings::From(Values{{"WebDavTimeout", given}}).webDavTimeout, 60) << given;
  }
  EXPECT_EQ(HostSettings::From(Values{{"webdavtimeout", "86400"}}).webDavTimeout, 86400);
}

TEST(Settings, HelpExplainsEachInALine) {
  const std::string help = HostSettingsHelp();
  EXPECT_TRUE(help.starts_with(
      "Framework.VERSION=FOLDER: the folder that holds MSBuild.exe for a framework version.\n"
      "Unc.\\\\SERVER\\SHARE=FOLDER: where a network share is mounted (outside Windows).\n"))
      << help;
  EXPECT_NE(help.find("\nWebDavTimeout=SECONDS: "), std::string::npos) << help;
  EXPECT_NE(help.find(" (default: 60).\n"), std::string::npos) << help;
  EXPECT_EQ(std::count(help.begin(), help.end(), '\n'), static_cast<int>(HostSettingRows().size()));
}

TEST(Settings, AFrameworkThatIsSetIsFoundInAnyCase) {
  const HostSettingsInUse use(HostSettings::From(Values{{"Framework.v2.0", "/opt/v2"}}));
  const auto info = QXDotNetInfo();
  ASSERT_TRUE(info->FindVersion("V2.0"));
  EXPECT_EQ(info->FindVersion("v2.0")->GetInstallFolder(), "/opt/v2");
}

TEST(Settings, AFrameworkThatNobodyHasIsNotFound) {
  const auto info = QXDotNetInfo();
  EXPECT_FALSE(info->FindVersion("v9.9"));
  EXPECT_FALSE(info->FindVersion(""));
  EXPECT_FALSE(info->FindVersion("v2.0/../v2.0"));
}

TEST(Settings, ARegistryThatIsNotThereIsNamed) {
  const TestFolder folder;
  HostSettings settings;
  settings.registryFile = folder / "none.reg";
  settings.frameworks["v2.0"] = "/changed";
  try {
    const HostSettingsInUse use(settings);
    // The real registry needs no file.
    EXPECT_EQ(CurrentHostSettings().frameworks.size(), 1U);
  } catch (const Exception& failure) {
    EXPECT_NE(failure.Message().find("none.reg"), std::string::npos);
  }
  EXPECT_TRUE(CurrentHostSettings().frameworks.empty());
}

}  // namespace
}  // namespace qx
