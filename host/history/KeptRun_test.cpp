#include "host/history/KeptRun.h"

#include <gtest/gtest.h>

#include "host/history/Digest.h"

namespace qx {
namespace {

const std::string kOne = "one\ncontent\twith\\all", kTwo(100000, 'x');

std::string Whole() {
  const std::vector<std::string> folders{"/a\tb/"};
  const DigestedContent contents[] = {{Sha256(kOne), kOne}, {Sha256(kTwo), kTwo}};
  const PackedContents packed = PackContents(contents);
  return RecordHead(7, 1000, folders) + packed.lines + std::string(packed.Block()) +
         RecordLine(KeptFile{"/a\nb.cs", Sha256(kOne), "after"}) +
         RecordLine(KeptNumber{1, "P", "1|2", "1|3"}) +
         RecordLine(KeptVersion{1, "AssemblyVersion", "1.2", "1.3"}) + RecordEnd(KeptResult::Failed, 2.5);
}

TEST(KeptRun, IsReadAsItWasWritten) {
  const std::string bytes = Whole();
  const auto record = ReadKeptRun(bytes);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->run, 7);
  EXPECT_EQ(record->started, 1000);
  EXPECT_EQ(record->result, KeptResult::Failed);
  EXPECT_EQ(record->seconds, 2.5);
  EXPECT_EQ(record->folders, std::vector<std::string>{"/a\tb/"});
  ASSERT_EQ(record->files.size(), 1u);
  EXPECT_EQ(record->files[0].path, "/a\nb.cs");
  ASSERT_EQ(record->numbers.size(), 1u);
  EXPECT_EQ(record->numbers[0].after, "1|3");
  KeptContents contents(*record, bytes);
  EXPECT_EQ(contents.Find(Sha256(kOne)), kOne);
  EXPECT_EQ(contents.Find(Sha256(kTwo)), kTwo);
  EXPECT_EQ(contents.Find(Sha256("other")), std::nullopt);
}

TEST(KeptRun, WhatStandsTwiceIsFromTheFirstToTheLast) {
  const std::string bytes = RecordHead(1, 0, {}) + RecordLine(KeptFile{"/f", "a", "b"}) +
                            RecordLine(KeptFile{"/f", "b", "c"}) + RecordLine(KeptNumber{1, "P", "1", "2"}) +
                            RecordLine(KeptNumber{1, "P", "1", "3"});
  const auto record = ReadKeptRun(bytes);
  ASSERT_EQ(record->files.size(), 1u);
  EXPECT_EQ(record->files[0].before + record->files[0].after, "ac");
  ASSERT_EQ(record->numbers.size(), 1u);
  EXPECT_EQ(record->numbers[0].before + record->numbers[0].after, "13");
}

TEST(KeptRun, IsReadAsFarAsItIsWholeWhereverItWasCutOff) {
  const std::string bytes = Whole();
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const std::string cut = bytes.substr(0, size);
    const auto record = ReadKeptRun(cut);
    if (!record) continue;
    EXPECT_EQ(record->result, KeptResult::CutOff) << size;
    // A file is told of only behind its content.
    KeptContents contents(*record, cut);
    for (const KeptFile& file : record->files) EXPECT_EQ(contents.Find(file.before), kOne) << size;
  }
}

TEST(KeptRun, ADamagedBlockGivesNoContent) {
  std::string bytes = Whole();
  const auto record = ReadKeptRun(bytes);
  bytes[record->contents[0].block + 20] ^= 1;
  KeptContents contents(*record, bytes);
  EXPECT_EQ(contents.Find(Sha256(kOne)), std::nullopt);
}

TEST(KeptRun, AContentMayStandAlone) {
  for (const std::string& text : {std::string(), kOne, std::string(3'000'000, 'y')}) {
    const DigestedContent content{Sha256(text), text};
    const PackedContents packed = PackContents({&content, 1});
    const std::string bytes = RecordHead(1, 0, {}) + packed.lines + std::string(packed.Block());
    const auto record = ReadKeptRun(bytes);
    ASSERT_EQ(record->contents.size(), 1u);
    EXPECT_EQ(KeptContents(*record, bytes).Find(Sha256(text)), text);
  }
}

TEST(KeptRun, AnotherTextIsNone) {
  EXPECT_FALSE(ReadKeptRun(""));
  EXPECT_FALSE(ReadKeptRun("<xml/>\n"));
}

}  // namespace
}  // namespace qx
