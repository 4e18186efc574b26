#include "weblocation/TemporaryName.h"

#include <gtest/gtest.h>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// The complaint about a name, empty when it is taken.
std::string ComplaintAbout(std::string_view name) {
  try {
    RequireTemporaryName(name);
  } catch (const Exception& e) {
    return e.Message();
  }
  return {};
}

std::string ComplaintAboutFolder(std::string_view folder) {
  try {
    RequireRemoteFolder(folder);
  } catch (const Exception& e) {
    return e.Message();
  }
  return {};
}

TEST(TemporaryName, TakesPlainNames) {
  for (const char* name :
       {"App.csproj", "AssemblyInfo.cs", "My App.vbproj", "\xC3\x9C.cs", ".hidden", "a..b", "console.cs",
        "com.cs", "com10.cs", "nullable.cs", "C#.cs", "100%.cs", "lpt.cs", "auxiliary"}) {
    EXPECT_EQ(ComplaintAbout(name), "") << name;
  }
}

TEST(TemporaryName, RefusesWhatIsNoFile) {
  EXPECT_EQ(ComplaintAbout(""), "Refused to use \"\" as the name of a temporary file: it is empty");
  EXPECT_EQ(ComplaintAbout("."), "Refused to use \".\" as the name of a temporary file: it is a folder");
  EXPECT_EQ(ComplaintAbout(".."), "Refused to use \"..\" as the name of a temporary file: it is a folder");
}

TEST(TemporaryName, RefusesDelimitersOfEitherKind) {
  EXPECT_EQ(ComplaintAbout("../x.cs"),
            "Refused to use \"../x.cs\" as the name of a temporary file: it holds a path delimiter");
  EXPECT_EQ(ComplaintAbout("..\\x.cs"),
            "Refused to use \"..\\x.cs\" as the name of a temporary file: it holds a path delimiter");
  EXPECT_NE(ComplaintAbout("/etc/passwd"), "");
  EXPECT_NE(ComplaintAbout("\\\\server\\share"), "");
}

TEST(TemporaryName, RefusesDrivesAndStreams) {
  EXPECT_EQ(ComplaintAbout("C:x.cs"),
            "Refused to use \"C:x.cs\" as the name of a temporary file: it holds a colon");
  EXPECT_NE(ComplaintAbout("x.cs:stream"), "");
}

TEST(TemporaryName, RefusesControlCharactersAndShowsThem) {
  EXPECT_EQ(
      ComplaintAbout("a\r\nb.cs"),
      "Refused to use \"a\\x0D\\x0Ab.cs\" as the name of a temporary file: it holds a control character");
  EXPECT_NE(ComplaintAbout(std::string_view("a\0b", 3)), "");
  EXPECT_NE(ComplaintAbout("a\x7F"), "");
}

TEST(TemporaryName, RefusesDeviceNamesInAnyLetterCaseWithAnyExtension) {
  for (const char* name : {"CON", "con", "Nul.cs", "aux.tar.gz", "PRN", "COM1", "com9.txt", "lpt1", "LPT0.cs",
                           "COM\xC2\xB9.cs", "con .txt", "CONIN$", "conout$", "CLOCK$"}) {
    EXPECT_EQ(ComplaintAbout(name), std::string("Refused to use \"") + name +
                                        "\" as the name of a temporary file: it is the name of a device");
  }
}

TEST(TemporaryName, RefusesEndsThatWindowsDrops) {
  EXPECT_EQ(ComplaintAbout("x.cs."),
            "Refused to use \"x.cs.\" as the name of a temporary file: it ends in a point or blank");
  EXPECT_NE(ComplaintAbout(".. "), "");
  EXPECT_NE(ComplaintAbout("..."), "");
}

TEST(RemoteFolder, TakesFoldersBelowTheProject) {
  for (const char* folder : {"", "Site", "Site/Sub", "Site/Properties\\", "C#/\xC3\x9C ber", "a..b/c"}) {
    EXPECT_EQ(ComplaintAboutFolder(folder), "") << folder;
  }
}

TEST(RemoteFolder, RefusesToClimbAndNamesTheFolder) {
  EXPECT_EQ(ComplaintAboutFolder("Site/.."),
            "Refused to use the remote folder \"Site/..\": it leads out of the project's folder");
  EXPECT_NE(ComplaintAboutFolder("Site\\..\\Other"), "");
  EXPECT_NE(ComplaintAboutFolder("../Other"), "");
  EXPECT_EQ(ComplaintAboutFolder("Site/C:\\x"),
            "Refused to use the remote folder \"Site/C:\\x\": it holds a colon");
  EXPECT_EQ(ComplaintAboutFolder("a\nb"),
            "Refused to use the remote folder \"a\\x0Ab\": it holds a control character");
}

}  // namespace
}  // namespace qx
