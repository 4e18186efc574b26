#include "engine/dotnet/CompilerArguments.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qx {
namespace {

TEST(CompilerArguments, AreMcssOwn) {
  NetProject project;
  project.outputType.value = "WinExe";
  project.defines = " DEBUG, TRACE;;X ";
  project.noWarn = "0618, 1591;";
  project.debug = project.allowUnsafe = project.checkOverflow = project.warningsAsErrors = true;
  project.startupObject = "A.B";
  project.warningLevel = 9;
  CompilePlan plan;
  plan.sources = {"/p/a b.cs"};
  plan.references = {{"/lib/System.dll", false}};
  plan.resources = {{"/p/x.bmp", "/p/x.bmp", "P.x.bmp", ""},
                    {"/p/y.resx", "/o/y.resources", "P.y.de.resources", "de"}};
  plan.icon = "/p/a.ico";
  plan.keyFile = "/p/k.snk";
  plan.codePage = "1252";
  plan.documentationFile = "/p/a.xml";
  EXPECT_EQ(
      McsArguments(project, plan, "/o/a.exe"),
      (std::vector<std::string>{"-out:/o/a.exe", "-target:winexe", "-warn:4", "-debug+", "-optimize-",
                                "-nowarn:0618,1591,1616,1699", "-define:DEBUG;TRACE;X", "-unsafe+",
                                "-checked+", "-warnaserror+", "-warnaserror-:612,618", "-doc:/p/a.xml",
                                "-main:A.B", "-win32icon:/p/a.ico", "-keyfile:/p/k.snk", "-codepage:1252",
                                "-reference:/lib/System.dll", "-resource:/p/x.bmp,P.x.bmp", "/p/a b.cs"}));
}

// They would be taken for two; the compiler runs in the project's folder.
TEST(CompilerArguments, FoldersWithCommasAreLeftOut) {
  CompilePlan plan;
  plan.folder = "/a, b/p/";
  plan.references = {{"/a, b/q/bin/Q.dll", true}, {"/lib/System.dll", false}};
  plan.resources = {{"/a, b/p/x.bmp", "/a, b/p/x.bmp", "P.x.bmp", ""}};
  const std::vector<std::string> all = McsArguments({}, plan, "/a, b/p/obj/a.exe");
  for (const char* each :
       {"-reference:../q/bin/Q.dll", "-reference:/lib/System.dll", "-resource:x.bmp,P.x.bmp"}) {
    EXPECT_NE(std::find(all.begin(), all.end(), each), all.end()) << each;
  }
}

TEST(CompilerArguments, AreVbncsOwn) {
  NetProject project;
  project.outputType.value = "Library";
  project.rootNamespace = "Root";
  project.imports = "System,System.Data";
  project.defines = "DEBUG=True;TRACE=True";
  project.optionStrict = "On";
  project.checkOverflow = true;
  const std::vector<std::string> arguments = VbncArguments(project, {}, "/o/a.dll");
  EXPECT_EQ(arguments,
            (std::vector<std::string>{"-out:/o/a.dll", "-target:library", "-debug-", "-optimize-",
                                      "-removeintchecks-", "-rootnamespace:Root",
                                      "-imports:System,System.Data", "-define:DEBUG=True,TRACE=True",
                                      "-optionstrict+", "-optionexplicit+", "-optioncompare:binary"}));
}

TEST(CompilerArguments, AreAlsOwn) {
  CompilePlan plan;
  plan.resources = {{"/p/y.resx", "/o/y.resources", "P.y.de.resources", "de"}};
  EXPECT_EQ(
      AlArguments(plan, "de", "/o/a.exe", "/o/de/a.resources.dll"),
      (std::vector<std::string>{"-nologo", "-target:library", "-culture:de", "-out:/o/de/a.resources.dll",
                                "-template:/o/a.exe", "-embed:/o/y.resources,P.y.de.resources"}));
}

TEST(CompilerArguments, StandInQuotesInAResponseFile) {
  EXPECT_EQ(ResponseFileText({"-out:/a b/c.dll", "/p/it's.cs"}), "\"-out:/a b/c.dll\"\n\"/p/it's.cs\"\n");
  EXPECT_EQ(ResponseFileText({"-main:A\" \"-out:/x", "-main:A\n-out:/x"}),
            "\"-main:A -out:/x\"\n\"-main:A-out:/x\"\n");
}

}  // namespace
}  // namespace qx
