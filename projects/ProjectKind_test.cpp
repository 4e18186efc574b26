#include "projects/ProjectKind.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

constexpr const char* kAnyType = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}";

TEST(ProjectKind, GoesByTheExtensionInAnyLetterCase) {
  EXPECT_EQ(KindOfProject("src\\A.VCPROJ", kAnyType), ProjectKind::VisualCpp);
  EXPECT_EQ(KindOfProject("A.csproj", kAnyType), ProjectKind::CSharp);
  EXPECT_EQ(KindOfProject("A.vbproj", kAnyType), ProjectKind::VisualBasic);
  EXPECT_EQ(KindOfProject("A.vjsproj", kAnyType), ProjectKind::JSharp);
  EXPECT_EQ(KindOfProject("Setup\\Setup.vdproj", kAnyType), ProjectKind::Setup);
  EXPECT_EQ(KindOfProject("A.csdproj", kAnyType), ProjectKind::Other);
  EXPECT_EQ(KindOfProject("", ""), ProjectKind::Other);
}

TEST(ProjectKind, KnowsWebProjectsAndSolutionFolders) {
  EXPECT_EQ(KindOfProject("http://localhost/App/App.csproj", kAnyType), ProjectKind::Web);
  EXPECT_EQ(KindOfProject("C:\\WebSites\\Shop\\", "{E24C65DC-7377-472B-9ABA-BC803B73C61A}"),
            ProjectKind::Web);
  EXPECT_EQ(KindOfProject("Docs", "{2150e333-8fdc-42a3-9474-1a3956d46de8}"), ProjectKind::Folder);
}

TEST(ProjectKind, HasNamesForReadingAndForSettings) {
  EXPECT_EQ(NameOfKind(ProjectKind::VisualBasic), "Visual Basic");
  EXPECT_EQ(KeyOfKind(ProjectKind::VisualBasic), "vb");
  EXPECT_EQ(KeyOfKind(ProjectKind::Setup), "setup");
}

}  // namespace
}  // namespace qx
