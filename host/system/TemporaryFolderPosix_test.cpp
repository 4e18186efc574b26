#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/system/TemporaryFolder.h"
#include "platform/files/Files.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

TEST(TemporaryFolderMode, IsClosedToOthers) {
  struct stat status {};
  ASSERT_EQ(stat(GetTemporaryPath().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST(TemporaryFolderMode, LinksInItAreRemovedAndNotFollowed) {
  const std::string kept = MakePrivateFolder();
  ReplaceFile(kept + "/kept.txt", "x");
  ASSERT_EQ(symlink(kept.c_str(), (GetTemporaryPath() + "/link").c_str()), 0);
  RemoveTemporaryFolder();
  EXPECT_TRUE(FileExists(kept + "/kept.txt"));
  RemoveFile(kept + "/kept.txt");
  EXPECT_EQ(rmdir(kept.c_str()), 0);
}

}  // namespace
}  // namespace qx
