#include "host/settings/Engine.h"

#include <sys/stat.h>

#include <cstdlib>
#include <optional>

#include "host/settings/DotNetInfo.h"
#include "host/settings/HostSettings.h"
#include "host/system/HostProgram.h"
#include "host/testing/TestFolder.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryExport.h"
#include "plugin/Qxdotnetinfo.h"

namespace qx {
namespace {

constexpr const char* kKey2003 = "SOFTWARE\\Microsoft\\VisualStudio\\7.1";

// An engine beside this program (the real one, in a build of everything), and a PATH of one folder.
class InstalledEngine : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(place_);
    isMade_ = !std::filesystem::exists(place_ + "devenv.com");
    if (isMade_) std::ofstream(place_ + "devenv.com") << "";
    path_ = std::getenv("PATH");
    setenv("PATH", ("/nowhere:" + folder_.Path()).c_str(), 1);
  }
  void TearDown() override {
    if (isMade_) std::filesystem::remove(place_ + "devenv.com");
    setenv("PATH", path_.c_str(), 1);
  }
  void PutOnPath(const std::string& name, mode_t mode = 0755) {
    chmod(folder_.Write(name, "#!/bin/sh\n").c_str(), mode);
  }
  const std::string place_ = ProgramFolder() + "engine/";
  TestFolder folder_;

 private:
  std::string path_;
  bool isMade_ = false;
};

TEST_F(InstalledEngine, NeedsACompilerOnThePath) {
  EXPECT_EQ(InstalledEngineFolder(), "");
  EXPECT_FALSE(QXDotNetInfo()->FindVersion("v2.0"));
  PutOnPath("xbuild", 0644);
  EXPECT_EQ(InstalledEngineFolder(), "");
  for (const std::string compiler :
       {"msbuild", "dotnet", "xbuild", "mcs", "i686-w64-mingw32-g++", "x86_64-w64-mingw32-g++"}) {
    PutOnPath(compiler);
    EXPECT_EQ(InstalledEngineFolder(), place_) << compiler;
    std::filesystem::remove(folder_ / compiler);
    EXPECT_EQ(InstalledEngineFolder(), "") << compiler;
  }
}

TEST_F(InstalledEngine, StandsForTheFrameworkOfTheYearUnlessOneIsSet) {
  PutOnPath("mcs");
  ASSERT_TRUE(QXDotNetInfo()->FindVersion("v2.0"));
  EXPECT_EQ(QXDotNetInfo()->FindVersion("v2.0")->GetInstallFolder(), place_);
  EXPECT_FALSE(QXDotNetInfo()->FindVersion("v1.1"));
  HostSettings settings;
  settings.frameworks["v2.0"] = "/set";
  const HostSettingsInUse use(settings);
  EXPECT_EQ(QXDotNetInfo()->FindVersion("v2.0")->GetInstallFolder(), "/set");
}

TEST_F(InstalledEngine, IsWhatTheHostsOwnRegistryKnows) {
  std::optional<HostSettingsInUse> use;
  use.emplace(HostSettings());
  EXPECT_EQ(ReadMachineText(kKey2003, "InstallDir"), std::nullopt);
  PutOnPath("mcs");
  use.emplace(HostSettings());
  for (const std::string product : {"7.0", "7.1", "8.0"}) {
    EXPECT_EQ(ReadMachineText("SOFTWARE\\Microsoft\\VisualStudio\\" + product, "InstallDir"), place_)
        << product;
  }
}

TEST_F(InstalledEngine, IsNotKnownWhereAFileStandsInForTheRegistry) {
  PutOnPath("mcs");
  HostSettings settings;
  settings.registryFile = folder_.Write("empty.reg", "REGEDIT4\r\n");
  const HostSettingsInUse use(settings);
  EXPECT_EQ(ReadMachineText(kKey2003, "InstallDir"), std::nullopt);
}

TEST(EngineRegistry, CarriesAnyFolder) {
  const auto registry = RegistryExport::FromBytes(EngineRegistry("/a \"b\"/c\\d/"));
  ASSERT_TRUE(registry);
  EXPECT_EQ(registry->MachineText(kKey2003, "InstallDir"), "/a \"b\"/c\\d/");
  EXPECT_EQ(EngineRegistry(""), "");
}

TEST(EngineSettings, ReachChildrenByTheEnvironmentAndGiveItBack) {
  setenv("QX_ENGINE_JOBS", "5", 1);
  unsetenv("QX_ENGINE_LAUNCHER");
  ApplyEngineSettings({"ccache", "2", "vb"});
  EXPECT_STREQ(std::getenv("QX_ENGINE_LAUNCHER"), "ccache");
  EXPECT_STREQ(std::getenv("QX_ENGINE_JOBS"), "2");
  EXPECT_STREQ(std::getenv("QX_ENGINE_SKIP"), "vb");
  ApplyEngineSettings({});
  EXPECT_EQ(std::getenv("QX_ENGINE_LAUNCHER"), nullptr);
  EXPECT_STREQ(std::getenv("QX_ENGINE_JOBS"), "5");
}

}  // namespace
}  // namespace qx
