#include "engine/dotnet/Assemblies.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(Assemblies, AreFoundByTheirSimpleNames) {
  const TestFolder folder;
  const AssemblyFolders folders = {folder / "4.5/", folder / "gac/", folder / "cli/"};
  folder.Write("4.5/System.Xml.dll", "");
  folder.Write("gac/nunit.framework/2.6.3.0__96d0/nunit.framework.dll", "");
  folder.Write("gac/nunit.framework/2.10.0.0__96d0/nunit.framework.dll", "");
  folder.Write("cli/log4net-1.2/log4net.dll", "");
  folder.Write("cli/log4net.extra-9/log4net.dll", "");
  EXPECT_EQ(FindFrameworkAssembly(folders, "System.XML"), folder / "4.5/System.Xml.dll");
  EXPECT_EQ(FindFrameworkAssembly(folders, "System"), "");
  EXPECT_EQ(FindCachedAssembly(folders, "NUnit.Framework"),
            folder / "gac/nunit.framework/2.10.0.0__96d0/nunit.framework.dll");
  EXPECT_EQ(FindPackagedAssembly(folders, "log4net"), folder / "cli/log4net-1.2/log4net.dll");
  EXPECT_EQ(FindPackagedAssembly(folders, "log"), "");
}

TEST(Assemblies, LieBesideTheCompilersFolder) {
  const TestFolder folder;
  folder.Write("usr/bin/mcs", "");
  EXPECT_EQ(SystemAssemblyFolders(folder / "usr/bin/mcs").framework, folder / "usr/lib/mono/4.5/");
}

}  // namespace
}  // namespace qx
