#include "platform/registry/RegistryExport.h"

#include <gtest/gtest.h>

#include "platform/Texts.h"

namespace qx {
namespace {

constexpr const char* kKey = "SOFTWARE\\Microsoft\\VisualStudio\\8.0";

std::optional<std::string> Read(const std::string& body, const std::string& name,
                                const std::string& head = "REGEDIT4\r\n\r\n") {
  const auto file = RegistryExport::FromBytes(head + body);
  return file ? file->MachineText(kKey, name) : std::nullopt;
}

const std::string kHead = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\VisualStudio\\8.0]\r\n";

TEST(RegistryExport, GivesTextsWithoutTheirBackslashes) {
  EXPECT_EQ(Read(kHead + "\"InstallDir\"=\"C:\\\\VS \\\"8\\\"\\\\\"\r\n", "InstallDir"), "C:\\VS \"8\"\\");
}

TEST(RegistryExport, PassesOverLetterCase) {
  EXPECT_EQ(Read("[hkey_local_machine\\Software\\MICROSOFT\\visualstudio\\8.0]\n\"INSTALLDIR\"=\"x\"\n",
                 "installdir"),
            "x");
}

TEST(RegistryExport, TheThirtyTwoBitKeyComesFirst) {
  const std::string other = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Microsoft\\VisualStudio\\8.0]\r\n";
  EXPECT_EQ(Read(kHead + "\"a\"=\"64\"\r\n" + other + "\"a\"=\"32\"\r\n", "a"), "32");
  EXPECT_EQ(Read(other + "\"b\"=\"32\"\r\n" + kHead + "\"a\"=\"64\"\r\n", "a"), "64");
}

TEST(RegistryExport, KnowsTheDefaultValue) { EXPECT_EQ(Read(kHead + "@=\"d\"\r\n", ""), "d"); }

TEST(RegistryExport, ReadsUtf16) {
  const std::u16string text =
      u"Windows Registry Editor Version 5.00\r\n\r\n"
      u"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\VisualStudio\\8.0]\r\n\"a\"=\"zwölf\"\r\n";
  std::string bytes = "\xFF\xFE";
  for (const char16_t c : text) {
    bytes += static_cast<char>(c & 0xFF);
    bytes += static_cast<char>(c >> 8);
  }
  EXPECT_EQ(RegistryExport::FromBytes(bytes)->MachineText(kKey, "a"), "zwölf");
}

TEST(RegistryExport, ReadsTextsWithVariablesOverSeveralLines) {
  EXPECT_EQ(Read(kHead + "\"a\"=hex(2):25,41,\\\r\n  25,00\r\n", "a"), "%A%");
  EXPECT_EQ(Read(kHead + "\"a\"=hex(2):25,00,e4,00,\\\r\n  25,00,00,00\r\n", "a",
                 "Windows Registry Editor Version 5.00\r\n\r\n"),
            "%ä%");
}

TEST(RegistryExport, FindsNoOtherKindsOfValues) {
  const std::string body =
      kHead + "\"n\"=dword:00000001\r\n\"b\"=hex:01,02\r\n\"gone\"=-\r\n\"open\"=\"x\r\n; \"c\"=\"x\"\r\n";
  for (const char* name : {"n", "b", "gone", "open", "c", "missing"})
    EXPECT_EQ(Read(body, name), std::nullopt) << name;
}

TEST(RegistryExport, AKeyThatIsRemovedHoldsNothing) {
  EXPECT_EQ(Read("[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\VisualStudio\\8.0]\r\n\"a\"=\"x\"\r\n", "a"),
            std::nullopt);
  EXPECT_EQ(Read("[HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\VisualStudio\\8.0]\r\n\"a\"=\"x\"\r\n", "a"),
            std::nullopt);
}

TEST(RegistryExport, IsToldByItsFirstLine) {
  EXPECT_FALSE(RegistryExport::FromBytes(""));
  EXPECT_FALSE(RegistryExport::FromBytes("[Settings]\r\nREGEDIT4\r\n"));
  EXPECT_FALSE(RegistryExport::FromBytes("REGEDIT5\r\n"));
  EXPECT_TRUE(RegistryExport::FromBytes("REGEDIT4"));
}

TEST(RegistryExport, TakesWhateverFollowsWithoutHarm) {
  for (const char* body : {"[", "[]", "]", "[HKEY_LOCAL_MACHINE\\a\n\"", "[a]\n\"\\", "[a]\n@",
                           "[a]\n\"a\"=hex(2):zz", "[a]\n\"a\"=hex(1):,,", "[a]\n\"a\"=\"\\", "\\\n\\\n"}) {
    EXPECT_TRUE(RegistryExport::FromBytes(std::string("REGEDIT4\n") + body)) << body;
  }
}

}  // namespace
}  // namespace qx
