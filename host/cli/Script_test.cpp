// script, with the tiny package's functions.
#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

using ScriptCommand = CliTest;

TEST_F(ScriptCommand, ReadsAndWritesOptionsAndSavesThem) {
  const auto result =
      Host({"script", "-e",
            "local t = tinyoptions() print(t.Greeting) t.greeting = 'moin' t.Level = TTinyVerdict.tvThrow"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "hi\n");
  EXPECT_EQ(Host({"options"}).out, "Testing / Tiny\n    Greeting=moin\n    Level=3\n\nHost\n");
}

TEST_F(ScriptCommand, RunsAFileWithArguments) {
  Write("set.lua", "TinyOptions().Greeting = ...\nprint(arg[0], TinyOptions().Greeting)\n");
  const auto result = Host({"script", "set.lua", "two words", "more"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "set.lua\ttwo words\n");
}

TEST_F(ScriptCommand, AFunctionWithoutAnObjectGivesNil) {
  EXPECT_EQ(Host({"script", "-e", "print(Nothing(), NoSuchFunction)"}).out, "nil\tnil\n");
}

TEST_F(ScriptCommand, AFailedScriptIsNamedWithItsLineAndSavesNothing) {
  Write("bad.lua", "TinyOptions().Greeting = 'x'\nTrouble()\n");
  struct Row {
    Words words;
    const char* complaint;
  };
  for (const Row& row : std::vector<Row>{
           {{"bad.lua"}, "qxhost: bad.lua:2: the tiny function fails\n"},
           {{"-e", "TinyOptions().Greting = 'x'"},
            "qxhost: -e:1: There is no property \"Greting\"; supported: Greeting, Level (nearest: Greeting)"},
           {{"-e", "print("}, "qxhost: -e:1: unexpected symbol near <eof>\n"}}) {
    Words words{"script"};
    words.insert(words.end(), row.words.begin(), row.words.end());
    const auto result = Host(words);
    EXPECT_EQ(result.code, 1) << row.complaint;
    EXPECT_TRUE(result.err.starts_with(row.complaint)) << result.err;
    EXPECT_FALSE(Exists("options.xml"));
  }
}

TEST_F(ScriptCommand, UsageErrorsExitWithTwo) {
  for (const Words& words : std::vector<Words>{{"script"}, {"script", "none.lua"}, {"script", "-e"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << words.back();
    EXPECT_NE(result.err, "");
  }
  EXPECT_TRUE(Holds(Host({"script", "none.lua"}).err, "none.lua")) << "the file is named";
}

}  // namespace
}  // namespace qx::cli
