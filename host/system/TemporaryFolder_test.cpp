#include "host/system/TemporaryFolder.h"

#include <gtest/gtest.h>

#include "platform/files/Files.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

TEST(TemporaryFolder, StaysForTheRunAndGoesWithIt) {
  const std::string folder = GetTemporaryPath();
  EXPECT_EQ(GetTemporaryPath(), folder);
  CreateFolders(folder + "/a/b");
  ReplaceFile(folder + "/a/b/c.txt", "x");
  RemoveTemporaryFolder();
  EXPECT_FALSE(FolderExists(folder));
  const std::string next = GetTemporaryPath();
  EXPECT_NE(next, folder);
  EXPECT_TRUE(FolderExists(next));
}

TEST(TemporaryFolder, IsMadeAgainWhenSomebodyRemovedIt) {
  const std::string folder = GetTemporaryPath();
  RemoveTemporaryFolder();
  RemoveTemporaryFolder();
  EXPECT_TRUE(FolderExists(GetTemporaryPath()));
}

}  // namespace
}  // namespace qx
