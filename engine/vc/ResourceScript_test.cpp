#include "engine/vc/ResourceScript.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

const ResourceResolver kNothing = [](const ResourceName&) { return std::string(); };

// Without the line that names the script.
std::string Translated(std::string_view bytes, const ResourceResolver& resolve = kNothing,
                       std::uint32_t codePage = 1252) {
  const std::string text = TranslateResourceScript(bytes, codePage, "/x/a.rc", resolve).text;
  return text.substr(text.find('\n') + 1);
}

TEST(ResourceScript, NamesTheScriptForErrors) {
  EXPECT_EQ(TranslateResourceScript("", 1252, "/x/a \"b\".rc", kNothing).text,
            "#line 1 \"/x/a \\\"b\\\".rc\"\n");
}

TEST(ResourceScript, FindsFilesWithDoubledBackslashes) {
  std::string asked;
  const ResourceResolver resolve = [&](const ResourceName& name) {
    asked += name.name + (name.included ? "+ " : " ");
    return "/tree/" + name.name;
  };
  EXPECT_EQ(
      Translated("IDI_MAIN ICON DISCARDABLE \"res\\\\app.ico\"\n#include \"res\\\\app.rc2\"\n1 24 \"a "
                 "b.manifest\"\n",
                 resolve),
      "IDI_MAIN ICON \"/tree/res/app.ico\"\n#include \"/tree/res/app.rc2\"\n1 24 \"/tree/a b.manifest\"\n");
  EXPECT_EQ(asked, "res/app.ico res/app.rc2+ a b.manifest ");
}

TEST(ResourceScript, LeavesTextsInBlocksAlone) {
  const std::string block = "STRINGTABLE\nBEGIN\n IDS_A \"res\\\\x\"\n IDS_B ICON \"y\"\nEND\n";
  EXPECT_EQ(Translated(block, [](const ResourceName&) { return std::string("/found"); }), block);
  const std::string dialog =
      "IDD_A DIALOG DISCARDABLE 0, 0, 10, 10\nFONT 8, \"MS Sans Serif\"\nCAPTION \"x\"\nBEGIN\nEND\n";
  EXPECT_EQ(Translated(dialog, [](const ResourceName&) { return std::string("/found"); }), dialog);
}

TEST(ResourceScript, DropsMemoryFlagsBehindVersionInfo) {
  const ResourceCopy copy = TranslateResourceScript(
      "VS_VERSION_INFO VERSIONINFO MOVEABLE PURE\n FILEVERSION 1,2,3,4\n", 1252, "a", kNothing);
  EXPECT_NE(copy.text.find("\nVS_VERSION_INFO VERSIONINFO\n FILEVERSION 1,2,3,4\n"), std::string::npos);
  EXPECT_EQ(copy.notes.size(), 1u);
}

TEST(ResourceScript, SaysDlgInitAsItsNumber) {
  EXPECT_EQ(Translated(
                "IDD_A DLGINIT\nBEGIN\n    IDC_B, 0x403, 4, 0\n0x6e4f, 0x0065, \n    0\nEND\n1 ICON \"x\"\n"),
            "IDD_A 240\n\n BEGIN\n IDC_B, 0x403, 4, 0\n, 0x6e4f, 0x0065\n, 0\n END\n1 ICON \"x\"\n");
}

TEST(ResourceScript, DecodesByItsOwnCodePage) {
  EXPECT_EQ(Translated("#pragma code_page(932)\nA \"\x93\xFA\"\n"), "\nA \"日\"\n");
  EXPECT_EQ(Translated("A \"\xFC\"\n"), "A \"ü\"\n");
  EXPECT_EQ(Translated("A \"\xFC\"\n", kNothing, 1251), "A \"ь\"\n");
  EXPECT_EQ(Translated(std::string_view("\xFF\xFE"
                                        "A\0 \0\xE5\x65\n\0",
                                        10)),
            "A 日\n");
}

TEST(ResourceScript, KnowsCodePagesOfCultures) {
  EXPECT_EQ(CodePageOfCulture("1041"), 932u);
  EXPECT_EQ(CodePageOfCulture("1049"), 1251u);
  EXPECT_EQ(CodePageOfCulture("2052"), 936u);
  EXPECT_EQ(CodePageOfCulture("1028"), 950u);
  EXPECT_EQ(CodePageOfCulture("1033"), 1252u);
  EXPECT_EQ(CodePageOfCulture(""), 1252u);
}

}  // namespace
}  // namespace qx
