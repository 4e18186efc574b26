#include "built/WrittenSources.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "host/testing/TestFolder.h"
#include "platform/System.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr const char* kInfo =
    "[assembly: AssemblyVersion(\"1.2.*\")]\r\n[assembly: AssemblyFileVersion(\"1.2.3.4\")]\r\n";

class WrittenSourcesOf : public testing::Test {
 protected:
  WrittenSources Read(const std::string& script = "") const {
    OutputPlace place;
    place.file = folder / "P/P.csproj";
    return ReadWrittenSources(place, script);
  }
  std::string Script(const std::string& numbers) const {
    return folder.Write("P/P.rc", "1 VERSIONINFO\r\n FILEVERSION " + numbers + "\r\nBEGIN\r\nEND\r\n");
  }
  std::string ScriptText(const std::string& numbers) const { return Read(Script(numbers)).fileOfScript.text; }
  TestFolder folder;
};

TEST_F(WrittenSourcesOf, AnAssemblyInfoFileAreItsVersionsAndItself) {
  folder.Write("P/P.csproj", "<Compile Include=\"Properties\\ASSEMBLYINFO.cs\" />");
  const std::string info = folder.Write("P/Properties/AssemblyInfo.cs", kInfo);
  const WrittenSources sources = Read();
  EXPECT_EQ(sources.assembly.text, "1.2.*");
  EXPECT_EQ(sources.fileOfAssembly.text, "1.2.3.4");
  std::error_code error;  // Windows keeps the spelling that it was asked with
  EXPECT_TRUE(std::filesystem::equivalent(sources.assembly.file, info, error)) << sources.assembly.file;
  if (!kIsWindows) {
    EXPECT_EQ(sources.assembly.file, FindExisting(info));
  }
  EXPECT_EQ(sources.fileOfScript.file, "");
}

TEST_F(WrittenSourcesOf, AFileOfAnyEncodingAreTheSame) {
  folder.Write("P/P.csproj", "<Compile Include=\"AssemblyInfo.cs\" />");
  std::string wide = "\xFF\xFE";
  for (const char* c = kInfo; *c != '\0'; ++c) wide.append(1, *c).append(1, '\0');
  folder.Write("P/AssemblyInfo.cs", wide);
  EXPECT_EQ(Read().assembly.text, "1.2.*");
}

TEST_F(WrittenSourcesOf, NoFileAreEmpty) {
  EXPECT_EQ(Read().assembly.file, "");
  folder.Write("P/P.csproj", "<Compile Include=\"AssemblyInfo.cs\" />");
  EXPECT_EQ(Read(folder / "none.rc").assembly.file, "");
}

TEST_F(WrittenSourcesOf, AScriptAreItsPlainNumbers) {
  EXPECT_EQ(ScriptText("1,2,0,45"), "1.2.0.45");
  EXPECT_EQ(ScriptText(" 1, 2 , 0,70000 // by hand"), "1.2.0.70000");
  EXPECT_EQ(ScriptText("1,2"), "1.2");
  EXPECT_EQ(ScriptText("VERSION_MAJOR,2,0,45"), "");
  EXPECT_EQ(ScriptText("VERSION_ALL"), "");
  EXPECT_EQ(Read(Script("X")).fileOfScript.file, FindExisting(folder / "P/P.rc"));
}

TEST_F(WrittenSourcesOf, AScriptThatIsDamagedSayNothing) {
  const std::string script =
      folder.Write("P/P.rc", "1 VERSIONINFO\r\nBEGIN\r\nBEGIN\r\nFILEVERSION 1,2,3,4\r\n");
  EXPECT_EQ(Read(script).fileOfScript.text, "");
}

}  // namespace
}  // namespace qx
