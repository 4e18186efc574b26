#include "engine/Console.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(EngineConsole, KnowsErrorsInEveryToolsForm) {
  for (const char* line :
       {"a.cpp(12) : error C2065: 'x' : undeclared identifier", "src\\a.cs(3,7): error CS0103: text",
        "LINK : fatal error LNK1104: cannot open file", "C:\\src\\a.c(1) : fatal error C1083: text",
        "a.cpp:12:5: error: 'x' was not declared", "a.c:1:10: fatal error: b.h: No such file or directory",
        "ninja: error: loading 'build.ninja'", "App : error PRJ0019 : text",
        "MSBUILD : error MSB4025: text"}) {
    EXPECT_EQ(KindOfLine(line), LineKind::Error) << line;
  }
}

TEST(EngineConsole, KnowsWarnings) {
  for (const char* line : {"a.cpp(12) : warning C4018: text", "a.cs(3,7): warning CS0168: text",
                           "a.c:3:1: warning: unused variable", "App : warning PRJ0041 : text"}) {
    EXPECT_EQ(KindOfLine(line), LineKind::Warning) << line;
  }
}

TEST(EngineConsole, TakesNoOtherLineForOne) {
  for (const char* line :
       {"App - 0 error(s), 0 warning(s)", "Compiling error.cpp", "error", "note: error ahead",
        "    Build: 1 succeeded, 0 failed, 0 skipped", "a.c:3:1: note: declared here",
        "a.cpp: In function 'int error(int)':", "x: errors: 3", "error C2065: no place", ""}) {
    EXPECT_EQ(KindOfLine(line), LineKind::Plain) << line;
  }
}

TEST(EngineConsole, CountsWhatItPrints) {
  ConsoleText console;
  console.Line("Compiling...");
  console.Error("a.cpp", 3, "C1083", "no such file");
  console.Warning("App.vcproj", 0, "PRJ0041", "passed over");
  EXPECT_EQ(console.Text(),
            "Compiling...\na.cpp(3) : error C1083: no such file\n"
            "App.vcproj : warning PRJ0041: passed over\n");
  EXPECT_EQ(console.Counted().errors, 1);
  EXPECT_EQ(console.Counted().warnings, 1);
}

}  // namespace
}  // namespace qx
