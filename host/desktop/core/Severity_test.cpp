#include "host/desktop/core/Severity.h"

#include <gtest/gtest.h>

namespace qx::desktop {
namespace {

struct Case {
  const char* line;
  Severity severity;
};
const Case kCases[] = {
    {"Program.cs(3,4): error CS0103: The name 'x' does not exist in the current context", Severity::Error},
    {"  C:\\src\\App\\Program.cs(3,4): error CS0103: The name 'x' [C:\\src\\App\\App.csproj]",
     Severity::Error},
    {"/home/me/src/Program.cs(3,4,3,9): error CS1002: ; expected", Severity::Error},
    {"error CS5001: Program 'a.exe' does not contain a static 'Main' method", Severity::Error},
    {"CSC : error CS0006: Metadata file 'b.dll' could not be found", Severity::Error},
    {"vbc : error BC30420: 'Sub Main' was not found in 'App'.", Severity::Error},
    {"x.vb(12) : error BC30451: Name 'y' is not declared.", Severity::Error},
    {"1>main.cpp(7) : error C2065: 'a' : undeclared identifier", Severity::Error},
    {"12>LINK : fatal error LNK1120: 1 unresolved externals", Severity::Error},
    {"main.obj : error LNK2019: unresolved external symbol \"void f(void)\"", Severity::Error},
    {"cl : Command line error D8003 : missing source filename", Severity::Error},
    {"app.rc(10): error RC2104 : undefined keyword or key name: IDC_X", Severity::Error},
    {"Project : error PRJ0019: A tool returned an error code from \"Copying\"", Severity::Error},
    {"MSBUILD : error MSB1009: Project file does not exist.", Severity::Error},
    {"fatal error C1083: Cannot open include file: 'windows.h'", Severity::Error},
    {"main.c:3:4: error: 'x' undeclared (first use in this function)", Severity::Error},
    {"main.c:1:10: fatal error: none.h: No such file or directory", Severity::Error},
    {"main.cpp:9: internal compiler error: Segmentation fault", Severity::Error},
    {"/src/App.csproj: error : The imported project was not found", Severity::Error},
    {"Error: the solution cannot be read", Severity::Error},
    {"ERROR: Cannot find outputs of project output group '(unable to determine name)'.", Severity::Error},
    {"TRACKER : error TRK0005: Failed to locate: \"CL.exe\".", Severity::Error},
    {"main.cpp(5) : warning C4996: 'strcpy': This function may be unsafe.", Severity::Warning},
    {"cl : Command line warning D9025 : overriding '/Od' with '/O2'", Severity::Warning},
    {"  C:\\x\\Microsoft.Common.targets(1605,5): warning MSB3245: Could not resolve this reference.",
     Severity::Warning},
    {"x.cs(1,7): warning CS0168: The variable 'error' is declared but never used", Severity::Warning},
    {"main.c:3:4: warning: unused variable 'error' [-Wunused-variable]", Severity::Warning},
    {"warning CS1668: Invalid search path", Severity::Warning},
    {"Warning: the framework is not installed", Severity::Warning},
    {"/src/A.sln(2): warning : no project", Severity::Warning},

    {"", Severity::Plain},
    {"Build succeeded.", Severity::Plain},
    {"    0 Warning(s)", Severity::Plain},
    {"    0 Error(s)", Severity::Plain},
    {"\t 0 Warning(s)", Severity::Plain},
    {"App - 0 error(s), 0 warning(s)", Severity::Plain},
    {"========== Build: 1 succeeded, 0 failed, 0 up-to-date, 0 skipped ==========", Severity::Plain},
    {"---------------------- Done ----------------------", Severity::Plain},
    {"    Build: 1 succeeded, 0 failed, 0 skipped", Severity::Plain},
    {"  error.cpp", Severity::Plain},
    {"C:\\work\\error\\warning.cs", Severity::Plain},
    {"  App -> C:\\error: the folder\\App.exe", Severity::Plain},
    {"/home/me/error/App.csproj (default targets) ->", Severity::Plain},
    {"csc /noconfig /errorreport:prompt /warn:4 /warnaserror+ error.cs", Severity::Plain},
    {"cc1plus: all warnings being treated as errors", Severity::Plain},
    {"main.c:3:4: note: each undeclared identifier is reported only once", Severity::Plain},
    {"Compiling the error handler...", Severity::Plain},
    {"There was an error: none", Severity::Plain},
    {"The error log is C:\\x.log", Severity::Plain},
    {"terrorism: 1", Severity::Plain},
    {"Copying http://server/error: done", Severity::Plain},
    {":", Severity::Plain},
    {"12>", Severity::Plain},
    {"error", Severity::Plain},
    {"error:", Severity::Error},
};

TEST(Severity, KnowsTheLinesOfCompilersLinkersAndBuildEngines) {
  for (const Case& c : kCases) EXPECT_EQ(SeverityOf(c.line), c.severity) << c.line;
}

}  // namespace
}  // namespace qx::desktop
