#include <sys/stat.h>

#include <cstdlib>

#include "host/runtime/DotNetInfo.h"
#include "host/runtime/HostProgram.h"
#include "host/runtime/HostSettings.h"
#include "platform/TestFolder.h"
#include "plugin/Qxdotnetinfo.h"

namespace qx {
namespace {

// The hand-over beside this program, in a version that no real one has, and a PATH of one folder.
class InstalledFramework : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(place_);
    std::ofstream(place_ + "/MSBuild.exe") << "";
    path_ = std::getenv("PATH");
    setenv("PATH", ("/nowhere:" + folder_.Path()).c_str(), 1);
  }
  void TearDown() override {
    std::filesystem::remove_all(place_);
    setenv("PATH", path_.c_str(), 1);
  }
  void PutOnPath(const std::string& name, mode_t mode) {
    chmod(folder_.Write(name, "#!/bin/sh\n").c_str(), mode);
  }
  const std::string place_ = ProgramFolder() + "framework/v77.1";
  TestFolder folder_;

 private:
  std::string path_;
};

TEST_F(InstalledFramework, NeedsAnEngineOnThePath) {
  EXPECT_FALSE(QXDotNetInfo()->FindVersion("v77.1"));
  PutOnPath("xbuild", 0644);
  EXPECT_FALSE(QXDotNetInfo()->FindVersion("v77.1"));
  PutOnPath("xbuild", 0755);
  ASSERT_TRUE(QXDotNetInfo()->FindVersion("v77.1"));
  EXPECT_EQ(QXDotNetInfo()->FindVersion("v77.1")->GetInstallFolder(), place_);
}

TEST_F(InstalledFramework, TakesAnyOfTheThreeEngines) {
  for (const std::string engine : {"msbuild", "dotnet", "xbuild"}) {
    PutOnPath(engine, 0755);
    EXPECT_EQ(InstalledFrameworkFolder("v77.1"), place_) << engine;
    std::filesystem::remove(folder_ / engine);
    EXPECT_EQ(InstalledFrameworkFolder("v77.1"), "") << engine;
  }
}

TEST_F(InstalledFramework, GivesWayToASetting) {
  HostSettings settings;
  settings.frameworks["v77.1"] = "/set";
  ApplyHostSettings(settings);
  EXPECT_EQ(QXDotNetInfo()->FindVersion("v77.1")->GetInstallFolder(), "/set");
  ApplyHostSettings({});
}

}  // namespace
}  // namespace qx
