#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

class Shares : public testing::Test {
 protected:
  Shares() {
    folder.Write("Site/Sub/App.csproj", "project");
    SetShares({{"\\\\server\\wwwroot$", folder.Path()}, {"\\\\loop\\s", "\\\\loop\\s"}});
  }
  ~Shares() override { SetShares({}); }
  TestFolder folder;
};

TEST_F(Shares, LeadToWhereTheyAreMounted) {
  for (const char* path :
       {"\\\\server\\wwwroot$\\Site/Sub\\App.csproj", "//server/wwwroot$/Site/Sub/App.csproj",
        "\\\\SERVER\\WWWRoot$\\site\\SUB\\app.CSPROJ", "\\\\server\\wwwroot$\\\\Site\\Sub\\App.csproj"}) {
    EXPECT_TRUE(FileExists(path)) << path;
    EXPECT_EQ(ReadFile(path), "project") << path;
  }
}

TEST_F(Shares, HoldFilesThatAreWritten) {
  ReplaceFile("\\\\server\\wwwroot$\\Site/new.cs", "new");
  EXPECT_EQ(folder.Read("Site/new.cs"), "new");
  RemoveFile("\\\\server\\wwwroot$\\Site/new.cs");
  EXPECT_FALSE(FileExists(folder / "Site/new.cs"));
}

TEST_F(Shares, AreExpandedAsTheFolder) {
  EXPECT_EQ(ExpandPath("\\\\server\\wwwroot$\\Site/Sub\\", "Properties\\A.cs"),
            ExpandPath(folder / "Site/Sub/", "Properties/A.cs"));
  EXPECT_EQ(ExpandPath("/elsewhere", "\\\\server\\wwwroot$\\A.cs"), ExpandPath(folder.Path(), "A.cs"));
}

TEST_F(Shares, OfOtherNamesAreNotTouched) {
  for (const char* path :
       {"\\\\server\\wwwroot\\Site\\Sub\\App.csproj", "\\\\other\\wwwroot$\\Site\\Sub\\App.csproj",
        "\\server\\wwwroot$\\Site\\Sub\\App.csproj", "\\\\server", "\\\\", "\\\\loop\\s\\x"}) {
    EXPECT_FALSE(FileExists(path)) << path;
  }
}

TEST_F(Shares, AreForgottenAgain) {
  SetShares({});
  EXPECT_FALSE(FileExists("\\\\server\\wwwroot$\\Site\\Sub\\App.csproj"));
}

}  // namespace
}  // namespace qx
