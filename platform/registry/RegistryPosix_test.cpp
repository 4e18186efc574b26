#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "platform/registry/Registry.h"

namespace qx {
namespace {

TEST(Registry, IsEmptyUntilAnExportStandsInForIt) {
  const TestFolder folder;
  const std::string path =
      folder.Write("vs.reg", "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\X]\r\n\"a\"=\"b\"\r\n");
  EXPECT_EQ(ReadMachineText("SOFTWARE\\X", "a"), std::nullopt);
  SetRegistryFile(path);
  EXPECT_EQ(ReadMachineText("SOFTWARE\\X", "a"), "b");
  EXPECT_EQ(ReadMachineText("\\Software\\x", "A"), "b");
  SetRegistryFile("");
  EXPECT_EQ(ReadMachineText("SOFTWARE\\X", "a"), std::nullopt);
}

TEST(Registry, TakesTheTextOfAnExportToo) {
  SetRegistryText("REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\X]\r\n\"a\"=\"c\"\r\n");
  EXPECT_EQ(ReadMachineText("SOFTWARE\\X", "a"), "c");
  SetRegistryFile("");
  EXPECT_EQ(ReadMachineText("SOFTWARE\\X", "a"), std::nullopt);
}

TEST(Registry, RefusesAFileThatIsNoExport) {
  const TestFolder folder;
  const std::string path = folder.Write("vs.ini", "[x]\r\n");
  EXPECT_EQ(MessageOf([&] { SetRegistryFile(path); }), "Cannot read " + path + ": it is no registry export");
  EXPECT_THROW(SetRegistryFile(folder / "missing.reg"), std::exception);
}

}  // namespace
}  // namespace qx
