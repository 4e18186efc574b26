#include "engine/vc/CompilerArguments.h"

#include <algorithm>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

class Arguments : public testing::Test {
 protected:
  std::string For(const std::string& attributes, const std::string& compiler,
                  const std::string& source = "a.cpp") {
    std::string text =
        "<VisualStudioProject Version=\"8.00\" Name=\"App\"><Configurations><Configuration "
        "Name=\"Release|Win32\" " +
        attributes + "><Tool Name=\"VCCLCompilerTool\" " + compiler +
        "/></Configuration></Configurations><Files><File RelativePath=\"" + source +
        "\"/></Files></VisualStudioProject>";
    VcPlace place;
    place.projectFile = folder_ / "App.vcproj";
    place.configuration = "Release";
    place.platform = "Win32";
    const VcSettings settings(ReadVcProject(text), place);
    std::string all;
    for (const std::string& each : CompilerArguments(settings, settings.Project().files[0], "/over"))
      all += each + "|";
    return all;
  }
  static bool Has(const std::string& all, const std::string& part) {
    return ("|" + all).find("|" + part + "|") != std::string::npos;
  }
  TestFolder folder_;
};

TEST_F(Arguments, PickTheLanguage) {
  EXPECT_TRUE(Has(For("", ""), "-x|c++|-std=gnu++14"));
  EXPECT_TRUE(Has(For("", "", "a.C"), "-x|c|-std=gnu99"));
  EXPECT_TRUE(Has(For("", "CompileAs=\"2\"", "a.c"), "-x|c++|-std=gnu++14"));
  EXPECT_TRUE(Has(For("", "CompileAs=\"1\""), "-x|c|-std=gnu99"));
}

TEST_F(Arguments, HoldDefinesWithEveryQuoting) {
  const std::string all = For(
      "CharacterSet=\"1\"",
      "RuntimeLibrary=\"3\" PreprocessorDefinitions=\"A;CONF=&quot;\\&quot;c.h\\&quot;&quot;;E=x&amp;y;A=2\" "
      "UndefinePreprocessorDefinitions=\"GONE\"");
  EXPECT_TRUE(Has(all, "-DUNICODE|-D_UNICODE|-D_DEBUG|-DCONF=\"c.h\"|-DE=x&y|-DA=2|-UGONE")) << all;
}

TEST_F(Arguments, HoldFoldersThatAreThere) {
  folder_.Write("Inc/a.h", "");
  folder_.Write("more inc/a.h", "");
  folder_.Write("force.h", "");
  const std::string all = For("",
                              "AdditionalIncludeDirectories=\"inc,.\\gone;&quot;.\\More Inc&quot;\" "
                              "AdditionalOptions=\"/I Inc /DX=1 /FI&quot;Force.h&quot; /FInew /Zc:wchar_t\"");
  EXPECT_TRUE(Has(all, "-I" + (folder_ / "Inc") + "|-I" + (folder_ / "more inc") + "|-I/over|-include|" +
                           (folder_ / "force.h") + "|-include|new"))
      << all;
  EXPECT_TRUE(Has(all, "-DX=1"));
}

TEST_F(Arguments, FollowSwitches) {
  const std::string all =
      For("",
          "Optimization=\"2\" DebugInformationFormat=\"3\" WarningLevel=\"0\" "
          "RuntimeTypeInfo=\"FALSE\" DefaultCharIsUnsigned=\"TRUE\" CallingConvention=\"2\"");
  for (const char* each : {"-O2", "-g", "-w", "-fno-rtti", "-funsigned-char"})
    EXPECT_TRUE(Has(all, each)) << each;
  EXPECT_FALSE(Has(For("", "", "a.c"), "-fno-rtti"));
}

// With -mrtd gcc would call the run-time library in that convention too, which has another one.
TEST_F(Arguments, LeaveTheCallingConventionAlone) {
  EXPECT_FALSE(Has(For("", "CallingConvention=\"2\"", "a.c"), "-mrtd"));
  EXPECT_TRUE(Has(For("", "CallingConvention=\"2\"", "a.c"), "-Werror=incompatible-pointer-types"));
  EXPECT_FALSE(Has(For("", "CallingConvention=\"2\""), "-Werror=incompatible-pointer-types"));
  EXPECT_FALSE(Has(For("", "", "a.c"), "-Werror=incompatible-pointer-types"));
}

}  // namespace
}  // namespace qx
