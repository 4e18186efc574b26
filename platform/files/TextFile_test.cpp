#include "platform/files/TextFile.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

using Lines = std::vector<std::string>;
using std::string_literals::operator""s;

TEST(TextFile, KnowsItsEncodingByTheMark) {
  EXPECT_EQ(TextFile::FromBytes("\xEF\xBB\xBF"
                                "ä")
                .encoding,
            TextEncoding::Utf8WithMark);
  EXPECT_EQ(TextFile::FromBytes("\xFF\xFE"s).encoding, TextEncoding::Utf16LittleEnd);
  EXPECT_EQ(TextFile::FromBytes("\xFE\xFF"s).encoding, TextEncoding::Utf16BigEnd);
  EXPECT_EQ(TextFile::FromBytes("ä").encoding, TextEncoding::Bytes);
  EXPECT_EQ(TextFile::FromBytes("\xFF").encoding, TextEncoding::Bytes);
  EXPECT_EQ(TextFile::FromBytes("").encoding, TextEncoding::Bytes);
}

TEST(TextFile, TheMarkIsNotPartOfTheFirstLine) {
  EXPECT_EQ(TextFile::FromBytes("\xEF\xBB\xBF\r\nM").lines, (Lines{"", "M"}));
  EXPECT_EQ(TextFile::FromBytes("\xFF\xFE\xE4\0\r\0\n\0"s).lines, Lines{"ä"});
  EXPECT_EQ(TextFile::FromBytes("\xFE\xFF\0\xE4\0\n\0x"s).lines, (Lines{"ä", "x"}));
}

TEST(TextFile, PlainBytesStayAsTheyAre) {
  EXPECT_EQ(TextFile::FromBytes("\x83\x5C\xFF\nx").lines, (Lines{"\x83\x5C\xFF", "x"}));
}

TEST(TextFile, AnOddLastByteOfUtf16IsSeen) {
  EXPECT_EQ(TextFile::FromBytes("\xFF\xFE"
                                "a\0b"s)
                .lines,
            Lines{"a\uFFFD"});
}

TEST(TextFile, GoesBackInItsEncodingWithItsMarkAndCrLf) {
  for (const std::string& bytes :
       {"a\r\n\xFF\r\n"s, "\xEF\xBB\xBF\xC3\xA4\r\n"s, "\xFF\xFE\xE4\0\r\0\n\0"s,
        "\xFE\xFF\xD8\x34\xDD\x1E\0\r\0\n"s, "\xFF\xFE\x34\xD8\r\0\n\0"s, ""s, "\xEF\xBB\xBF"s}) {
    EXPECT_EQ(TextFile::FromBytes(bytes).Bytes(), bytes);
  }
}

TEST(TextFile, EveryLineEndsInCrLfTheLastOneToo) {
  EXPECT_EQ(TextFile::FromBytes("a\nb\rc").Bytes(), "a\r\nb\r\nc\r\n");
}

TEST(TextFile, ATextThatTheEncodingCannotHoldIsAnError) {
  TextFile file{{"ok", "\xFF"}, TextEncoding::Utf16LittleEnd};
  EXPECT_EQ(MessageOf([&] { file.Bytes(); }), "Line 2 cannot be written as UTF-16: it is not UTF-8");
  file.encoding = TextEncoding::Utf8WithMark;
  const TestFolder folder;
  EXPECT_EQ(MessageOf([&] { file.Save(folder / "a"); }),
            "Cannot write " + (folder / "a") + ": Line 2 cannot be written as UTF-8: it is not UTF-8");
  EXPECT_EQ(folder.Count(), 0);
}

TEST(TextFile, LoadsAndSaves) {
  const TestFolder folder;
  TextFile file = TextFile::Load(folder.Write("a",
                                              "\xEF\xBB\xBF"
                                              "one\n"));
  file.lines.push_back("zwölf");
  file.Save(folder / "a");
  EXPECT_EQ(folder.Read("a"), "\xEF\xBB\xBFone\r\nzwölf\r\n");
  EXPECT_THROW(TextFile::Load(folder / "b"), std::exception);
}

}  // namespace
}  // namespace qx
