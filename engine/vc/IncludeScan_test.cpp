#include "engine/vc/IncludeScan.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(ScanSource, FindsIncludesLibrariesAndTheWideMain) {
  const ScannedText scanned = ScanSource(
      "#include <Windows.h>\r\n  # include \"a\\b.h\" // c\n#include MACRO\n#include \"\"\n"
      "#pragma comment( lib , \"ws2_32.lib\")\n#pragma once\n// wmain\nint my_wmain(){}\nint wmain() {}\n");
  ASSERT_EQ(scanned.includes.size(), 2u);
  EXPECT_EQ(scanned.includes[0].name, "Windows.h");
  EXPECT_FALSE(scanned.includes[0].quoted);
  EXPECT_EQ(scanned.includes[1].name, "a\\b.h");
  EXPECT_EQ(scanned.libraries, std::vector<std::string>{"ws2_32.lib"});
  EXPECT_TRUE(scanned.hasWideMain);
  EXPECT_FALSE(ScanSource("// wmain\nint my_wmain(){}\n").hasWideMain);
  EXPECT_TRUE(ScanSource("x = 0xFFui64;\n").hasOldLiterals);
  EXPECT_TRUE(ScanSource("x = 1I64;\n").hasOldLiterals);
  EXPECT_TRUE(ScanSource("# define BIG 1i64\n").hasOldLiterals);
  EXPECT_FALSE(ScanSource("printf(\"%I64d\", mi64);\n").hasOldLiterals);
  EXPECT_TRUE(ScanSource("int _tmain(int, char**)\n").hasGenericMain);
}

class Scan : public testing::Test {
 protected:
  std::map<std::string, std::string> Forwards(const std::string& source) {
    IncludeScan scan({folder_ / "inc/"}, {folder_ / "system/"});
    scan.Add(folder_ / source);
    return scan.Forwards();
  }
  TestFolder folder_;
};

TEST_F(Scan, LeavesToGccWhatItFindsItself) {
  folder_.Write("a.c",
                "#include \"own.h\"\n#include <listed.h>\n#include <system.h>\n#include <nowhere.h>\n");
  folder_.Write("own.h", "");
  folder_.Write("inc/listed.h", "");
  folder_.Write("inc/System.h", "");  // the exact name comes first, wherever it is
  folder_.Write("system/system.h", "");
  EXPECT_TRUE(Forwards("a.c").empty());
}

TEST_F(Scan, FindsOtherLetterCaseAndBackslashes) {
  folder_.Write("src/a.c", "#include \"Sub\\Deep.h\"\n#include <SYSTEM.h>\n#include \"..\\up.h\"\n");
  folder_.Write("src/sub/deep.h", "#include \"OTHER.H\"\n");
  folder_.Write("src/sub/other.h", "");
  folder_.Write("up.h", "");
  folder_.Write("system/system.h", "");
  EXPECT_EQ(Forwards("src/a.c"),
            (std::map<std::string, std::string>{{"..\\up.h", folder_ / "up.h"},
                                                {"OTHER.H", folder_ / "src/sub/other.h"},
                                                {"SYSTEM.h", folder_ / "system/system.h"},
                                                {"Sub\\Deep.h", folder_ / "src/sub/deep.h"}}));
}

TEST_F(Scan, LooksBesideThoseThatIncludeTheIncluder) {
  folder_.Write("src/a.c", "#include \"sub/b.h\"\n");
  folder_.Write("src/sub/b.h", "#include \"c.h\"\n");
  folder_.Write("src/c.h", "");
  EXPECT_EQ(Forwards("src/a.c"), (std::map<std::string, std::string>{{"c.h", folder_ / "src/c.h"}}));
}

TEST_F(Scan, TellsWhereOneNameMeansTwoFiles) {
  folder_.Write("a/x.c", "#include \"..\\a\\Own.h\"\n#include \"sub\\deep.h\"\n");
  folder_.Write("a/own.h", "");
  folder_.Write("a/sub/deep.h", "");
  folder_.Write("b/y.c", "#include \"sub\\deep.h\"\n");
  folder_.Write("b/sub/deep.h", "");
  IncludeScan scan({}, {});
  scan.Add(folder_ / "a/x.c");
  EXPECT_TRUE(scan.Ambiguous().empty());
  scan.Add(folder_ / "b/y.c");
  EXPECT_EQ(scan.Ambiguous(), std::set<std::string>{"sub\\deep.h"});
}

TEST_F(Scan, EndsWhereHeadersIncludeOneAnother) {
  folder_.Write("a.c", "#include \"b.h\"\n");
  folder_.Write("b.h", "#include \"C.h\"\n");
  folder_.Write("c.h", "#include \"b.h\"\n");
  EXPECT_EQ(Forwards("a.c").size(), 1u);
}

TEST(WriteForwards, WritesOneHeaderANameAndRemovesOldOnes) {
  const TestFolder folder;
  const std::string searched =
      WriteForwards({{"A.h", "/x/a.h"}, {"..\\b.h", "/x/b.h"}, {"../c/D.h", "/x/d.h"}}, folder / "include");
  const std::string inside = searched.substr(folder.Path().size());
  EXPECT_EQ(folder.Read(inside + "/A.h"), "#include \"/x/a.h\"\n");
  EXPECT_EQ(folder.Read(inside + "/..\\b.h"), "#include \"/x/b.h\"\n");
  EXPECT_EQ(folder.Read(inside + "/../c/D.h"), "#include \"/x/d.h\"\n");
  EXPECT_EQ(WriteForwards({{"E.h", "/x/e.h"}}, folder / "include"), searched);
  EXPECT_FALSE(folder.Has(inside + "/A.h"));
  EXPECT_EQ(WriteForwards({}, folder / "include"), "");
  EXPECT_FALSE(folder.Has("include"));
}

TEST(WriteForwards, NeverLeavesItsFolder) {
  const TestFolder folder;
  std::string name = "evil.h";
  for (int depth = 0; depth < 12; ++depth) name = "../" + name;
  WriteForwards({{name, "/x/a.h"}}, folder / "a/b/include");
  EXPECT_EQ(folder.Names(), "");
}

}  // namespace
}  // namespace qx
