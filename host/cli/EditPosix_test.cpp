// edit: which program takes over, with which words. A copy of the host stands in a folder of its own, and a
// script for the desktop.
#include <cstdlib>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

class EditCommand : public CliTest {
 protected:
  void SetUp() override {
    CliTest::SetUp();
    std::filesystem::create_directories(folder_ / "bin");
    std::filesystem::create_directories(folder_ / "elsewhere");
    for (const char* name : {"qxhost", "libqxruntime.so"})
      std::filesystem::copy_file(std::filesystem::path(QX_BINARY_DIR) / name, folder_ / "bin" / name);
    SetPath("/nowhere:" + PathOf("elsewhere"));
  }
  void TearDown() override {
    SetPath(path_);
    CliTest::TearDown();
  }
  static void SetPath(const std::string& path) { setenv("PATH", path.c_str(), 1); }
  // A desktop that tells its name and its words and ends with a code of its own.
  void Install(const std::string& name) const {
    Write(name, "#!/bin/sh\nfor word in \"$0\" \"$@\"; do echo \"$word\"; done\nexit 7\n");
    std::filesystem::permissions(folder_ / name, std::filesystem::perms::owner_all);
  }
  test::ProgramResult Edit(const Words& words) const {
    return test::RunProgram(PathOf("bin/qxhost"), words, folder_.string());
  }

  std::string path_ = std::getenv("PATH");
};

TEST_F(EditCommand, GivesItsPlaceToTheDesktopBesideIt) {
  Install("bin/qxhost-desktop");
  Install("elsewhere/qxhost-desktop");
  const auto result = Edit({"--package", "a b.so", "edit", "--package=../c.so", "dir/\xC3\xBC $HOME.xml",
                            "--options", "o.xml", "--color", "never"});
  EXPECT_EQ(result.code, 7);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, PathOf("bin/qxhost-desktop") + "\n--package\n" + PathOf("a b.so") + "\n--package\n" +
                            (folder_.parent_path() / "c.so").string() + "\n--options\n" + PathOf("o.xml") +
                            "\n" + PathOf("dir/\xC3\xBC $HOME.xml") + "\n");
  EXPECT_EQ(Edit({"edit"}).out, PathOf("bin/qxhost-desktop") + "\n");
  EXPECT_EQ(Edit({"edit", "a.xml", "b.xml"}).code, 2);
}

TEST_F(EditCommand, FindsTheDesktopOnThePath) {
  Install("elsewhere/qxhost-desktop");
  Write("bin/qxhost-desktop", "nobody may run it");
  const auto result = Edit({"edit", "p.xml"});
  EXPECT_EQ(result.code, 7) << result.err;
  EXPECT_EQ(result.out, PathOf("elsewhere/qxhost-desktop") + "\n" + PathOf("p.xml") + "\n");
}

TEST_F(EditCommand, SaysWhatIsMissingWhere) {
  const auto result = Edit({"edit"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "qxhost: qxhost-desktop is not installed: there is no " +
                            PathOf("bin/qxhost-desktop") + ", and none on the PATH\n");
}

TEST_F(EditCommand, SaysWhyTheDesktopDoesNotStart) {
  Write("bin/qxhost-desktop", "#!/no/such/interpreter\n");
  std::filesystem::permissions(folder_ / "bin/qxhost-desktop", std::filesystem::perms::owner_all);
  const auto result = Edit({"edit"});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err,
            "qxhost: Cannot start " + PathOf("bin/qxhost-desktop") + ": No such file or directory\n");
}

TEST_F(EditCommand, IsToldOfInTheHelp) {
  EXPECT_TRUE(Holds(Edit({"help"}).out, "  edit                  open the desktop\n"));
  EXPECT_TRUE(Holds(Edit({"help", "edit"}).out, "usage: qxhost edit [FILE]"));
  EXPECT_TRUE(Holds(Edit({"--print-completion", "bash"}).out, " show edit actions "));
  EXPECT_TRUE(Holds(Edit({"--print-completion", "zsh"}).out, "'edit:open the desktop'"));
  EXPECT_TRUE(Holds(Edit({"--print-man"}).out, "Open the desktop."));
}

}  // namespace
}  // namespace qx::cli
