#include "versioning/VersionBlock.h"

#include <gtest/gtest.h>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

std::string AsItStands(const std::string& text) { return text; }

std::string Lines(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) text.append(line).append("\r\n");
  return text;
}

// A block as development environments write it.
std::string Script(std::string_view fixedInfo, std::string_view values,
                   std::string_view translation = "VALUE \"Translation\", 0x409, 1252") {
  return Lines({"VS_VERSION_INFO VERSIONINFO", fixedInfo, "BEGIN", "    BLOCK \"StringFileInfo\"",
                "    BEGIN", "        BLOCK \"040904e4\"", "        BEGIN", values, "        END", "    END",
                "    BLOCK \"VarFileInfo\"", "    BEGIN", translation, "    END", "END"});
}

VersionReading Read(std::string_view script) { return ReadVersionBlock(script, "App.rc"); }

template <class Function>
std::string ErrorOf(Function&& function) {
  try {
    function();
  } catch (const Exception& error) {
    return error.Message();
  }
  return "no error";
}
std::string ReadError(std::string_view script) {
  return ErrorOf([&] { Read(script); });
}
std::string FindError(std::string_view script) {
  return ErrorOf([&] { FindVersionBlock(script, "App.rc"); });
}
std::string Found(std::string_view script) {
  const auto [begin, end] = FindVersionBlock(script, "App.rc");
  return std::string(script.substr(begin, end - begin));
}

VersionValues SomeValues() {
  VersionValues values;
  values.numbers = {1, 2, 0, 45};
  values.locale = 0x409;
  values.codePage = 1252;
  return values;
}

std::string Written(const VersionValues& values) {
  return WriteVersionBlock(values, BlockStrings(values, AsItStands));
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

TEST(ReadVersionBlock, KeepsTheNumbersAsTheyAreWritten) {
  EXPECT_EQ(Read(Script(" FILEVERSION 1,2, 0,45", "")).writtenNumbers, "1,2, 0,45");
  EXPECT_EQ(Read(Script(" FILEVERSION VERSION_OF_ALL", "")).writtenNumbers, "VERSION_OF_ALL");
  EXPECT_EQ(Read(Script(" PRODUCTVERSION 1,2,3,4", "")).writtenNumbers, "");
}

TEST(VersionBlockWriter, WritesEveryLineWithItsBlanks) {
  VersionValues values = SomeValues();
  values.keys = {"CompanyName=ACME", "FileVersion=9.9.9.9", "Comments="};
  EXPECT_EQ(Written(values), Lines({"VS_VERSION_INFO VERSIONINFO",
                                    "FILEVERSION 1,2,0,45",
                                    "PRODUCTVERSION 1,2,0,45",
                                    "FILEFLAGSMASK 0x3FL",
                                    "FILEFLAGS 0x00L",
                                    "FILEOS 0x40004L",
                                    "FILETYPE 0x1L",
                                    "FILESUBTYPE 0x0L",
                                    "BEGIN",
                                    "    BLOCK \"StringFileInfo\"",
                                    "    BEGIN",
                                    "         BLOCK \"040904E4\"",
                                    "         BEGIN",
                                    "              VALUE \"CompanyName\", \"ACME\\0\"",
                                    "              VALUE \"FileVersion\", \"1.2.0.45\\0\"",
                                    "         END",
                                    "    END",
                                    "    BLOCK \"VarFileInfo\"",
                                    "    BEGIN",
                                    "         VALUE \"Translation\", 0x0409, 1252",
                                    "    END",
                                    "END"}));
}

TEST(VersionBlockWriter, ComposesTheFlags) {
  VersionValues values = SomeValues();
  const auto line = [&](VersionFlags flags) {
    values.flags = flags;
    const std::string block = Written(values);
    const std::size_t at = block.find("FILEFLAGS ");
    return block.substr(at, block.find("\r\n", at) - at);
  };
  EXPECT_EQ(line({true, false, false, false}), "FILEFLAGS 0x01L");
  EXPECT_EQ(line({false, true, false, false}), "FILEFLAGS 0x02L");
  EXPECT_EQ(line({false, false, true, false}), "FILEFLAGS 0x20L");
  EXPECT_EQ(line({false, false, false, true}), "FILEFLAGS 0x08L");
  EXPECT_EQ(line({true, true, true, true}), "FILEFLAGS 0x2BL");
}

TEST(VersionBlockWriter, TellsLibrariesByTheirType) {
  VersionValues values = SomeValues();
  values.isDll = true;
  EXPECT_TRUE(Contains(Written(values), "\r\nFILETYPE 0x2L\r\n"));
}

TEST(VersionBlockWriter, WritesLanguageInFourDigitsAndPageInDecimal) {
  VersionValues values = SomeValues();
  values.locale = 0xC07;
  values.codePage = 932;
  EXPECT_TRUE(Contains(Written(values), "BLOCK \"0C0703A4\"\r\n"));
  EXPECT_TRUE(Contains(Written(values), "VALUE \"Translation\", 0x0C07, 932\r\n"));
}

TEST(VersionBlockWriter, NegativeAndLargeNumbersStayNumbers) {
  VersionValues values = SomeValues();
  values.numbers = {-1, 70000, 2147483647, 0};
  values.locale = -1;
  EXPECT_TRUE(Contains(Written(values), "\r\nFILEVERSION -1,70000,2147483647,0\r\n"));
  EXPECT_TRUE(Contains(Written(values), "BLOCK \"FFFFFFFF04E4\"\r\n"));
}

// The fixed product version repeats the file version whatever the key says.
TEST(VersionBlockWriter, FixedProductVersionRepeatsTheFileVersion) {
  VersionValues values = SomeValues();
  values.keys = {"ProductVersion=7.0"};
  EXPECT_TRUE(Contains(Written(values), "\r\nPRODUCTVERSION 1,2,0,45\r\n"));
  EXPECT_TRUE(Contains(Written(values), "VALUE \"ProductVersion\", \"7.0\\0\"\r\n"));
}

TEST(VersionBlockWriter, KeepsTheKeysOrderAndLetterCase) {
  VersionValues values = SomeValues();
  values.keys = {"Zeta=z", "fileversion=", "PRODUCTversion=", "Alpha=a"};
  EXPECT_EQ(BlockStrings(values, AsItStands),
            (std::vector<VersionString>{
                {"Zeta", "z"}, {"fileversion", "1.2.0.45"}, {"PRODUCTversion", ""}, {"Alpha", "a"}}));
}

TEST(VersionBlockWriter, LeavesOutValuesThatAreEmptyBeforeExpansionOnly) {
  VersionValues values = SomeValues();
  values.keys = {"A=", "B=%NOTHING%", "no equals sign", "", "C=%SOME%"};
  const auto expand = [](const std::string& text) {
    return text == "%NOTHING%" ? std::string() : text == "%SOME%" ? std::string("some") : "expanded " + text;
  };
  EXPECT_EQ(BlockStrings(values, expand), (std::vector<VersionString>{{"B", ""}, {"C", "some"}}));
}

TEST(VersionBlockWriter, ExpandsTheProductVersionButNotTheFileVersion) {
  VersionValues values = SomeValues();
  values.keys = {"FileVersion=%V%", "ProductVersion=%V%"};
  std::vector<std::string> asked;
  const auto expand = [&](const std::string& text) {
    asked.push_back(text);
    return std::string("3.4");
  };
  EXPECT_EQ(BlockStrings(values, expand),
            (std::vector<VersionString>{{"FileVersion", "1.2.0.45"}, {"ProductVersion", "3.4"}}));
  EXPECT_EQ(asked, (std::vector<std::string>{"%V%"}));
}

TEST(VersionBlockWriter, ValuesAreTextNotPatterns) {
  VersionValues values = SomeValues();
  values.keys = {"Comments=$1 \\1 & %% a=b \"\"quoted\"\" \\d+"};
  EXPECT_TRUE(Contains(Written(values),
                       "              VALUE \"Comments\", \"$1 \\1 & %% a=b \"\"quoted\"\" \\d+\\0\"\r\n"));
}

TEST(VersionBlockWriter, CompileDateReplacesItsLineOrIsAppended) {
  std::vector<std::string> keys = {"A=1", "COMPILE DATE=old", "B=2"};
  SetCompileDate(keys, "today");
  EXPECT_EQ(keys, (std::vector<std::string>{"A=1", "Compile Date=today", "B=2"}));
  keys = {"A=1"};
  SetCompileDate(keys, "today");
  EXPECT_EQ(keys, (std::vector<std::string>{"A=1", "Compile Date=today"}));
}

TEST(VersionBlockPlaces, FromTheHeaderToTheLastEnd) {
  const std::string block = Script(" FILEVERSION 1,2,3,4", "VALUE \"A\", \"a\"");
  EXPECT_EQ(Found("before\r\n" + block + "behind\r\n"), block);
}

TEST(VersionBlockPlaces, AtTheEndWhenThereIsNoBlock) {
  const std::string script = "STRINGTABLE\r\nBEGIN\r\nEND\r\n";
  const auto [begin, end] = FindVersionBlock(script, "App.rc");
  EXPECT_EQ(begin, script.size());
  EXPECT_EQ(end, script.size());
}

TEST(VersionBlockPlaces, AQuotedMentionIsNoHeader) {
  const std::string block = Script("", "");
  EXPECT_EQ(Found("// the \"VERSIONINFO\" resource\r\nCAPTION \"VERSIONINFO\"\r\n" + block), block);
}

TEST(VersionBlockPlaces, AMentionInACommentIsTheHeader) {
  const std::string block = Script("", "");
  EXPECT_EQ(Found("before\r\n// the VERSIONINFO resource\r\n" + block),
            "// the VERSIONINFO resource\r\n" + block);
}

TEST(VersionBlockPlaces, HeaderIsCaseSensitive) {
  EXPECT_EQ(Found("VS_VERSION_INFO versioninfo\r\nEND\r\n"), "");
}

TEST(VersionBlockPlaces, TheFirstOfSeveralBlocksCounts) {
  const std::string first = Script(" FILEVERSION 1,0,0,0", "VALUE \"A\", \"1\"");
  EXPECT_EQ(Found(first + Script(" FILEVERSION 2,0,0,0", "VALUE \"A\", \"2\"")), first);
}

TEST(VersionBlockPlaces, ASecondHeaderLineBelongsToTheBlock) {
  const std::string block = Lines({"#ifdef GCC_WINDRES", "VS_VERSION_INFO VERSIONINFO", "#else",
                                   "VS_VERSION_INFO VERSIONINFO MOVEABLE", "#endif", "BEGIN", "END"});
  EXPECT_EQ(Found(block), block.substr(block.find("VS_")));
}

TEST(VersionBlockPlaces, KeywordsInAnyLetterCaseAndTrimmed) {
  const std::string block =
      "1 VERSIONINFO\r\n\t begin \t\r\n Block \"x\"\r\nBegin // {\r\n end\r\n\tEnd \r\n";
  EXPECT_EQ(Found(block + "rest\r\n"), block);
}

TEST(VersionBlockPlaces, EndIsTheWholeLineOnly) {
  const std::string block =
      Script("", Lines({"VALUE \"Legend\", \"Friend of the END\"", "END // not the whole line"}));
  EXPECT_EQ(Found(block), block);
}

TEST(VersionBlockShape, RefusesMisplacedKeywords) {
  for (const auto& error : {FindError, ReadError}) {
    EXPECT_EQ(error("1 VERSIONINFO\r\nEND\r\n"), "Unexpected END");
    EXPECT_EQ(error("1 VERSIONINFO\r\nBLOCK \"x\"\r\n"), "Unexpected BLOCK");
    EXPECT_EQ(error("1 VERSIONINFO\r\nBEGIN\r\nBEGIN\r\n"), "Unexpected BEGIN");
    EXPECT_EQ(error("1 VERSIONINFO\r\nBEGIN\r\nBLOCK \"a\"\r\nBLOCK \"b\"\r\n"), "Unexpected BLOCK");
  }
}

// Deliberate: the words count anywhere in a line, a VALUE's text included.
TEST(VersionBlockShape, BeginInsideAValueIsTheKeyword) {
  EXPECT_EQ(FindError(Script("", "VALUE \"Comments\", \"The beginning\"")), "Unexpected BEGIN");
  EXPECT_EQ(ReadError(Script("", "VALUE \"Comments\", \"The beginning\"")), "Unexpected BEGIN");
}

// Deliberate: BLOCK in a text lets BEGIN or END follow, and the next real BLOCK is then out of place.
TEST(VersionBlockShape, BlockInsideAValueIsTheKeyword) {
  EXPECT_EQ(FindError(Script("", "VALUE \"Comments\", \"Building blocks\"")), "Unexpected BLOCK");
  const std::string lonely =
      Lines({"1 VERSIONINFO", "BEGIN", "VALUE \"Comments\", \"Building blocks\"", "END"});
  EXPECT_EQ(Found(lonely), lonely);
}

TEST(VersionBlockShape, AFileThatEndsInsideTheBlockIsNamed) {
  const std::string message = "The VERSIONINFO block is not closed by END: App.rc";
  for (const auto& error : {FindError, ReadError}) {
    EXPECT_EQ(error("1 VERSIONINFO"), message);
    EXPECT_EQ(error("1 VERSIONINFO\r\nBEGIN\r\n  BLOCK \"a\"\r\n"), message);
    EXPECT_EQ(error("1 VERSIONINFO\r\n{\r\n BLOCKS\r\n}\r\nrest\r\n").substr(0, 10), "Unexpected");
    EXPECT_EQ(error("1 VERSIONINFO\r\nFILEOS 4\r\n{\r\n}\r\nrest\r\n"), message);
  }
}

TEST(VersionBlockReader, ReadsNumbers) {
  const auto numbers = [](std::string_view line) { return *Read(Script(line, "")).numbers; };
  using Four = std::array<std::int32_t, 4>;
  EXPECT_EQ(numbers("FILEVERSION 1,2,3,4"), (Four{1, 2, 3, 4}));
  EXPECT_EQ(numbers("  fileversion\t 1, 22 ,333,  4444 "), (Four{1, 22, 333, 4444}));
  EXPECT_EQ(numbers("FILEVERSION 2,42"), (Four{2, 42, 0, 0}));
  EXPECT_EQ(numbers("FILEVERSION 1.2.8.1,1"), (Four{0, 1, 0, 0}));
  EXPECT_EQ(numbers("FILEVERSION 1//FILEVER"), (Four{0, 0, 0, 0}));
  EXPECT_EQ(numbers("FILEVERSION VER_FILEVERSION"), (Four{0, 0, 0, 0}));
  EXPECT_EQ(numbers("FILEVERSION 1,2,3,4,5"), (Four{1, 2, 3, 4}));
  EXPECT_EQ(numbers("FILEVERSION -1,99999999999,,7"), (Four{-1, 0, 0, 7}));
  EXPECT_EQ(numbers("FILEVERSION"), (Four{0, 0, 0, 0}));
}

TEST(VersionBlockReader, TheLastOfTwoLinesCounts) {
  const auto reading =
      Read(Script("#ifdef _DEBUG\r\nFILEFLAGS 0x01L\r\n#else\r\nFILEFLAGS 0x20L\r\n#endif", ""));
  EXPECT_EQ(*reading.flags, (VersionFlags{false, false, true, false}));
}

// Deliberate: the third and fourth characters and nothing else.
TEST(VersionBlockReader, ReadsFlagsOfTwoDigitsOnly) {
  const auto flags = [](std::string_view text) {
    return *Read(Script("FILEFLAGS " + std::string(text), "")).flags;
  };
  EXPECT_EQ(flags("0x2BL"), (VersionFlags{true, true, true, true}));
  EXPECT_EQ(flags("0x01"), (VersionFlags{true, false, false, false}));
  EXPECT_EQ(flags("0x02L"), (VersionFlags{false, true, false, false}));
  EXPECT_EQ(flags("0x20L"), (VersionFlags{false, false, true, false}));
  EXPECT_EQ(flags("0x08L"), (VersionFlags{false, false, false, true}));
  EXPECT_EQ(flags("0x002BL"), VersionFlags());
  EXPECT_EQ(flags("0x1L"), VersionFlags());
  EXPECT_EQ(flags("0x1"), VersionFlags());
  EXPECT_EQ(flags("1"), VersionFlags());
  EXPECT_EQ(flags("0x+1"), VersionFlags());
  EXPECT_EQ(flags("VS_FF_DEBUG|VS_FF_PRERELEASE"), VersionFlags());
  EXPECT_EQ(flags("SA21"), (VersionFlags{true, false, true, false}));
  EXPECT_EQ(flags(""), VersionFlags());
}

// Deliberate: a type of one digit, the writer's own form, reads back as no library.
TEST(VersionBlockReader, ATypeOfOneDigitIsNoLibrary) {
  const auto isDll = [](std::string_view text) {
    return *Read(Script("FILETYPE " + std::string(text), "")).isDll;
  };
  EXPECT_FALSE(isDll("0x2L"));
  EXPECT_FALSE(isDll("0x1L"));
  EXPECT_TRUE(isDll("0x02L"));
  EXPECT_TRUE(isDll("0x01L"));
  EXPECT_FALSE(isDll("VFT_DLL"));
}

TEST(VersionBlockReader, FixedInfoBelongsBeforeTheFirstBegin) {
  for (const std::string word :
       {"FILEVERSION", "FILEFLAGSMASK", "FILEFLAGS", "FILEOS", "FILETYPE", "FILESUBTYPE"}) {
    EXPECT_EQ(ReadError(Script("", word + " 1")), "Unexpected " + word);
    EXPECT_EQ(ReadError(Script(word + " 1", "")), "no error");
    EXPECT_EQ(FindError(Script("", word + " 1")), "no error");  // the replacer drops such lines
  }
  EXPECT_EQ(ReadError(Script("", "PRODUCTVERSION 1")), "no error");
}

TEST(VersionBlockReader, AKeyNamedLikeAFixedInfoIsAKey) {
  EXPECT_EQ(Read(Script("", "VALUE \"FileVersion\", \"1.2\\0\"")).keys,
            (std::vector<std::string>{"FileVersion=1.2"}));
}

TEST(VersionBlockReader, CutsKeysAndValuesOutOfTheQuotes) {
  const auto key = [](const std::string& line) {
    const auto keys = Read(Script("", line)).keys;
    return keys.size() == 1 ? keys[0] : "keys: " + std::to_string(keys.size());
  };
  EXPECT_EQ(key("VALUE \"CompanyName\", \"ACME\\0\""), "CompanyName=ACME");
  EXPECT_EQ(key("  value\t\"CompanyName\" ,\t\"ACME\""), "CompanyName=ACME");
  EXPECT_EQ(key("VALUE\"CompanyName\",\"ACME\""), "CompanyName=ACME");
  EXPECT_EQ(key("VALUE \"A\", \"one, two; {three}\\0\""), "A=one, two; {three}");
  EXPECT_EQ(key("VALUE \"A\", \"with \"\"quotes\"\"\\0\""), "A=with \"\"quotes\"\"");
  EXPECT_EQ(key("VALUE \"A\", \"x\\0y\\0\""), "A=xy");
  EXPECT_EQ(key("VALUE \"A\", \"x\\000\""), "A=x00");  // every "\0" goes, and nothing else
  EXPECT_EQ(key("VALUE \"A\", \"x\" // a \"comment\""), "A=x");
  EXPECT_EQ(key("VALUE \"A\", \"x\" /* a \"comment\" */"), "A=x");
  EXPECT_EQ(key("VALUE \"A\", \"http://host/x\""), "A=http://host/x");
  EXPECT_EQ(key("VALUE \"A\", \"one \" \"two\""), "A=one two");
  EXPECT_EQ(key("VALUE \"A\", ZLIB_VERSION \"\\0\""), "A=");
  EXPECT_EQ(key("VALUE \"A\", STRFILEVER"), "A=");
  EXPECT_EQ(key("VALUE \"A\", \"(C) \" YEAR \" ACME\\0\""), "A=(C)  ACME");
  EXPECT_EQ(key("VALUE \"A\", \"C:\\\\dir\\\\\""), "A=C:\\\\dir\\\\");
  EXPECT_EQ(key("VALUE \"A\", \"never closed"), "A=never closed");
  EXPECT_EQ(key("VALUE \"A\""), "A=");
  EXPECT_EQ(key("VALUE A, \"x\""), "A=x");
  EXPECT_EQ(key("VALUE"), "=");
  EXPECT_EQ(key("VALUES \"A\", \"x\""), "keys: 0");
}

TEST(VersionBlockReader, BytesOfDoubleByteTextAreNoSyntax) {
  // In Shift-JIS the second byte of one character is "{", of another "\".
  EXPECT_EQ(Read(Script("", "VALUE \"A\", \"\x96\x7B\x83\x5C\"")).keys,
            (std::vector<std::string>{"A=\x96\x7B\x83\x5C"}));
}

TEST(VersionBlockReader, CollectsTheKeysOfEveryLanguageBlock) {
  const std::string script =
      Lines({"1 VERSIONINFO", "BEGIN", "BLOCK \"StringFileInfo\"", "BEGIN", "BLOCK \"040904B0\"", "BEGIN",
             "VALUE \"A\", \"en\"", "END", "BLOCK \"040704B0\"", "BEGIN", "VALUE \"A\", \"de\"", "END", "END",
             "VALUE \"B\", \"outside\"", "BLOCK \"Other\"", "BEGIN", "VALUE \"C\", \"other\"", "END", "END"});
  EXPECT_EQ(Read(script).keys, (std::vector<std::string>{"A=en", "A=de"}));
}

TEST(VersionBlockReader, ReadsTheTranslation) {
  const auto reading = Read(Script("", "", "VALUE \"Translation\", 0x0C07, 1252"));
  EXPECT_EQ(reading.locale, 0xC07);
  EXPECT_EQ(reading.codePage, 1252);
  EXPECT_EQ(Read(Script("", "", "VALUE \"Translation\", 0x409, 1200 // English")).codePage, 1200);
  EXPECT_EQ(Read(Script("", "", "VALUE \"translation\", 0x409, 1250, 0x407, 1252")).codePage, 1250);
  // Deliberate: the first two characters are dropped whatever they are.
  EXPECT_EQ(Read(Script("", "", "VALUE \"Translation\", 1033, 1252")).locale, 0x33);
}

TEST(VersionBlockReader, ATranslationThatIsNoNumberIsRefused) {
  EXPECT_EQ(ReadError(Script("", "", "VALUE \"Translation\", 0xZZ, 1252")),
            "'ZZ' is not a valid integer value");
  EXPECT_EQ(ReadError(Script("", "", "VALUE \"Translation\", 0x409, CP")),
            "'CP' is not a valid integer value");
  EXPECT_EQ(ReadError(Script("", "", "VALUE \"Translation\", 0x409")), "'' is not a valid integer value");
  EXPECT_EQ(ReadError(Script("", "", "VALUE \"Translation\"")), "'' is not a valid integer value");
  EXPECT_EQ(ReadError(Script("", "", "VALUE \"Translation\", 0x123456789, 0")),
            "'123456789' is not a valid integer value");
}

TEST(VersionBlockReader, ATranslatedKeyIsPassedOver) {
  const auto reading = Read(Script("", "", "VALUE \"\xB7\xAD\xD2\xEB\", 0x804, 936"));
  EXPECT_FALSE(reading.locale.has_value());
  EXPECT_FALSE(reading.codePage.has_value());
}

TEST(VersionBlockReader, TellsWhatIsNotThere) {
  const auto none = Read("STRINGTABLE\r\n");
  EXPECT_FALSE(none.hasBlock);
  const auto empty = Read("1 VERSIONINFO\r\nBEGIN\r\nEND\r\n");
  EXPECT_TRUE(empty.hasBlock);
  EXPECT_FALSE(empty.numbers || empty.flags || empty.isDll || empty.locale || empty.codePage);
  EXPECT_TRUE(empty.keys.empty());
}

TEST(VersionBlockReader, AnyLineEndsALine) {
  std::string script = Script("FILEVERSION 1,2,3,4", "VALUE \"A\", \"a\"");
  std::string lf, cr;
  for (const char c : script) {
    if (c != '\r') lf += c;
    if (c != '\n') cr += c;
  }
  EXPECT_EQ(Read(lf).keys, Read(script).keys);
  EXPECT_EQ(Read(cr).keys, Read(script).keys);
  EXPECT_EQ(*Read(cr).numbers, (std::array<std::int32_t, 4>{1, 2, 3, 4}));
}

TEST(VersionBlockReader, ReadsBackWhatTheWriterWrote) {
  VersionValues values = SomeValues();
  values.flags = {true, true, true, true};
  values.isDll = true;
  values.keys = {"CompanyName=ACME", "FileVersion=", "Comments=a=b"};
  const auto reading = Read(Written(values));
  EXPECT_EQ(*reading.numbers, values.numbers);
  EXPECT_EQ(*reading.flags, values.flags);
  EXPECT_FALSE(*reading.isDll);  // the one-digit type, as above
  EXPECT_EQ(*reading.locale, values.locale);
  EXPECT_EQ(*reading.codePage, values.codePage);
  EXPECT_EQ(reading.keys,
            (std::vector<std::string>{"CompanyName=ACME", "FileVersion=1.2.0.45", "Comments=a=b"}));
}

TEST(NamedCodePageTest, TheLastPragmaCounts) {
  EXPECT_EQ(NamedCodePage("#include \"x\"\r\n"), std::nullopt);
  EXPECT_EQ(NamedCodePage("#pragma code_page(1252)\r\n"), 1252U);
  EXPECT_EQ(NamedCodePage("#pragma code_page(1252)\r\n # pragma  code_page ( 65001 )\r\n"), 65001U);
  EXPECT_EQ(NamedCodePage("#pragma code_page(1252)\r\n#pragma code_page(DEFAULT)\r\n"), std::nullopt);
  EXPECT_EQ(NamedCodePage("// #pragma code_page(1252)\r\n#pragma once\r\n#pragma"), std::nullopt);
}

}  // namespace
}  // namespace qx
