#include "versioning/SourceText.h"

#include <gtest/gtest.h>

#include "platform/CodePages.h"
#include "platform/Lines.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using std::string_literals::operator""s;

constexpr PlainAscii kCode = PlainAscii::IsUtf8;
const std::string kUmlaut = "M\xC3\xBCller";  // UTF-8

std::string Fitted(std::string_view bytes, const std::string& text, std::optional<std::uint32_t> page = {}) {
  try {
    return SourceText(bytes, "A.cs", kCode).Fit(text, "AssemblyTitle", [&] { return page; });
  } catch (const Exception& error) {
    return error.Message();
  }
}
const std::string kRefused =
    "Cannot write A.cs: its encoding cannot hold the text of AssemblyTitle (save the file as UTF-8 with a "
    "mark, or keep to its characters)";

std::string Encoded(std::string_view bytes, const std::vector<std::string_view>& pieces) {
  std::string storage, joined;
  for (const std::string_view piece : SourceText(bytes, "A.cs", kCode).Encode(pieces, storage))
    joined += piece;
  return joined;
}

TEST(SourceTextEncoding, TextIsWithoutTheMark) {
  EXPECT_EQ(SourceText("\xEF\xBB\xBF"
                       "abc",
                       "A.cs", kCode)
                .Text(),
            "abc");
  EXPECT_EQ(SourceText("abc\xA9", "A.cs", kCode).Text(), "abc\xA9");
  EXPECT_EQ(SourceText("\xFF\xFE"
                       "a\0\xFC\0"s,
                       "A.cs", kCode)
                .Text(),
            "a\xC3\xBC");
  EXPECT_EQ(SourceText("\xFE\xFF"
                       "\0a\0\xFC"s,
                       "A.cs", kCode)
                .Text(),
            "a\xC3\xBC");
}

TEST(SourceTextEncoding, GoesBackAsItCame) {
  EXPECT_EQ(Encoded("\xEF\xBB\xBFx", {"a\r\n", "\xC3\xBC"}),
            "\xEF\xBB\xBF"
            "a\r\n\xC3\xBC");
  EXPECT_EQ(Encoded("x", {"a\r\n", "\xA9"}), "a\r\n\xA9");
  EXPECT_EQ(Encoded("\xFF\xFEx\0"s, {"a\r\n", "\xC3\xBC\r\n"}),
            "\xFF\xFE"
            "a\0\r\0\n\0\xFC\0\r\0\n\0"s);
  EXPECT_EQ(Encoded("\xFE\xFF\0x"s, {"a\r\n"}), "\xFE\xFF\0a\0\r\0\n"s);
  EXPECT_EQ(Encoded("", {}), "");
}

TEST(SourceTextEncoding, LoneSurrogatesComeBack) {
  const std::string bytes = "\xFF\xFE\x00\xD8\r\0\n\0"s;
  EXPECT_EQ(Encoded(bytes, {SourceText(bytes, "A.cs", kCode).Text()}), bytes);
}

TEST(SourceTextEncoding, HalfACharacterIsRefused) {
  try {
    SourceText(
        "\xFF\xFE"
        "a\0b"s,
        "A.cs", kCode);
    FAIL();
  } catch (const Exception& error) {
    EXPECT_EQ(error.Message(), "Cannot write A.cs: it is UTF-16 and ends in half a character");
  }
}

TEST(SourceTextEncoding, Utf16WithoutMarkIsRefused) {
  for (const std::string& bytes : {"u\0s\0i\0"s, "\0u\0s\0i"s, "\r\0\n\0"s}) {
    try {
      SourceText(bytes, "A.cs", kCode);
      FAIL();
    } catch (const Exception& error) {
      EXPECT_EQ(error.Message(), "Cannot write A.cs: it is UTF-16 without a mark (save the file with one)");
    }
  }
  // Entries that were added to a file without any attribute line begin with a character of code 0.
  EXPECT_EQ(SourceText("\0: AssemblyTitle(\"T\")\r\n"s, "A.cs", kCode).Text().size(), 23U);
}

TEST(SourceTextFit, AsciiAlwaysFits) {
  for (const std::string& bytes : {""s, "x"s, "\xA9"s, "\xEF\xBB\xBF"s, "\xFF\xFE"s}) {
    EXPECT_EQ(Fitted(bytes, "plain $1 \\"), "plain $1 \\");
  }
}

TEST(SourceTextFit, MarkedFilesTakeEveryCharacter) {
  EXPECT_EQ(Fitted("\xEF\xBB\xBFx", kUmlaut), kUmlaut);
  EXPECT_EQ(Fitted("\xFF\xFE"s, kUmlaut), kUmlaut);
  EXPECT_EQ(Fitted("\xEF\xBB\xBFx", "\xE8\x9B\xAD"), "\xE8\x9B\xAD");
}

TEST(SourceTextFit, MarkedFilesTakeNoLooseBytes) {
  EXPECT_EQ(Fitted("\xEF\xBB\xBFx", "\xA9"), kRefused);
  EXPECT_EQ(Fitted("\xFF\xFE"s, "\xA9"), kRefused);
}

TEST(SourceTextFit, Utf8WithoutMarkStaysUtf8) {
  EXPECT_EQ(Fitted("// \xC3\xA9\n", kUmlaut), kUmlaut);
  EXPECT_EQ(Fitted("// \xC3\xA9\n", "\xA9"), kRefused);
}

TEST(SourceTextFit, PlainAsciiCodeTakesUtf8) {
  EXPECT_EQ(Fitted("// plain\n", kUmlaut), kUmlaut);
  EXPECT_EQ(Fitted("// plain\n", "\xA9 2004"), "\xA9 2004");  // bytes of some code page, as they stand
}

TEST(SourceTextFit, PlainAsciiScriptsTakeTheSystemsPage) {
  const SourceText script("x", "A.rc", PlainAscii::IsSystemCodePage);
  const auto page = SystemCodePage();
  EXPECT_EQ(script.Fit(kUmlaut, "CompanyName"),
            page ? EncodeInCodePage(kUmlaut, *page).value_or("none") : kUmlaut);
}

TEST(SourceTextFit, ANamedPageIsObeyed) {
  EXPECT_EQ(Fitted("// \xA9", kUmlaut, 1252), "M\xFCller");
  EXPECT_EQ(Fitted("// plain", kUmlaut, 1252), "M\xFCller");
  EXPECT_EQ(Fitted("// \xC3\xA9", kUmlaut, 1252), "M\xFCller");
  EXPECT_EQ(Fitted("// plain", kUmlaut, 65001), kUmlaut);
  EXPECT_EQ(Fitted("// plain", kUmlaut, 1251), kRefused);  // has no such letter, and gets none like it
  EXPECT_EQ(Fitted("// plain", kUmlaut, 4711), kRefused);  // there is no such page
  EXPECT_EQ(Fitted("// plain", "\xE3\x82\xBD", 932), "\x83\x5C");
}

TEST(SourceTextFit, AnUnknownPageTakesOnlyWhatItHasAlready) {
  if (SystemCodePage()) GTEST_SKIP() << "this system names a code page";
  EXPECT_EQ(Fitted("// \xA9 2004", kUmlaut), kRefused);
  EXPECT_EQ(Fitted("// \xA9 M\xC3\xBCller", kUmlaut), kUmlaut);
  EXPECT_EQ(Fitted("// \xA9 2004", "\xA9 2005"), "\xA9 2005");
}

TEST(CodePagesTest, ConvertsExactlyOrNotAtAll) {
  EXPECT_EQ(EncodeInCodePage("\xE2\x82\xAC", 1252), "\x80");
  EXPECT_EQ(EncodeInCodePage("\xE2\x82\xAC", 65001), "\xE2\x82\xAC");
  EXPECT_EQ(EncodeInCodePage("", 1252), "");
  EXPECT_EQ(EncodeInCodePage("\xCE\xB1", 1252), std::nullopt);
  EXPECT_EQ(EncodeInCodePage("\xA9", 1252), std::nullopt);
  EXPECT_EQ(EncodeInCodePage("\xE7\xBF\xBB\xE8\xAF\x91", 936), "\xB7\xAD\xD2\xEB");
}

TEST(CodePagesTest, ConvertsBackExactlyOrNotAtAll) {
  EXPECT_EQ(DecodeFromCodePage("\x80", 1252), "\xE2\x82\xAC");
  EXPECT_EQ(DecodeFromCodePage("\xE2\x82\xAC", 65001), "\xE2\x82\xAC");
  EXPECT_EQ(DecodeFromCodePage("\xE2", 65001), std::nullopt);
  EXPECT_EQ(DecodeFromCodePage("", 932), "");
  EXPECT_EQ(DecodeFromCodePage("\x83\x5C", 932), "\xE3\x82\xBD");
  EXPECT_EQ(DecodeFromCodePage("\xFF\xFF", 932), std::nullopt);
  EXPECT_EQ(DecodeFromCodePage("a", 4711), std::nullopt);
}

TEST(LinesTest, KnowsWhatNeedsNoChange) {
  for (const char* text : {"", "\r\n", "a\r\n", "a\r\n\r\nb\r\n"}) {
    EXPECT_TRUE(HasOnlyCrLf(text));
    EXPECT_EQ(WithCrLf(text), text);
  }
  for (const char* text :
       {"a", "\n", "\r", "a\n", "\na\r\n", "a\rb\r\n", "a\r\r\n", "a\r\nb", "a\n\r\n", "a\r\n\r"}) {
    EXPECT_FALSE(HasOnlyCrLf(text)) << text;
    EXPECT_TRUE(HasOnlyCrLf(WithCrLf(text))) << text;
  }
}

TEST(LinesTest, CursorTellsWhereLinesStand) {
  const std::string text = "a\r\n\rbc\nd";
  std::string seen;
  LineCursor cursor(text);
  for (Line line; cursor.Next(line);) {
    seen += std::string(line.text) + "@" + std::to_string(line.begin) + "-" + std::to_string(line.next) + " ";
  }
  EXPECT_EQ(seen, "a@0-3 @3-4 bc@4-7 d@7-8 ");
}

}  // namespace
}  // namespace qx
