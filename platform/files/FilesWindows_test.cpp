#include <windows.h>

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

TEST(ReplaceFile, KeepsTheAttributes) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "old");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
  ReplaceFile(path, "new");
  EXPECT_EQ(folder.Read("a"), "new");
  EXPECT_NE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}

TEST(ReplaceFile, AFileThatAnotherHoldsStaysAsItWas) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "old");
  const HANDLE held =
      CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  const std::string message = MessageOf([&] { ReplaceFile(path, "new"); });
  CloseHandle(held);
  EXPECT_TRUE(message.starts_with("Cannot write " + path + ": ")) << message;
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Count(), 1);
}

TEST(Files, NamesInTheSystemsCodePageAreFound) {
  const TestFolder folder;
  const std::string path =
      folder / "gr\xFC\xDF.txt";  // Windows-1252, as the author of an old solution wrote it
  if (GetACP() != 1252) GTEST_SKIP() << "the system's code page is " << GetACP() << ", not 1252";
  ReplaceFile(path, "x");
  EXPECT_EQ(ReadFile(folder / "grüß.txt"), "x");
}

TEST(Files, LongPathsWork) {
  const TestFolder folder;
  std::string path = folder.Path();
  for (int i = 0; i < 5; ++i) path += std::string(60, 'd') + "\\";
  CreateFolders(path);
  ReplaceFile(path + "a", "x");
  EXPECT_EQ(ReadFile(path + "a"), "x");
  RemoveFile(path + "a");
}

}  // namespace
}  // namespace qx
