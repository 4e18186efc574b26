#include "engine/vc/Diagnostics.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

std::string Printed(std::initializer_list<std::string_view> lines) {
  std::string out;
  Diagnostics diagnostics("@ ", [&](std::string_view line) { (out += line) += '\n'; });
  for (const std::string_view line : lines) diagnostics.Line(line);
  return out;
}

TEST(Diagnostics, SayWhatTheCompilerSaysInTheOldForm) {
  EXPECT_EQ(Printed({"/x/a.cpp:12:5: error: 'y' was not declared in this scope"}),
            "/x/a.cpp(12,5) : error C2065: 'y' was not declared in this scope\n");
  EXPECT_EQ(Printed({"/x/a b.c:3: warning: \"A\" redefined"}),
            "/x/a b.c(3) : warning C4005: \"A\" redefined\n");
  EXPECT_EQ(Printed({"/x/a.c:1:10: fatal error: no.h: No such file or directory", "compilation terminated."}),
            "/x/a.c(1,10) : fatal error C1083: no.h: No such file or directory\n");
  EXPECT_EQ(Printed({"/x/a.c:9:1: note: here"}), "        /x/a.c(9,1) : here\n");
  EXPECT_EQ(Printed({"cc1plus: error: unknown thing"}), "cl : error C2000: unknown thing\n");
  EXPECT_EQ(Printed({"In file included from /x/a.c:1:"}), "In file included from /x/a.c:1:\n");
}

TEST(Diagnostics, SayWhatTheLinkerSays) {
  EXPECT_EQ(
      Printed({"/usr/bin/i686-w64-mingw32-ld: a.obj:a.cpp:(.text+0x12): undefined reference to `foo(int)'",
               "/usr/bin/i686-w64-mingw32-ld: a.obj:a.cpp:(.text+0x22): undefined reference to `foo(int)'",
               "collect2: error: ld returned 1 exit status"}),
      "a.obj : error LNK2019: unresolved external symbol foo(int)\n"
      "LINK : fatal error LNK1120: 1 unresolved externals\n");
  EXPECT_EQ(
      Printed({"/usr/bin/ld: b.obj:b.c:(.text+0x0): multiple definition of `f'; a.obj:a.c: first defined"}),
      "b.obj : error LNK2005: f already defined\n");
  EXPECT_EQ(Printed({"/usr/bin/ld: cannot find -lfoo"}),
            "LINK : fatal error LNK1104: cannot open file '-lfoo'\n");
  EXPECT_EQ(Printed({"/usr/bin/ld: a.obj: in function `main':"}), "");
}

TEST(Diagnostics, TakeALineThatEndsEarly) {
  EXPECT_EQ(Printed({"collect2: error:"}), "LINK : fatal error LNK1181: \n");
}

TEST(Diagnostics, SayWhatTheResourceCompilerSays) {
  EXPECT_EQ(Printed({"i686-w64-mingw32-windres: /x/a.rc:7: syntax error"}),
            "/x/a.rc(7) : error RC2104: syntax error\n");
  EXPECT_EQ(Printed({"@ a.rc",
                     "i686-w64-mingw32-windres: can't open icon file `x.ico': No such file or directory"}),
            "a.rc\na.rc : error RC2135: can't open icon file `x.ico': No such file or directory\n");
  EXPECT_EQ(Printed({"i686-w64-mingw32-windres: /x/a.rc:7: warning: a long title is cut"}),
            "/x/a.rc(7) : warning RC4000: a long title is cut\n");
}

TEST(Diagnostics, PassOverWhatNinjaSaysToItself) {
  EXPECT_EQ(Printed({"@ a.cpp", "FAILED: a.obj ", "gcc -c a.cpp: error: no",
                     "ninja: build stopped: subcommand failed.", "ninja: no work to do."}),
            "a.cpp\n");
  EXPECT_EQ(Printed({"ninja: error: build.ninja:3: bad path"}),
            "NMAKE : fatal error U1073: build.ninja:3: bad path\n");
}

TEST(Diagnostics, RememberTheFirstErrorAndMissingHeaders) {
  Diagnostics diagnostics("@ ", [](std::string_view) {});
  diagnostics.Line("a.c:1:1: warning: w");
  diagnostics.Line("a.c:1:10: fatal error: afxwin.h: No such file or directory");
  diagnostics.Line("b.c:1:10: error: second");
  EXPECT_EQ(diagnostics.FirstError(), "afxwin.h: No such file or directory");
  EXPECT_EQ(diagnostics.MissingHeaders(), std::set<std::string>{"afxwin.h"});
}

}  // namespace
}  // namespace qx
