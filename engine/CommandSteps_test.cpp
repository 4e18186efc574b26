#include "engine/CommandSteps.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "engine/ChildCommand.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(CommandSteps, AreOneCommandALine) {
  EXPECT_EQ(CommandLines("copy a b\r\n\r\n  del c \n"), (std::vector<std::string>{"copy a b", "del c"}));
}

TEST(CommandSteps, BecomeABatchFileThatStopsAtTheFirstFailure) {
  EXPECT_EQ(BatchFor("copy a b\ndel c", "/code/x y").text,
            "@echo off\r\ncd /d \"Z:\\code\\x y\"\r\ncopy a b\r\nif errorlevel 1 goto failed\r\ndel c\r\n"
            "if errorlevel 1 goto failed\r\nexit 0\r\n:failed\r\nexit 1\r\n");
  EXPECT_EQ(BatchFor(" \n", "/code").text, "");
}

// Wine reads a batch file in a code page that has few letters.
TEST(CommandSteps, PassLettersBesideAsciiInVariables) {
  const Batch batch = BatchFor("copy größe 日本\ndel größe", "/ö");
  EXPECT_EQ(batch.text,
            "@echo off\r\ncd /d \"Z:\\%QX_TEXT1%\"\r\ncopy gr%QX_TEXT2%e %QX_TEXT3%\r\nif errorlevel 1 goto "
            "failed\r\n"
            "del gr%QX_TEXT2%e\r\nif errorlevel 1 goto failed\r\nexit 0\r\n:failed\r\nexit 1\r\n");
  EXPECT_EQ(batch.variables, (std::map<std::string, std::string>{
                                 {"QX_TEXT1", "ö"}, {"QX_TEXT2", "öß"}, {"QX_TEXT3", "日本"}}));
}

TEST(CommandSteps, DoNothingWithoutCommands) {
  ConsoleText console;
  EXPECT_EQ(RunCommandStep({"title", "\n", "/nowhere", "/nowhere/x.bat"}, console), "");
  EXPECT_EQ(console.Text(), "");
}

// A folder whose name needs quotes and is not ASCII.
TEST(CommandSteps, RunThroughWine) {
  if (WineProgram().empty()) GTEST_SKIP() << "wine is not installed";
  const TestFolder folder;
  folder.Write("größe & so/in.txt", "text");
  const std::string place = folder / "größe & so";
  ConsoleText console;
  const std::string prefix = folder / "prefix";
  setenv("WINEPREFIX", prefix.c_str(), 1);
  const CommandStep step{"Performing Post-Build Event...", "copy in.txt out.txt\necho done", place,
                         place + "/event.bat"};
  EXPECT_EQ(RunCommandStep(step, console), "") << console.Text();
  EXPECT_TRUE(console.Text().starts_with("Performing Post-Build Event...\ncopy in.txt out.txt\necho done\n"));
  EXPECT_NE(console.Text().find("done\n", 60), std::string::npos);
  EXPECT_EQ(folder.Read("größe & so/out.txt"), "text");
  const std::string elsewhere = WinePath(folder / "größe 日");
  EXPECT_EQ(RunCommandStep({"t", "mkdir \"" + elsewhere + "\"\ncopy in.txt \"" + elsewhere + "\\öut.txt\"",
                            place, folder / "event.bat"},
                           console),
            "")
      << console.Text();
  EXPECT_EQ(folder.Read("größe 日/öut.txt"), "text");
  EXPECT_EQ(RunCommandStep({"t", "copy gone.txt out.txt\necho never", place, place + "/event.bat"}, console),
            "a command returned code 1");
  unsetenv("WINEPREFIX");
  RunChild({{"wineserver", "-k"}, "", {{"WINEPREFIX", prefix}}}, [](std::string_view) {});
}

}  // namespace
}  // namespace qx
