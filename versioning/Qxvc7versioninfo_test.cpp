#include "versioning/Qxvc7versioninfo.h"

#include <gtest/gtest.h>

#include "host/actions/ActionHost.h"
#include "host/testing/TestFolder.h"
#include "host/testing/TestHost.h"
#include "platform/DateText.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

using std::string_literals::operator""s;

// Version values that note every call of a setter.
class Info final : public AnswersUncounted<IQXVC7VersionInfo> {
 public:
  virtual ~Info() = default;
  std::int32_t GetBuildVer() override { return build; }
  std::int32_t GetCodePage() override { return codePage; }
  bool GetIsDebug() override { return false; }
  bool GetIsDLL() override { return false; }
  bool GetIsPreRelease() override { return true; }
  bool GetIsPrivate() override { return true; }
  bool GetIsSpecial() override { return true; }
  std::int32_t GetLocale() override { return 0x409; }
  std::int32_t GetMajorVer() override { return 1; }
  std::int32_t GetMinorVer() override { return 2; }
  std::int32_t GetReleaseVer() override { return 0; }
  std::string GetVersionInfoKeys() override { return keys; }
  void SetBuildVer(std::int32_t value) override { Note("build", value); }
  void SetCodePage(std::int32_t value) override { Note("page", value); }
  void SetIsDebug(bool value) override { Note("debug", value); }
  void SetIsDLL(bool value) override { Note("dll", value); }
  void SetIsPreRelease(bool value) override { Note("prerelease", value); }
  void SetIsPrivate(bool value) override { Note("private", value); }
  void SetIsSpecial(bool value) override { Note("special", value); }
  void SetLocale(std::int32_t value) override { Note("locale", value); }
  void SetMajorVer(std::int32_t value) override { Note("major", value); }
  void SetMinorVer(std::int32_t value) override { Note("minor", value); }
  void SetReleaseVer(std::int32_t value) override { Note("release", value); }
  void SetVersionInfoKeys(const std::string& value) override { calls += "keys=" + value + ";"; }
  bool GetIncludeCompileDate() override { return compileDate; }
  void SetIncludeCompileDate(bool) override { calls += "date;"; }

  std::int32_t build = 45;
  std::int32_t codePage = 1252;
  std::string keys = "CompanyName=ACME\r\n";
  bool compileDate = false;
  std::string calls;

 private:
  void Note(const char* what, int value) { calls += std::string(what) + "=" + std::to_string(value) + ";"; }
};

std::string Block(const std::string& values) {
  return "VS_VERSION_INFO VERSIONINFO\r\nFILEVERSION 1,2,0,45\r\nPRODUCTVERSION 1,2,0,45\r\nFILEFLAGSMASK "
         "0x3FL\r\n"
         "FILEFLAGS 0x2AL\r\nFILEOS 0x40004L\r\nFILETYPE 0x1L\r\nFILESUBTYPE 0x0L\r\nBEGIN\r\n"
         "    BLOCK \"StringFileInfo\"\r\n    BEGIN\r\n         BLOCK \"040904E4\"\r\n         BEGIN\r\n" +
         values +
         "         END\r\n    END\r\n    BLOCK \"VarFileInfo\"\r\n    BEGIN\r\n"
         "         VALUE \"Translation\", 0x0409, 1252\r\n    END\r\nEND\r\n";
}
std::string Value(const std::string& key, const std::string& value) {
  return "              VALUE \"" + key + "\", \"" + value + "\\0\"\r\n";
}
const std::string kAcme = Block(Value("CompanyName", "ACME"));
const std::string kOldBlock = "1 VERSIONINFO\r\nFILEVERSION 9,9,9,9\r\nBEGIN\r\nEND\r\n";

class VersionScript : public testing::Test {
 protected:
  InterfacePtr<IQXVC7VersionInfoParser> Parser(const std::string& name) {
    return GetVersionInfoParser(MakeApplicationServices(host.variables), folder / name);
  }
  // The file's new bytes, or the error.
  std::string Update(const std::string& bytes) {
    folder.Write("App.rc", bytes);
    try {
      EXPECT_TRUE(Parser("App.rc")->UpdateVersionInfo(info));
    } catch (const Exception& error) {
      EXPECT_EQ(folder.Read("App.rc"), bytes);
      return error.Message();
    }
    return folder.Read("App.rc");
  }

  TestHost host;
  TestFolder folder;
  Info info;
};

TEST_F(VersionScript, TheBlockIsReplacedAndNothingElse) {
  EXPECT_EQ(Update("// before\r\n" + kOldBlock + "// behind\r\n"), "// before\r\n" + kAcme + "// behind\r\n");
}

TEST_F(VersionScript, AScriptWithoutBlockGetsOneAtItsEnd) {
  EXPECT_EQ(Update("// only this"), "// only this\r\n" + kAcme);
  EXPECT_EQ(Update(""), kAcme);
}

TEST_F(VersionScript, OnlyTheFirstBlockIsReplaced) {
  EXPECT_EQ(Update(kOldBlock + "#else\r\n" + kOldBlock), kAcme + "#else\r\n" + kOldBlock);
}

TEST_F(VersionScript, LineEndsBecomeCrLf) {
  EXPECT_EQ(Update("a\n1 VERSIONINFO\nBEGIN\rEND\nb\r\nc"), "a\r\n" + kAcme + "b\r\nc\r\n");
}

TEST_F(VersionScript, TheOrigIsMadeOnce) {
  const std::string first = "a\n" + kOldBlock;
  Update(first);
  EXPECT_EQ(folder.Read("App.rc.orig"), "a\r\n" + kOldBlock);
  Update("second\r\n" + kOldBlock);
  EXPECT_EQ(folder.Read("App.rc.orig"), "a\r\n" + kOldBlock);
  EXPECT_EQ(folder.Names(), "App.rc App.rc.orig");
}

TEST_F(VersionScript, TheSameValuesTwiceChangeNothing) {
  const std::string once = Update("x\n" + kOldBlock);
  const auto time = std::filesystem::last_write_time(folder / "App.rc") - std::chrono::hours(1);
  std::filesystem::last_write_time(folder / "App.rc", time);
  EXPECT_TRUE(Parser("App.rc")->UpdateVersionInfo(info));
  EXPECT_EQ(folder.Read("App.rc"), once);
  EXPECT_EQ(std::filesystem::last_write_time(folder / "App.rc"), time);
}

TEST_F(VersionScript, TheBackupIsMadeEvenWhenNothingChanges) {
  EXPECT_EQ(Update(kAcme), kAcme);
  EXPECT_EQ(folder.Read("App.rc.orig"), kAcme);
  folder.Write("App.rc", "changed in place");
  EXPECT_EQ(folder.Read("App.rc.orig"), kAcme);  // a copy, not another name of the file
}

TEST_F(VersionScript, AMalformedBlockLeavesEverythingUntouched) {
  EXPECT_EQ(Update("1 VERSIONINFO\r\nBLOCK\r\n"), "Unexpected BLOCK");
  EXPECT_EQ(Update("1 VERSIONINFO\r\n{\r\n}\r\nthe rest"),
            "The VERSIONINFO block is not closed by END: " + (folder / "App.rc"));
  EXPECT_EQ(folder.Names(), "App.rc");
}

TEST_F(VersionScript, AMissingFileIsAnErrorThatNamesIt) {
  for (const bool reading : {true, false}) {
    try {
      if (reading) Parser("None.rc")->ReadVersionInfo(info);
      if (!reading) Parser("None.rc")->UpdateVersionInfo(info);
      FAIL();
    } catch (const Exception& error) {
      EXPECT_EQ(error.Message().substr(0, 12 + (folder / "None.rc").size()),
                "Cannot read " + (folder / "None.rc"));
    }
  }
  EXPECT_EQ(folder.Names(), "");
}

TEST_F(VersionScript, AReadOnlyFileIsNamedBeforeAnythingIsWritten) {
  const std::string path = folder.Write("App.rc", kOldBlock);
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  try {
    Parser("App.rc")->UpdateVersionInfo(info);
    FAIL();
  } catch (const Exception& error) {
    EXPECT_EQ(error.Message(), "Cannot write " + path + ": the file is read-only");
  }
  EXPECT_EQ(folder.Read("App.rc"), kOldBlock);
  EXPECT_EQ(folder.Names(), "App.rc");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

TEST_F(VersionScript, EncodingAndMarkStay) {
  info.keys = "CompanyName=M\xC3\xBCller\r\n";
  const std::string utf8 = Block(Value("CompanyName", "M\xC3\xBCller"));
  EXPECT_EQ(Update("\xEF\xBB\xBF// \xC3\xA9\n" + kOldBlock), "\xEF\xBB\xBF// \xC3\xA9\r\n" + utf8);
  EXPECT_EQ(Update("// \xC3\xA9\r\n" + kOldBlock), "// \xC3\xA9\r\n" + utf8);
  EXPECT_EQ(Update("#pragma code_page(1252)\r\n// \xE9\r\n" + kOldBlock),
            "#pragma code_page(1252)\r\n// \xE9\r\n" + Block(Value("CompanyName", "M\xFCller")));
  const auto wide = [](const std::string& latin) {
    std::string bytes = "\xFF\xFE";
    for (const char c : latin) bytes.append(1, c).append(1, '\0');
    return bytes;
  };
  EXPECT_EQ(Update(wide("// \xE9\n" + kOldBlock + "x")),
            wide("// \xE9\r\n" + Block(Value("CompanyName", "M\xFCller")) + "x\r\n"));
}

TEST_F(VersionScript, WhatTheEncodingCannotHoldIsAnErrorThatNamesFileAndKey) {
  info.keys = "Good=x\r\nOwner=M\xC3\xBCller\r\n";
  EXPECT_EQ(
      Update("#pragma code_page(1251)\r\n" + kOldBlock),
      "Cannot write " + (folder / "App.rc") +
          ": its encoding cannot hold the text of Owner (save the file as UTF-8 with a mark, or keep to its "
          "characters)");
  EXPECT_EQ(folder.Names(), "App.rc");
}

TEST_F(VersionScript, ValuesAreExpandedNestedOnesToo) {
  host.variables.SetProject("NAME", "%INNER%");
  host.variables.SetProject("INNER", "ACME");
  info.keys = "CompanyName=%NAME%\r\n";
  EXPECT_EQ(Update(kOldBlock), kAcme);
}

TEST_F(VersionScript, AnUndefinedVariableLeavesTheFile) {
  info.keys = "CompanyName=%NOBODY_SET_THIS%\r\n";
  EXPECT_EQ(Update(kOldBlock), "Undefined variable : NOBODY_SET_THIS");
  EXPECT_EQ(folder.Names(), "App.rc");
}

TEST_F(VersionScript, TheActionExpandsToo) {
  host.variables.SetProject("NAME", "ACME");
  info.keys = "CompanyName=%NAME%\r\n";
  static const TQXActionClass kClass{
      "TQXAction", [] { return std::string("Nothing"); }, {}, [] { return std::make_unique<TQXAction>(); }};
  const auto action = host.Make(kClass);
  folder.Write("App.rc", kOldBlock);
  EXPECT_TRUE(GetVersionInfoParser(*action, folder / "App.rc")->UpdateVersionInfo(info));
  EXPECT_EQ(folder.Read("App.rc"), kAcme);
}

TEST_F(VersionScript, TheCompileDateIsLongDateAndShortTime) {
  info.compileDate = true;
  info.keys = "Compile Date=old\r\nA=1\r\n";
  const auto expected = [](std::time_t now) {
    return Block(Value("Compile Date", LongDateText(now) + " " + ShortTimeText(now)) + Value("A", "1"));
  };
  const std::time_t before = std::time(nullptr);
  const std::string text = Update("\xEF\xBB\xBF" + kOldBlock);
  const std::time_t after = std::time(nullptr);
  EXPECT_TRUE(text == "\xEF\xBB\xBF" + expected(before) || text == "\xEF\xBB\xBF" + expected(after)) << text;
}

TEST_F(VersionScript, ReadingSetsWhatTheBlockSaysInOrder) {
  folder.Write("App.rc", Block(Value("CompanyName", "ACME") + Value("Empty", "")));
  Parser("App.rc")->ReadVersionInfo(info);
  EXPECT_EQ(info.calls,
            "major=1;minor=2;release=0;build=45;debug=0;prerelease=1;special=1;private=1;dll=0;locale=1033;"
            "page=1252;keys=CompanyName=ACME\r\nEmpty=\r\n;");
}

TEST_F(VersionScript, ReadingAScriptWithoutBlockEmptiesTheKeysOnly) {
  folder.Write("App.rc", "// nothing\r\n");
  Parser("App.rc")->ReadVersionInfo(info);
  EXPECT_EQ(info.calls, "keys=;");
}

TEST_F(VersionScript, ReadingAMalformedBlockSetsNothing) {
  folder.Write("App.rc", "1 VERSIONINFO\r\nFILEVERSION 1,2,3,4\r\nEND\r\n");
  EXPECT_THROW(Parser("App.rc")->ReadVersionInfo(info), Exception);
  EXPECT_EQ(info.calls, "");
}

TEST_F(VersionScript, ReadingUnderstandsUtf16) {
  std::string bytes = "\xFF\xFE";
  for (const char c : Block(Value("A", "\xFC"))) bytes.append(1, c).append(1, '\0');
  folder.Write("App.rc", bytes);
  Parser("App.rc")->ReadVersionInfo(info);
  EXPECT_NE(info.calls.find("keys=A=\xC3\xBC\r\n;"), std::string::npos);
}

TEST_F(VersionScript, ADryRunWritesNothing) {
  folder.Write("App.rc", kOldBlock);
  {
    const WriteCapture capture;
    EXPECT_TRUE(Parser("App.rc")->UpdateVersionInfo(info));
    const auto changes = capture.Changes();
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0].bytes, kOldBlock);
    EXPECT_EQ(changes[1].bytes, kAcme);
  }
  EXPECT_EQ(folder.Read("App.rc"), kOldBlock);
  EXPECT_EQ(folder.Names(), "App.rc");
}

}  // namespace
}  // namespace qx
