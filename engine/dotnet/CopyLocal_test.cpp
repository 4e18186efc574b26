#include "engine/dotnet/CopyLocal.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

using namespace std::string_literals;

TEST(CopyLocal, SeesTheNamesThatStandAlone) {
  EXPECT_TRUE(NamesAssembly("..\0log4net\0.."s, "log4net"));
  EXPECT_FALSE(NamesAssembly("..\0my.log4net\0.."s, "log4net"));
  EXPECT_FALSE(NamesAssembly("..\0log4net.Ext\0.."s, "log4net"));
}

TEST(CopyLocal, TakesWhatBelongsToAReference) {
  const TestFolder folder;
  const std::string lib = folder.Write("lib/Lib.dll", "\0Inner\0System\0"s);
  folder.Write("lib/Lib.pdb", "");
  folder.Write("lib/Lib.xml", "");
  folder.Write("lib/de-AT/Lib.resources.dll", "");
  folder.Write("lib/de-AT/Other.resources.dll", "");
  folder.Write("lib/docs/Lib.resources.dll", "");
  folder.Write("lib/Inner.dll", "\0Lib\0"s);  // they may name each other
  folder.Write("lib/Unused.dll", "");
  folder.Write("lib/System.dll", "");
  folder.Write("4.5/System.dll", "");
  const std::string same = folder.Write("out/Here.dll", "");
  CompilePlan plan;
  plan.output = folder / "out/App.exe";
  plan.references = {{lib, true}, {same, true}, {folder / "lib/Unused.dll", false}};
  plan.applicationConfig = folder / "App.config";
  std::string copied;
  for (const FileCopy& copy : CopiesBeside(plan, {folder / "4.5/", folder / "gac/", folder / "cli/"})) {
    copied += copy.to.substr((folder / "out/").size()) + " ";
  }
  EXPECT_EQ(copied, "Lib.dll Lib.pdb Lib.xml de-AT/Lib.resources.dll Inner.dll App.exe.config ");
}

}  // namespace
}  // namespace qx
