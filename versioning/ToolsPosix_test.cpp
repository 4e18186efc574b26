// What we stamped, in the hands of tools that are not ours: the resource compiler, the C# compiler, a disassembler.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "host/testing/TestFolder.h"
#include "platform/Texts.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

bool Succeeds(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }
bool HasTool(const std::string& name) { return Succeeds("command -v " + name); }
std::string Quoted(const std::string& text) { return "'" + text + "'"; }

const std::string kWindres = "x86_64-w64-mingw32-windres";
const std::string kStamp = std::string(QX_BINARY_DIR) + "/stamp_once";
const fs::path kCorpus = fs::path(QX_SOURCE_DIR).parent_path() / "shared" / "corpus";

void CopyWritable(const fs::path& from, const fs::path& to) {
  fs::copy_file(from, to);
  fs::permissions(to, fs::perms::owner_all);
}

// The version resource of a compiled script, as the resource compiler itself writes it down again; blanks and
// line ends drawn together, letters in upper case.
std::string Decompiled(const TestFolder& folder, const std::string& script) {
  const std::string compiled = (folder / "out.res"), text = (folder / "out.txt");
  if (!Succeeds("cd " + Quoted(folder / "") + " && " + kWindres + " " + script + " -O res -o " + compiled)) {
    return "not accepted";
  }
  if (!Succeeds(kWindres + " " + compiled + " -O rc -o " + text)) return "not read back";
  std::string drawn;
  for (const char c : UpperCase(folder.Read("out.txt"))) {
    const bool blank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (!blank) drawn += c;
    if (blank && !drawn.empty() && drawn.back() != ' ') drawn += ' ';
  }
  return drawn;
}

TEST(Tools, TheResourceCompilerSeesEveryNumberFlagStringLanguageAndPage) {
  if (!HasTool(kWindres)) GTEST_SKIP() << kWindres << " is not installed";
  const TestFolder folder;
  folder.Write("App.rc",
               "STRINGTABLE\nBEGIN\n1 \"kept\"\nEND\n1 VERSIONINFO\nFILEVERSION 1,0,0,0\nBEGIN\nEND\n");
  ASSERT_TRUE(Succeeds(kStamp + " rc " + (folder / "App.rc")));
  const std::string text = Decompiled(folder, "App.rc");
  for (const std::string part :
       {"FILEVERSION 7, 6, 5, 4", "PRODUCTVERSION 7, 6, 5, 4", "FILEFLAGSMASK 0X3F", "FILEFLAGS 0X2B",
        "FILEOS 0X40004", "FILETYPE 0X2", "BLOCK \"040904B0\"", "VALUE \"COMPANYNAME\", \"ACME",
        "VALUE \"FILEVERSION\", \"7.6.5.4", "VALUE \"LEGALCOPYRIGHT\", \"(C) $1 & \\\\ 100%",
        "VALUE \"PRODUCTVERSION\", \"7.6", "VALUE \"TRANSLATION\", 0X409, 1200", "\"KEPT\""}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
}

// Prints what Windows itself reads out of the program's own version resource.
constexpr const char* kVersionReader = R"(
#include <windows.h>
#include <stdio.h>
static void show(const char *block, const char *key) {
  char path[100];
  void *text;
  UINT size;
  sprintf(path, "\\\\StringFileInfo\\\\040904B0\\\\%s", key);
  printf("%s=%s\n", key, VerQueryValueA(block, path, &text, &size) ? (char *)text : "none");
}
int main(int argc, char **argv) {
  static char block[65536];
  VS_FIXEDFILEINFO *fixed;
  WORD *translation;
  UINT size;
  if (!GetFileVersionInfoA(argv[0], 0, sizeof block, block)) return 1;
  if (!VerQueryValueA(block, "\\\\", (void **)&fixed, &size)) return 2;
  printf("file %08lx%08lx product %08lx%08lx mask %lx flags %lx os %lx type %lx\n", fixed->dwFileVersionMS,
         fixed->dwFileVersionLS, fixed->dwProductVersionMS, fixed->dwProductVersionLS, fixed->dwFileFlagsMask,
         fixed->dwFileFlags, fixed->dwFileOS, fixed->dwFileType);
  if (!VerQueryValueA(block, "\\\\VarFileInfo\\\\Translation", (void **)&translation, &size)) return 3;
  printf("language %04x page %u\n", translation[0], translation[1]);
  show(block, "CompanyName");
  show(block, "FileVersion");
  show(block, "LegalCopyright");
  show(block, "ProductVersion");
  return 0;
}
)";

TEST(Tools, WindowsReadsEveryNumberFlagStringLanguageAndPage) {
  const std::string compiler = "x86_64-w64-mingw32-gcc";
  if (!HasTool(kWindres) || !HasTool(compiler) || !HasTool("wine")) {
    GTEST_SKIP() << "the cross compiler or Wine is not installed";
  }
  const TestFolder folder;
  folder.Write("App.rc", "#include <winver.h>\n1 VERSIONINFO\nBEGIN\nEND\n");
  folder.Write("reader.c", kVersionReader);
  ASSERT_TRUE(Succeeds(kStamp + " rc " + (folder / "App.rc")));
  const std::string here = "cd " + Quoted(folder / "") + " && ";
  ASSERT_TRUE(Succeeds(here + kWindres + " App.rc -o version.o"));
  ASSERT_TRUE(Succeeds(here + compiler + " reader.c version.o -o reader.exe -lversion"));
  const std::string wine =
      std::string(QX_SOURCE_DIR) + "/scripts/wine-prefix " + (folder / "wine") + " wine ";
  ASSERT_EQ(std::system((here + wine + "reader.exe >out.txt 2>/dev/null").c_str()), 0);
  std::string text;
  for (const char c : folder.Read("out.txt")) {
    if (c != '\r') text += c;
  }
  EXPECT_EQ(text,
            "file 0007000600050004 product 0007000600050004 mask 3f flags 2b os 40004 type 2\n"
            "language 0409 page 1200\nCompanyName=ACME\nFileVersion=7.6.5.4\n"
            "LegalCopyright=(C) $1 & \\ 100%\nProductVersion=7.6\n");
}

// Deliberate: these lines belong to the block and go with it, and the new block's name is a header's symbol.
TEST(Tools, ConditionsAndNamesThatTheNewBlockBreaks) {
  if (!HasTool(kWindres)) GTEST_SKIP() << kWindres << " is not installed";
  const TestFolder folder;
  const auto accepted = [&](const std::string& script) {
    folder.Write("App.rc", script);
    const std::string compile = "cd " + Quoted(folder / "") + " && " + kWindres + " App.rc -O res -o out.res";
    EXPECT_TRUE(Succeeds(compile)) << script;
    EXPECT_TRUE(Succeeds(kStamp + " rc " + (folder / "App.rc")));
    return Succeeds(compile);
  };
  const std::string body = "BEGIN\nEND\n";
  EXPECT_FALSE(accepted("#ifdef A\n1 VERSIONINFO\n#else\n2 VERSIONINFO\n#endif\n" + body));
  EXPECT_TRUE(accepted("#ifdef A\n1 ICON x\n#endif\n1 VERSIONINFO\n" + body));
  // Accepted, but under the name "VS_VERSION_INFO" instead of the number 1: Windows does not find it.
  EXPECT_TRUE(accepted("1 VERSIONINFO\n" + body));
  ASSERT_TRUE(Succeeds(kWindres + " " + (folder / "out.res") + " -O rc -o " + (folder / "out.txt")));
  EXPECT_NE(folder.Read("out.txt").find("VS_VERSION_INFO"), std::string::npos);
}

TEST(Tools, ScriptsThatWereAcceptedStayAccepted) {
  if (!HasTool(kWindres)) GTEST_SKIP() << kWindres << " is not installed";
  if (!fs::exists(kCorpus)) GTEST_SKIP() << "no files at " << kCorpus;
  int accepted = 0;
  for (const auto& entry : fs::recursive_directory_iterator(kCorpus)) {
    const std::string extension = LowerCase(entry.path().extension().string());
    if (extension != ".rc" && extension != ".rc2") continue;
    const TestFolder folder;
    CopyWritable(entry.path(), folder / "App.rc");
    // The headers of the scripts' own environment, made of those that this compiler brings along.
    for (const char* header : {"afxres.h", "winres.h", "winresrc.h"}) {
      folder.Write(header, "#include <windows.h>\n#define IDC_STATIC (-1)\n");
    }
    for (const char* header : {"resource.h", "Resource.h"}) folder.Write(header, "");
    if (!Succeeds("cd " + (folder / "") + " && " + kWindres + " App.rc -O res -o before.res")) continue;
    if (!Succeeds(kStamp + " rc " + (folder / "App.rc"))) continue;  // a block of another form
    ++accepted;
    const bool after = Succeeds("cd " + (folder / "") + " && " + kWindres + " App.rc -O res -o after.res");
    // Conditions around the block's head belong to the block and go with it.
    const std::string old = folder.Read("App.rc.orig");
    const std::size_t head = old.find("VERSIONINFO");
    const bool conditional =
        old.substr(head, old.find("BEGIN", head) - head).find("#else") != std::string::npos;
    EXPECT_TRUE(after || conditional) << entry.path();
    if (!after) std::cout << "accepted before, not after: " << entry.path() << "\n";
  }
  std::cout << accepted << " scripts stamped and compiled\n";
  EXPECT_GT(accepted, 0);
}

// A project with one AssemblyInfo file and its solution.
void WriteSolution(const TestFolder& folder, const std::string& info) {
  folder.Write(
      "All.sln",
      "Microsoft Visual Studio Solution File, Format Version 8.00\r\n"
      "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"P\", \"P.csproj\", \"{1}\"\r\nGlobal\r\n"
      "EndGlobal\r\n");
  folder.Write("P.csproj", "Include=\"" + info + "\"");
}

TEST(Tools, TheCompilerPutsTheStampedVersionIntoTheAssembly) {
  if (!HasTool("mcs") || !HasTool("monodis")) GTEST_SKIP() << "mcs or monodis is not installed";
  const TestFolder folder;
  WriteSolution(folder, "AssemblyInfo.cs");
  folder.Write("AssemblyInfo.cs",
               "using System.Reflection;\n// [assembly: AssemblyVersion(\"9.9\")]\n"
               "[assembly: AssemblyTitle(\"x\")]\n[assembly:AssemblyVersion( \"1.0.*\" )]\n");
  ASSERT_TRUE(Succeeds(kStamp + " solution " + (folder / "All.sln")));
  ASSERT_TRUE(
      Succeeds("mcs -target:library -out:" + (folder / "a.dll") + " " + (folder / "AssemblyInfo.cs")));
  ASSERT_TRUE(std::system(("monodis --assembly " + (folder / "a.dll") + " >" + (folder / "a.txt")).c_str()) ==
              0);
  const std::string text = folder.Read("a.txt");
  const std::size_t at = text.find("Version:");
  EXPECT_EQ(Trim(text.substr(at + 8, text.find('\n', at) - at - 8)), "7.6.5.4");
}

TEST(Tools, AddedEntriesNeedTheUsingDirective) {
  if (!HasTool("mcs")) GTEST_SKIP() << "mcs is not installed";
  const TestFolder folder;
  WriteSolution(folder, "AssemblyInfo.cs");
  folder.Write("AssemblyInfo.cs", "[assembly: System.CLSCompliant(true)]\n");
  const std::string compile =
      "mcs -target:library -out:" + (folder / "a.dll") + " " + (folder / "AssemblyInfo.cs");
  EXPECT_TRUE(Succeeds(compile));
  ASSERT_TRUE(Succeeds(kStamp + " solution " + (folder / "All.sln")));
  EXPECT_FALSE(Succeeds(compile));
}

TEST(Tools, AssemblyInfoFilesThatWereAcceptedStayAccepted) {
  if (!HasTool("mcs")) GTEST_SKIP() << "mcs is not installed";
  if (!fs::exists(kCorpus)) GTEST_SKIP() << "no files at " << kCorpus;
  std::set<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(kCorpus)) {
    if (LowerCase(entry.path().filename().string()) == "assemblyinfo.cs") files.insert(entry.path());
  }
  int accepted = 0;
  for (const fs::path& path : files) {
    const TestFolder folder;
    WriteSolution(folder, "AssemblyInfo.cs");
    CopyWritable(path, folder / "AssemblyInfo.cs");
    const std::string compile =
        "mcs -target:library -out:" + (folder / "a.dll") + " " + (folder / "AssemblyInfo.cs");
    if (!Succeeds(compile)) continue;
    ++accepted;
    ASSERT_TRUE(Succeeds(kStamp + " solution " + (folder / "All.sln"))) << path;
    const std::string text = folder.Read("AssemblyInfo.cs");
    // A model that is a comment opens added entries with its "/"; the short names of added entries need the
    // directive.
    const bool commentLast = text.find("\r\n/assembly: ") != std::string::npos;
    const bool hasDirective = text.find("using System.Reflection;") != std::string::npos;
    EXPECT_TRUE(commentLast || !hasDirective || Succeeds(compile)) << path;
  }
  EXPECT_GT(accepted, 0);
}

}  // namespace
}  // namespace qx
