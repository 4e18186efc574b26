#include <gtest/gtest.h>

#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/TestFolder.h"

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
