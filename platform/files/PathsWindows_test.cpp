#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "host/testing/TestFolder.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

TEST(Paths, ADriveEndsInItsColon) {
  EXPECT_EQ(FolderPart("C:App.sln"), "C:");
  EXPECT_EQ(FilePart("C:App.sln"), "App.sln");
}

TEST(ExpandPath, NeverClimbsOutOfAShare) {
  EXPECT_EQ(ExpandPath("\\\\server\\share\\sub\\", "..\\..\\..\\a"), "\\\\server\\share\\a");
  EXPECT_EQ(ExpandPath("//server/share", "x/../a.sln"), "\\\\server\\share\\a.sln");
}

TEST(ExpandPath, APathWithoutADriveTakesThatOfItsBase) {
  EXPECT_EQ(ExpandPath("D:\\base\\", "\\a"), "D:\\a");
  EXPECT_EQ(ExpandPath("\\\\server\\share\\base", "\\a"), "\\\\server\\share\\a");
}

// A real folder below the prefix's dosdevices/unc is a share to every call.
TEST(FindExisting, FindsFilesOnShares) {
  const char* prefix = std::getenv("WINEPREFIX");
  if (prefix == nullptr) GTEST_SKIP() << "no Wine prefix: there is no share to look at";
  const std::filesystem::path share =
      std::filesystem::path("Z:" + std::string(prefix)) / "dosdevices/unc/qxserver/share";
  std::filesystem::create_directories(share / "Site");
  ReplaceFile((share / "Site/App.sln").string(), "x");
  EXPECT_EQ(FindExisting("\\\\qxserver\\share/Site\\app.sln"), "\\\\qxserver\\share\\Site\\app.sln");
  EXPECT_EQ(ReadFile("\\\\qxserver/share\\SITE/App.sln"), "x");
  std::filesystem::remove_all(share.parent_path());
}

}  // namespace
}  // namespace qx
