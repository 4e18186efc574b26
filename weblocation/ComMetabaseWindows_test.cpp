// The metabase through the real binding: CoGetObject finds a test server of this process under the moniker's name.
#include <gtest/gtest.h>

#include "platform/registry/ComObject.h"
#include "plugin/Qxtypes.h"
#include "plugin/Qxutils.h"
#include "weblocation/Qxresolveiisdirectory.h"
#include "weblocation/testdata/TestMetabase.h"

namespace qx {
namespace {

class ComMetabase : public testing::Test {
 protected:
  void SetUp() override {
    if (!server_.IsRegistered()) GTEST_SKIP() << "the moniker's name could not be registered in this prefix";
  }
  static std::string ComplaintOf(const std::string& url) {
    try {
      return "resolved to " + GetPhysicalDirFromIISDir(url, 1);
    } catch (const Exception& e) {
      return e.Message();
    }
  }

  test_metabase::LocalServer server_;
};

TEST_F(ComMetabase, BindsAndReadsLateBound) {
  const auto object = BindComObject("IIS://localhost/w3svc/1/ROOT/Site");
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->GetText("class"), "IIsWebVirtualDir");
  EXPECT_EQ(object->GetText("Path"), "D:\\Web\\Site");
  EXPECT_THROW(object->GetText("Nonsense"), Exception);
}

TEST_F(ComMetabase, GivesNothingForAnUnknownNodeOrMoniker) {
  EXPECT_EQ(BindComObject("IIS://localhost/w3svc/1/ROOT/Nowhere"), nullptr);
  EXPECT_EQ(BindComObject("NoSuchMoniker://x"), nullptr);
}

TEST_F(ComMetabase, ResolvesAVirtualDirectoryAndAFolderBelowIt) {
  EXPECT_EQ(GetPhysicalDirFromIISDir("http://localhost/Site/App.csproj", 1), "D:\\Web\\Site\\App.csproj");
  EXPECT_EQ(GetPhysicalDirFromIISDir("http://localhost/Site/Sub/App.csproj", 1),
            "D:\\Web\\Site\\Sub\\App.csproj");
}

TEST_F(ComMetabase, AsksForTheSiteOfThatNumber) {
  EXPECT_EQ(GetPhysicalDirFromIISDir("http://localhost/Site/App.csproj", 2), "E:\\Second\\App.csproj");
}

TEST_F(ComMetabase, GoesThroughTheShareOfAnotherServer) {
  EXPECT_EQ(GetPhysicalDirFromIISDir("http://web1/Site/App.csproj", 1),
            "\\\\web1\\D$\\Web\\Site\\App.csproj");
  EXPECT_EQ(GetPhysicalDirFromIISDir("http://" + MachineName() + "/Site/App.csproj", 1),
            "D:\\Web\\Site\\App.csproj");
}

TEST_F(ComMetabase, ComplainsAboutUnknownNodesAndWrongClasses) {
  const std::string nothing = "Unable to resolve to physical path - no object found";
  EXPECT_EQ(ComplaintOf("http://localhost/Nowhere/App.csproj"), nothing);
  EXPECT_EQ(ComplaintOf("http://localhost/Wrong/App.csproj"), nothing);
}

}  // namespace
}  // namespace qx
