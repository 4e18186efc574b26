#include "platform/files/Paths.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/System.h"

namespace qx {
namespace {

// A path in the system's own form, written with slashes: "/a/b" is "C:\a\b" on Windows.
std::string Native(std::string path) {
  if (!kIsWindows) return path;
  for (char& c : path) c = c == '/' ? '\\' : c;
  return (path.starts_with("\\") ? "C:" : "") + path;
}

TEST(Paths, PartsAreFoundBehindEitherDelimiter) {
  EXPECT_EQ(FolderPart("a\\b/c.sln"), "a\\b/");
  EXPECT_EQ(FilePart("a\\b/c.sln"), "c.sln");
  EXPECT_EQ(FolderPart("c.sln"), "");
  EXPECT_EQ(FilePart("a\\"), "");
}

TEST(Paths, TheExtensionIsThatOfTheFilePart) {
  EXPECT_EQ(ExtensionOf("a.b\\App.vcproj"), ".vcproj");
  EXPECT_EQ(ExtensionOf("App.tar.RC"), ".RC");
  EXPECT_EQ(ExtensionOf("a.b\\App"), "");
  EXPECT_EQ(ExtensionOf("App."), ".");
  EXPECT_TRUE(HasExtension("Res\\App.Rc", ".rc"));
  EXPECT_FALSE(HasExtension("App.rc2", ".rc"));
  EXPECT_FALSE(HasExtension("rc", ".rc"));
}

TEST(Paths, ATrailingDelimiterIsAddedOnce) {
  EXPECT_EQ(WithTrailingDelimiter("a"), std::string("a") + NativeDelimiter());
  EXPECT_EQ(WithTrailingDelimiter("a\\"), "a\\");
  EXPECT_EQ(WithTrailingDelimiter("a/"), "a/");
  EXPECT_EQ(WithTrailingDelimiter(""), "");
}

TEST(Paths, KnowsWhatIsAbsolute) {
  for (const char* path : {"\\a", "/a", "C:\\a", "c:/a", "\\\\server\\share\\a"})
    EXPECT_TRUE(IsAbsolute(path)) << path;
  for (const char* path : {"", "a", "..\\a", "http://host/a"}) EXPECT_FALSE(IsAbsolute(path)) << path;
}

TEST(ExpandPath, TakesEitherDelimiterAndResolvesDots) {
  const std::string base = Native("/base/sub/");
  EXPECT_EQ(ExpandPath(base, "App\\App.csproj"), Native("/base/sub/App/App.csproj"));
  EXPECT_EQ(ExpandPath(base, "..\\x/.\\y//z.rc"), Native("/base/x/y/z.rc"));
  EXPECT_EQ(ExpandPath(Native("/base/sub"), "a"), Native("/base/sub/a")) << "the base needs no delimiter";
}

TEST(ExpandPath, NeverClimbsAboveTheRoot) {
  EXPECT_EQ(ExpandPath(Native("/base/"), "..\\..\\..\\a"), Native("/a"));
  EXPECT_EQ(ExpandPath(Native("/"), ".."), Native("/"));
}

TEST(ExpandPath, KeepsADelimiterAtTheEndAndAddsNone) {
  EXPECT_EQ(ExpandPath(Native("/base/"), "Site\\"), Native("/base/Site/"));
  EXPECT_EQ(ExpandPath(Native("/base/"), "a\\.."), Native("/base"));
  EXPECT_EQ(ExpandPath(Native("/base/"), ""), Native("/base/"));
}

TEST(ExpandPath, AnAbsolutePathPassesThrough) {
  EXPECT_EQ(ExpandPath(Native("/base/"), Native("/other/./a")), Native("/other/a"));
  EXPECT_EQ(ExpandPath("ignored", "C:\\x\\..\\y"), kIsWindows ? "C:\\y" : "C:/y");
}

TEST(ExpandPath, StartsAtTheCurrentFolderWithoutABase) {
  const std::string current = ExpandPath("", "");
  EXPECT_TRUE(IsAbsolute(current));
  EXPECT_EQ(ExpandPath("", "a"), current + "a");
  EXPECT_EQ(ExpandPath("sub", "a"), current + "sub" + NativeDelimiter() + "a");
}

TEST(FindExisting, TakesEitherDelimiter) {
  const TestFolder folder;
  folder.Write("App/App.csproj", "");
  EXPECT_EQ(FindExisting(folder / "App\\App.csproj"),
            folder / (std::string("App") + NativeDelimiter() + "App.csproj"));
}

TEST(FindExisting, LooksNamesUpWithoutRegardToCase) {
  const TestFolder folder;
  folder.Write("Src/Größe/App.RC", "");
  EXPECT_EQ(FindExisting(folder / "SRC\\GRÖSSE\\app.rc"), "") << "that is another name";
  const std::string found = FindExisting(folder / "sRC\\GRÖßE\\aPP.rc");
  EXPECT_FALSE(found.empty());
}

TEST(FindExisting, FindsFoldersAndSaysWhatIsNotThere) {
  const TestFolder folder;
  folder.Write("Sub/a", "");
  EXPECT_FALSE(FindExisting(folder / "sub").empty());
  EXPECT_EQ(FindExisting(folder / "sub\\b"), "");
  EXPECT_EQ(FindExisting(folder / "sub\\a\\b"), "") << "a file is no folder";
  EXPECT_EQ(FindExisting(""), "");
  EXPECT_EQ(FindExisting(std::string("a\0b", 3)), "");
}

TEST(PathFinder, ToldFilesFromFolders) {
  const TestFolder folder;
  folder.Write("Sub/File.txt", "");
  PathFinder finder;
  std::string path = folder / "Sub";
  EXPECT_FALSE(finder.FindFile(path));
  path = folder / "SUB\\FILE.TXT";
  EXPECT_TRUE(finder.FindFile(path));
  path = folder / "sub\\nothing.txt";
  EXPECT_FALSE(finder.FindFile(path));
  EXPECT_EQ(path, folder / "sub\\nothing.txt") << "what is not found stays as it was";
}

}  // namespace
}  // namespace qx
