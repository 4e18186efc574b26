#include "engine/vc/BuildRecord.h"

#include <cstdlib>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(BuildRecord, ComesBackAsItWasSaved) {
  const TestFolder folder;
  BuildRecord record;
  record.key = "a|b c";
  record.environment = {{"SET", "a=b"}, {"UNSET", std::nullopt}};
  record.Add(folder.Write("in put.c", "x"));
  record.Add(folder / "gone");
  record.output = folder / "a.exe";
  record.importLibrary = "i";
  record.libraries = {"l 1", "l2"};
  record.Save(folder / "record");
  const auto loaded = BuildRecord::Load(folder / "record");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(loaded->key, record.key);
  EXPECT_EQ(loaded->environment, record.environment);
  EXPECT_EQ(loaded->files, record.files);
  EXPECT_EQ(loaded->output + loaded->importLibrary, record.output + "i");
  EXPECT_EQ(loaded->libraries, record.libraries);
  EXPECT_FALSE(BuildRecord::Load(folder / "none"));
  folder.Write("other", "something else\n");
  EXPECT_FALSE(BuildRecord::Load(folder / "other"));
}

TEST(BuildRecord, IsCurrentUntilAFileOrAVariableChanges) {
  const TestFolder folder;
  const std::string input = folder.Write("in.c", "x");
  BuildRecord record;
  record.Add(input);
  record.Add(folder / "new.h");
  EXPECT_TRUE(record.IsCurrent());
  folder.Write("new.h", "");
  EXPECT_FALSE(record.IsCurrent());
  record.Add(folder / "new.h");
  EXPECT_TRUE(record.IsCurrent());
  folder.Write("in.c", "longer");
  EXPECT_FALSE(record.IsCurrent());

  BuildRecord asked;
  asked.environment["QX_TEST_VARIABLE"] = std::nullopt;
  EXPECT_TRUE(asked.IsCurrent());
  setenv("QX_TEST_VARIABLE", "", 1);
  EXPECT_FALSE(asked.IsCurrent());
  unsetenv("QX_TEST_VARIABLE");
}

TEST(DependenciesIn, ReadsWhatTheCompilerWrites) {
  EXPECT_EQ(DependenciesIn("a.obj: /x/a.c /x/b\\ c.h \\\n /x/$$d.h \\\r\n /x/e\\#f.h\n"),
            (std::vector<std::string>{"/x/a.c", "/x/b c.h", "/x/$d.h", "/x/e#f.h"}));
  EXPECT_TRUE(DependenciesIn("").empty());
  EXPECT_TRUE(DependenciesIn("a.obj:").empty());
}

}  // namespace
}  // namespace qx
