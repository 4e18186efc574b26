#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

TEST(Shares, AreTheSystemsOwn) {
  TestFolder folder;
  folder.Write("a.txt", "x");
  SetShares({{"\\\\server\\share", folder.Path()}});
  EXPECT_FALSE(FileExists("\\\\server\\share\\a.txt"));
  SetShares({});
}

}  // namespace
}  // namespace qx
