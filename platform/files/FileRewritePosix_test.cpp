#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/files/FileRewrite.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

class FileRewritePosix : public testing::Test {
 protected:
  FileRewritePosix() {
    std::string name = (fs::temp_directory_path() / "rewrite-XXXXXX").string();
    folder = mkdtemp(name.data());
  }
  ~FileRewritePosix() override { fs::remove_all(folder); }

  std::string Write(const std::string& name, const std::string& bytes) {
    std::ofstream(folder / name, std::ios::binary) << bytes;
    return (folder / name).string();
  }
  std::string Read(const std::string& name) {
    std::ifstream file(folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string Commit(const std::string& path, BackupRule rule, const std::string& bytes) {
    try {
      FileRewrite rewrite(path);
      const std::string_view whole = bytes;
      const std::string_view old[] = {rewrite.Bytes()}, pieces[] = {whole.substr(0, 1), whole.substr(1)};
      rewrite.Commit(".bak", rule, old, pieces);
    } catch (const Exception& error) {
      return error.Message();
    }
    return "";
  }
  static unsigned Mode(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }

  fs::path folder;
};

TEST_F(FileRewritePosix, ReplacesAndKeepsBackupAndMode) {
  const std::string path = Write("a", "old");
  chmod(path.c_str(), 0640);
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "");
  EXPECT_EQ(Read("a"), "new");
  EXPECT_EQ(Read("a.bak"), "old");
  EXPECT_EQ(Mode(path), 0640U);
  EXPECT_EQ(Mode(path + ".bak"), 0640U);
  Write("a", "changed in place");
  EXPECT_EQ(Read("a.bak"), "old");
}

TEST_F(FileRewritePosix, TheFirstBackupStaysWhereAsked) {
  const std::string path = Write("a", "one");
  EXPECT_EQ(Commit(path, BackupRule::FirstTime, "two"), "");
  EXPECT_EQ(Commit(path, BackupRule::FirstTime, "three"), "");
  EXPECT_EQ(Read("a.bak"), "one");
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "four"), "");
  EXPECT_EQ(Read("a.bak"), "three");
}

TEST_F(FileRewritePosix, ALinkStaysALinkAndItsBackupStandsBesideIt) {
  fs::create_directories(folder / "deep");
  Write("deep/target", "old");
  fs::create_symlink("deep/target", folder / "link");
  EXPECT_EQ(Commit((folder / "link").string(), BackupRule::EveryTime, "new"), "");
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(Read("deep/target"), "new");
  EXPECT_EQ(Read("link.bak"), "old");
}

TEST_F(FileRewritePosix, TheBackupOfANameWithTheOtherDelimiterStandsBesideTheFile) {
  fs::create_directory(folder / "sub");
  Write("sub/a", "old");
  const std::string name = folder.string() + "\\Sub\\a";
  EXPECT_EQ(Commit(name, BackupRule::EveryTime, "new"), "");
  EXPECT_EQ(Commit(name, BackupRule::EveryTime, "newer"), "");
  EXPECT_EQ(Read("sub/a"), "newer");
  EXPECT_EQ(Read("sub/a.bak"), "new");
  EXPECT_FALSE(fs::exists(name + ".bak"));
}

TEST_F(FileRewritePosix, AFileOfSeveralNamesGetsARealCopy) {
  const std::string path = Write("a", "old");
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "");
  Write("other", "changed in place");
  EXPECT_EQ(Read("a.bak"), "old");
  EXPECT_EQ(Read("a"), "new");
}

TEST_F(FileRewritePosix, AnUnchangedFileIsLeftAndItsBackupIsARealCopy) {
  const std::string path = Write("a", "same");
  const auto time = fs::last_write_time(path) - std::chrono::hours(1);
  fs::last_write_time(path, time);
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "same"), "");
  EXPECT_EQ(fs::last_write_time(path), time);
  EXPECT_EQ(fs::hard_link_count(path), 1U);
  EXPECT_EQ(Read("a.bak"), "same");
}

TEST_F(FileRewritePosix, AReadOnlyFileIsNamedAndNothingIsWritten) {
  const std::string path = Write("a", "old");
  Write("a.bak", "older");
  chmod(path.c_str(), 0444);
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "Cannot write " + path + ": the file is read-only");
  EXPECT_EQ(Read("a"), "old");
  EXPECT_EQ(Read("a.bak"), "older");
}

TEST_F(FileRewritePosix, ABackupThatCannotBeMadeLeavesTheFile) {
  const std::string path = Write("a", "old");
  fs::create_directories(folder / "a.bak" / "full");
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new").rfind("Cannot write " + path + ".bak: ", 0), 0U);
  EXPECT_EQ(Read("a"), "old");
}

TEST_F(FileRewritePosix, AMissingFileIsNamed) {
  const std::string path = (folder / "none").string();
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new").rfind("Cannot read " + path + ": ", 0), 0U);
  EXPECT_TRUE(fs::is_empty(folder));
}

}  // namespace
}  // namespace qx
