#include "engine/vc/NinjaFile.h"

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(NinjaFile, QuotesArgumentsForTheShell) {
  EXPECT_EQ(ShellQuoted("-DA=1"), "-DA=1");
  EXPECT_EQ(ShellQuoted(""), "''");
  EXPECT_EQ(ShellQuoted("-DT=\"a b\""), "'-DT=\"a b\"'");
  EXPECT_EQ(ShellQuoted("it's $(rm -rf x) & `y`"), "'it'\\''s $(rm -rf x) & `y`'");
  EXPECT_EQ(ShellQuoted(std::vector<std::string>{"a b", "c"}), "'a b' c");
}

TEST(NinjaFile, EscapesValues) { EXPECT_EQ(NinjaFile::Escaped("cost $5\r\n$in"), "cost $$5  $$in"); }

TEST(NinjaFile, WritesRulesAndEdges) {
  NinjaFile file;
  file.Rule("cc", {{"command", "gcc $in"}});
  file.Build({"cc", {"a b.obj"}, {"/x:y/$a.c"}, {"need"}, {"before"}, {{"description", "a"}}});
  file.Default("all");
  EXPECT_EQ(file.Text(),
            "rule cc\n  command = [ -z \"$$QX_TURNS\" ] || read -r turn <&8; gcc $in; code=$$?; "
            "[ -z \"$$QX_TURNS\" ] || echo >&9; exit $$code\n"
            "build a$ b.obj: cc /x$:y/$$a.c | need || before\n  description = a\n"
            "default all\n");
}

TEST(NinjaFile, RefusesNamesThatNinjaCannotRead) {
  NinjaFile file;
  EXPECT_EQ(MessageOf([&] {
              file.Build({"cc", {"a|b"}, {}, {}, {}, {}});
            }),
            "a file name that cannot be built here: \"a|b\"");
}

}  // namespace
}  // namespace qx
