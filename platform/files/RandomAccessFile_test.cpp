#include "platform/files/RandomAccessFile.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

std::string ReadPart(const RandomAccessFile& file, std::uint64_t offset, std::size_t size) {
  std::string part(size, '?');
  part.resize(file.Read(offset, part));
  return part;
}

TEST(RandomAccessFile, GivesPartsInAnyOrder) {
  const TestFolder folder;
  const RandomAccessFile file(folder.Write("a.bin", "0123456789"));
  EXPECT_EQ(file.Size(), 10u);
  EXPECT_EQ(ReadPart(file, 6, 3), "678");
  EXPECT_EQ(ReadPart(file, 0, 2), "01");
  EXPECT_EQ(ReadPart(file, 4, 0), "");
}

TEST(RandomAccessFile, GivesFewerBytesOnlyWhereTheFileEnds) {
  const TestFolder folder;
  const RandomAccessFile file(folder.Write("a.bin", "0123456789"));
  EXPECT_EQ(ReadPart(file, 8, 5), "89");
  EXPECT_EQ(ReadPart(file, 10, 5), "");
  EXPECT_EQ(ReadPart(file, 1ull << 40, 5), "");
}

TEST(RandomAccessFile, GivesAShortAnswerWhenTheFileWasCutMeanwhile) {
  const TestFolder folder;
  const std::string path = folder.Write("a.bin", "0123456789");
  const RandomAccessFile file(path);
  folder.Write("a.bin", "012");
  EXPECT_EQ(ReadPart(file, 0, 10), "012");
  EXPECT_EQ(ReadPart(file, 5, 5), "");
}

TEST(RandomAccessFile, FindsAFileWhoseNameDiffersInCase) {
  const TestFolder folder;
  folder.Write("Sub/Name.exe", "MZ");
  EXPECT_EQ(RandomAccessFile(folder / "sub\\NAME.EXE").Size(), 2u);
}

TEST(RandomAccessFile, NamesTheFileThatCannotBeRead) {
  const TestFolder folder;
  const std::string missing = folder / "none.exe";
  const std::string message = MessageOf([&] { RandomAccessFile file(missing); });
  EXPECT_TRUE(message.starts_with("Cannot read " + missing + ": ")) << message;
  EXPECT_EQ(MessageOf([&] { RandomAccessFile file(folder.Path()); }),
            "Cannot read " + folder.Path() + ": it is a folder");
}

}  // namespace
}  // namespace qx
