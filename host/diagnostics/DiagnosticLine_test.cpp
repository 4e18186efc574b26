#include "host/diagnostics/DiagnosticLine.h"

#include <gtest/gtest.h>

#include <string>

namespace qx {
namespace {

// "severity|code|file|line|column|message|project"; "none" where the line is no diagnostic.
std::string Read(std::string_view line) {
  const auto found = ReadDiagnostic(line);
  if (!found) return "none";
  std::string all(NameOf(found->severity));
  for (const std::string& part :
       {std::string(found->code), std::string(found->file), std::to_string(found->line),
        std::to_string(found->column), std::string(found->message), std::string(found->project)}) {
    all += "|" + part;
  }
  return all;
}

TEST(DiagnosticLine, ReadsTheFormsOfVisualStudio) {
  EXPECT_EQ(Read("c:\\src\\App\\main.cpp(12) : error C2065: 'x' : undeclared identifier"),
            "error|C2065|c:\\src\\App\\main.cpp|12|0|'x' : undeclared identifier|");
  EXPECT_EQ(Read(".\\a.cpp(3) : warning C4244: '=' : conversion from 'int' to 'char'"),
            "warning|C4244|.\\a.cpp|3|0|'=' : conversion from 'int' to 'char'|");
  EXPECT_EQ(Read("Prices.cs(27,14): error CS0103: The name 'y' does not exist"),
            "error|CS0103|Prices.cs|27|14|The name 'y' does not exist|");
  EXPECT_EQ(Read("C:\\Basic\\Module1.vb(8) : error BC30451: Name 'z' is not declared."),
            "error|BC30451|C:\\Basic\\Module1.vb|8|0|Name 'z' is not declared.|");
  EXPECT_EQ(Read("C:\\a b\\app.rc (44): error RC2104 : undefined keyword or key name: IDX"),
            "error|RC2104|C:\\a b\\app.rc|44|0|undefined keyword or key name: IDX|");
  EXPECT_EQ(Read("a.cpp(1) : fatal error C1083: Cannot open include file: 'no.h'"),
            "error|C1083|a.cpp|1|0|Cannot open include file: 'no.h'|");
}

TEST(DiagnosticLine, ReadsToolsThatSpeakForThemselves) {
  EXPECT_EQ(Read("LINK : fatal error LNK1104: cannot open file 'nowhere.lib'"),
            "error|LNK1104||0|0|cannot open file 'nowhere.lib'|");
  EXPECT_EQ(Read("main.obj : error LNK2019: unresolved external symbol _f"),
            "error|LNK2019|main.obj|0|0|unresolved external symbol _f|");
  EXPECT_EQ(Read("libcmt.lib(crt0.obj) : error LNK2019: unresolved"),
            "error|LNK2019|libcmt.lib(crt0.obj)|0|0|unresolved|");
  EXPECT_EQ(Read("Project : warning PRJ0041 : Cannot find missing dependency"),
            "warning|PRJ0041||0|0|Cannot find missing dependency|");
  EXPECT_EQ(Read("cl : Command line warning D4002 : ignoring unknown option '/Qx'"),
            "warning|D4002||0|0|ignoring unknown option '/Qx'|");
  EXPECT_EQ(Read("C:\\App\\App.vcproj : error PRJ0002 : Error result 31 returned"),
            "error|PRJ0002|C:\\App\\App.vcproj|0|0|Error result 31 returned|");
  EXPECT_EQ(Read("error CS0006: Metadata file 'Lib.dll' could not be found"),
            "error|CS0006||0|0|Metadata file 'Lib.dll' could not be found|");
  EXPECT_EQ(Read("C:\\VC\\bin\\cl.exe : warning D9002 : x"), "warning|D9002|C:\\VC\\bin\\cl.exe|0|0|x|");
  EXPECT_EQ(Read("devenv.com : error QXE0001: no such project"), "error|QXE0001||0|0|no such project|");
}

TEST(DiagnosticLine, ReadsTheFormsOfMSBuild) {
  EXPECT_EQ(Read("MSBUILD : error MSB4025: The project file could not be loaded."),
            "error|MSB4025||0|0|The project file could not be loaded.|");
  EXPECT_EQ(Read("C:\\F\\Common.targets(605,9): error MSB3021: Unable to copy file \"a\" to \"b\"."),
            "error|MSB3021|C:\\F\\Common.targets|605|9|Unable to copy file \"a\" to \"b\".|");
  EXPECT_EQ(Read("  a.cs(3,5,3,9): warning CS0168: unused [C:\\src\\Lib\\My.Lib.csproj]"),
            "warning|CS0168|a.cs|3|5|unused|My.Lib");
  EXPECT_EQ(Read("a.cs(3,5): warning CS0168: unused [/s/L.csproj::TargetFramework=net20]"),
            "warning|CS0168|a.cs|3|5|unused|L");
  EXPECT_EQ(Read("a.cs(3-9): error CS1: x"), "error|CS1|a.cs|3|0|x|");
  EXPECT_EQ(Read("EXEC : error : the tool broke"),
            "error||"
            "|0|0|the tool broke|");
  EXPECT_EQ(Read("C:\\My Build\\x.targets(7,2): error : told by a task"),
            "error||C:\\My Build\\x.targets|7|2|told by a task|");
  EXPECT_EQ(Read("a.cs(1,2): WARNING cs1: loud"), "warning|cs1|a.cs|1|2|loud|");
  EXPECT_EQ(Read("a.cs(1,2): error MyRule: a code without a number"),
            "error|MyRule|a.cs|1|2|a code without a number|");
}

TEST(DiagnosticLine, ReadsTheFormsOfXbuild) {
  EXPECT_EQ(Read("/src/My Docs/A.sln:  warning : Ignoring vcproj 'B'."),
            "warning||/src/My Docs/A.sln|0|0|Ignoring vcproj 'B'.|");
  EXPECT_EQ(Read("C:\\My Docs\\A.sln:  warning : x"), "warning||C:\\My Docs\\A.sln|0|0|x|");
  EXPECT_EQ(Read("My Docs:  warning : x"), "none");
}

TEST(DiagnosticLine, ReadsTheFormsOfGcc) {
  EXPECT_EQ(Read("src/a.cpp:12:5: error: 'y' was not declared in this scope"),
            "error||src/a.cpp|12|5|'y' was not declared in this scope|");
  EXPECT_EQ(Read("a.c:1:10: fatal error: no.h: No such file or directory"),
            "error||a.c|1|10|no.h: No such file or directory|");
  EXPECT_EQ(Read("a.c:7: warning: old form"), "warning||a.c|7|0|old form|");
  EXPECT_EQ(Read("a.c:7:1: warning: unused variable 'x' [-Wunused-variable]"),
            "warning|-Wunused-variable|a.c|7|1|unused variable 'x'|");
  EXPECT_EQ(Read("C:/x/a.c:7:1: error: broken"), "error||C:/x/a.c|7|1|broken|");
  EXPECT_EQ(Read("collect2: error: ld returned 1 exit status"), "error|||0|0|ld returned 1 exit status|");
  EXPECT_EQ(Read("/usr/bin/ld: a.o: error: not a file"), "error||a.o|0|0|not a file|");
  EXPECT_EQ(Read("a.c:3:1: internal compiler error: in f, at g.c:9"), "error||a.c|3|1|in f, at g.c:9|");
}

TEST(DiagnosticLine, TakesTheBuildsNumberOff) {
  EXPECT_EQ(Read("1>a.cpp(2) : error C1: x"), "error|C1|a.cpp|2|0|x|");
  EXPECT_EQ(Read("\t 12> LINK : error LNK1: x"), "error|LNK1||0|0|x|");
  std::string_view line = "  34> rest";
  EXPECT_EQ(TakeBuildNumber(line), 34);
  EXPECT_EQ(line, "rest");
  for (const std::string_view none : {"1234567>x", ">x", "1 >x", "x1>", "1"}) {
    std::string_view left = none;
    EXPECT_EQ(TakeBuildNumber(left), 0) << none;
    EXPECT_EQ(left, none);
  }
}

TEST(DiagnosticLine, PassesOverWhatIsNone) {
  for (const std::string_view line : {"",
                                      ":",
                                      ": error C1: x",
                                      "App - 0 error(s), 0 warning(s)",
                                      "Compiling error.cpp",
                                      "    Build: 1 succeeded, 0 failed, 0 skipped",
                                      "a.c:3:1: note: declared here",
                                      "a.cpp(12) : see declaration of 'x'",
                                      "a.cpp(12) : see error C2065: x",
                                      "a.cpp: In function 'int error(int)':",
                                      "x: errors: 3",
                                      "error: no code",
                                      "error 5: a number",
                                      "Note this: error: prose",
                                      "Note that: this is an error C2065: prose",
                                      "errors : C1: x",
                                      "The word error stands here",
                                      "Total: error count : 3",
                                      "Running \"C:\\a\" /x:error",
                                      "http://server/a: nothing",
                                      "a.c:3:1: note: error: quoted",
                                      "warning",
                                      "x : warning",
                                      "x : error C1"}) {
    EXPECT_EQ(Read(line), "none") << line;
  }
}

TEST(DiagnosticLine, KeepsHostileBytesAsTheyStand) {
  EXPECT_EQ(Read("a<b>.cpp(1): error C1: ##teamcity[x] \x1b[31m \xFF"),
            "error|C1|a<b>.cpp|1|0|##teamcity[x] \x1b[31m \xFF|");
  EXPECT_EQ(Read("::error::x"), "none");
  EXPECT_EQ(Read("a.cpp(99999999999) : error C1: x"), "error|C1|a.cpp|0|0|x|");
  EXPECT_EQ(Read("a.cpp(0) : error C1:"), "error|C1|a.cpp|0|0||");
}

// Each of these would take minutes if any part of the line were looked at once for every other.
TEST(DiagnosticLine, IsLinearInTheLinesLength) {
  constexpr std::size_t kSize = std::size_t{1} << 20;
  for (const std::string& part :
       {std::string(":"), std::string("1:"), std::string(": "), std::string("a:1:1:"), std::string("("),
        std::string("(1,"), std::string("/:"), std::string("[-W"), std::string("error "),
        std::string(":error "), std::string("x:/")}) {
    std::string line;
    while (line.size() < kSize) line += part;
    static_cast<void>(ReadDiagnostic(line));
    const auto found = ReadDiagnostic("a.cpp(1) : error C1: " + line + "]");
    ASSERT_TRUE(found) << part;
    static_cast<void>(ReadDiagnostic(line + " : error C1: x"));
  }
  const std::string longMessage = "a.cpp(1) : error C1: " + std::string(kSize, 'x');
  EXPECT_EQ(ReadDiagnostic(longMessage)->message.size(), kSize);
}

TEST(DiagnosticLine, NamesProjectsByTheirFiles) {
  EXPECT_EQ(ProjectNameOf("C:\\a\\b.c.csproj"), "b.c");
  EXPECT_EQ(ProjectNameOf("/a/b"), "b");
  EXPECT_EQ(ProjectNameOf("A.SLN"), "");
}

}  // namespace
}  // namespace qx
