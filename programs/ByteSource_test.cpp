#include "programs/ByteSource.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(ByteSource, GivesFewerBytesWhereItEndsAndRaisesForExactOnes) {
  MemoryBytes source("0123456789");
  EXPECT_EQ(source.UpTo(7, 9), "789");
  EXPECT_EQ(source.UpTo(11, 1), "");
  EXPECT_EQ(source.Part(7, 3, "it"), "789");
  EXPECT_EQ(MessageOf([&] { source.Part(7, 4, "the table"); }),
            "it is cut off: the table lies behind its end");
}

TEST(ByteSource, AFileGivesTheSameAsMemoryWhateverIsAskedFor) {
  std::string bytes;
  for (int i = 0; i < 20000; ++i) bytes += static_cast<char>(i * 7 + i / 256);
  const TestFolder folder;
  FileBytes file(folder.Write("a", bytes));
  MemoryBytes memory(bytes);
  ASSERT_EQ(file.Size(), 20000u);
  for (const std::uint64_t offset :
       {0ull, 4000ull, 4095ull, 100ull, 19999ull, 20000ull, 1ull << 50, 12000ull}) {
    for (const std::size_t size : {0u, 1u, 96u, 4096u, 5000u, 30000u}) {
      EXPECT_EQ(file.UpTo(offset, size), memory.UpTo(offset, size)) << offset << " " << size;
    }
  }
}

TEST(ByteSource, PartsOfAFileStayWhileOthersAreFetched) {
  const TestFolder folder;
  FileBytes file(folder.Write("a", std::string(200000, 'x') + "end"));
  const std::string_view first = file.UpTo(0, 10);
  for (std::uint64_t at = 5000; at < 200000; at += 5000) file.UpTo(at, 10);
  EXPECT_EQ(first, "xxxxxxxxxx");
  EXPECT_EQ(file.UpTo(200000, 10), "end");
}

TEST(Fields, AreLittleEndianAndRefuseWhatLiesOutside) {
  const Fields fields(std::string_view("\x01\x02\x03\x84\x05\x06\x07\x88", 8));
  EXPECT_EQ(fields.U8(3), 0x84);
  EXPECT_EQ(fields.U16(1), 0x0302);
  EXPECT_EQ(fields.U32(0), 0x84030201u);
  EXPECT_EQ(fields.U64(0), 0x8807060584030201ull);
  const std::string expected = "it is damaged: a record ends too early";
  EXPECT_EQ(MessageOf([&] { fields.U32(5); }), expected);
  EXPECT_EQ(MessageOf([&] { fields.U8(SIZE_MAX); }), expected);
}

}  // namespace
}  // namespace qx
