#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

#include "platform/files/FileRewrite.h"
#include "platform/files/StagedFile.h"
#include "platform/files/WriteObserver.h"
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

TEST_F(FileRewritePosix, ABackupIsNeverASecondNameOfTheFile) {
  const std::string path = Write("a", "old");
  FileRewrite rewrite(path);
  const std::string_view old[] = {rewrite.Bytes()}, changed[] = {"new"};
  struct Looker : WriteObserver {
    void BeforeWrites(std::span<const PlannedWrite>) override { count = fs::hard_link_count(path); }
    std::string path;
    std::uintmax_t count = 0;
  } looker;
  looker.path = path;
  {
    const WritesObserved observed(looker);
    rewrite.Commit(".bak", BackupRule::EveryTime, old, changed);
  }
  EXPECT_EQ(looker.count, 1U);
  EXPECT_EQ(fs::hard_link_count(path), 1U);
  EXPECT_EQ(fs::hard_link_count(path + ".bak"), 1U);
}

TEST_F(FileRewritePosix, AFileThatAnotherProgramWritesToMeanwhileIsLeftToIt) {
  const std::string path = Write("a", "old text");
  for (const std::string theirs : {"half", "new text", "a longer one"}) {
    Write("a", "old text");
    FileRewrite rewrite(path);
    const std::string_view old[] = {rewrite.Bytes()}, changed[] = {"stamped"};
    Write("a", theirs);
    std::string message;
    try {
      rewrite.Commit(".bak", BackupRule::EveryTime, old, changed);
    } catch (const Exception& error) {
      message = error.Message();
    }
    EXPECT_EQ(message, "Cannot write " + path + ": another program has written to it meanwhile");
    EXPECT_EQ(Read("a"), theirs);
    EXPECT_FALSE(fs::exists(folder / "a.bak"));
  }
}

TEST_F(FileRewritePosix, AFileThatTookItsPlaceMeanwhileIsLeft) {
  const std::string path = Write("a", "old");
  FileRewrite rewrite(path);
  const std::string_view old[] = {rewrite.Bytes()}, changed[] = {"stamped"};
  Write("b", "old");
  fs::last_write_time(folder / "b", fs::last_write_time(path));
  fs::rename(folder / "b", path);
  EXPECT_THROW(rewrite.Commit(".bak", BackupRule::EveryTime, old, changed), Exception);
  EXPECT_EQ(Read("a"), "old");
}

TEST_F(FileRewritePosix, WhatAKilledProcessLeftGoesWithTheNextWrite) {
  const std::string path = Write("a", "old");
  Write(".a.tmp", "half of someth");
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "");
  EXPECT_EQ(Read("a"), "new");
  EXPECT_FALSE(fs::exists(folder / ".a.tmp"));
}

TEST_F(FileRewritePosix, WhatALivingProcessWritesIsWaitedForAndLeft) {
  const std::string path = Write("a", "old");
  const std::string theirs = Write(".a.tmp", "theirs");
  const int number = open(theirs.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(number, LOCK_EX), 0);
  const std::string message = Commit(path, BackupRule::EveryTime, "new");
  close(number);
  EXPECT_EQ(message.rfind("Cannot write " + path + ": ", 0), 0U) << message;
  EXPECT_EQ(Read("a"), "old");
  EXPECT_EQ(Read(".a.tmp"), "theirs");
}

TEST_F(FileRewritePosix, SeveralTogetherAreWrittenWhenTheyArePlaced) {
  std::vector<std::string> paths;
  for (int i = 0; i < 300; ++i) paths.push_back(Write("f" + std::to_string(i), "old" + std::to_string(i)));
  RewritesTogether rewrites;
  for (const std::string& path : paths) EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "");
  EXPECT_EQ(Read("f0"), "old0");
  EXPECT_EQ(rewrites.PlacedCount(), 0U);
  rewrites.Place();
  EXPECT_EQ(rewrites.PlacedCount(), 300U);
  for (int i = 0; i < 300; ++i) {
    EXPECT_EQ(Read("f" + std::to_string(i)), "new");
    EXPECT_EQ(Read("f" + std::to_string(i) + ".bak"), "old" + std::to_string(i));
  }
}

TEST_F(FileRewritePosix, OfSeveralTogetherThoseBeforeAFailureAreWrittenAndNoneFromItOn) {
  for (const char* name : {"a", "b", "c"}) Write(name, "old");
  RewritesTogether rewrites;
  for (const char* name : {"a", "b", "c"}) {
    EXPECT_EQ(Commit((folder / name).string(), BackupRule::EveryTime, "new"), "");
  }
  Write("b", "theirs");
  EXPECT_THROW(rewrites.Place(), Exception);
  EXPECT_EQ(rewrites.PlacedCount(), 1U);
  EXPECT_EQ(Read("a") + " " + Read("b") + " " + Read("c"), "new theirs old");
  EXPECT_FALSE(fs::exists(folder / "c.bak"));
}

TEST_F(FileRewritePosix, AFileThatIsOpenedAgainIsPlacedFirstUnderWhateverName) {
  Write("a", "one");
  fs::create_directory_symlink(folder, folder / "same");
  RewritesTogether rewrites;
  EXPECT_EQ(Commit((folder / "a").string(), BackupRule::EveryTime, "two"), "");
  EXPECT_EQ(Commit((folder / "same" / "a").string(), BackupRule::EveryTime, "three"), "");
  EXPECT_EQ(Read("a") + " " + Read("a.bak"), "two one");
  rewrites.Place();
  EXPECT_EQ(Read("a") + " " + Read("a.bak"), "three two");
}

TEST_F(FileRewritePosix, WhatIsNotPlacedIsNotWritten) {
  const std::string path = Write("a", "old");
  {
    RewritesTogether rewrites;
    EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "");
  }
  EXPECT_EQ(Read("a"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
}

TEST_F(FileRewritePosix, AnObserverIsToldBeforeAnythingIsWrittenAndMayForbidIt) {
  struct Refuser : WriteObserver {
    void BeforeWrites(std::span<const PlannedWrite> writes) override {
      for (const PlannedWrite& write : writes) {
        told += std::string(write.path.substr(write.path.rfind('/') + 1)) + ":" + std::string(*write.before);
        for (const std::string_view piece : *write.after) told += ">" + std::string(piece);
      }
      throw Exception("not now");
    }
    std::string told;
  } refuser;
  const std::string path = Write("a", "old");
  const WritesObserved observed(refuser);
  EXPECT_EQ(Commit(path, BackupRule::EveryTime, "new"), "not now");
  EXPECT_EQ(refuser.told, "a:old>n>ew");
  EXPECT_EQ(Read("a"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
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

// One call writes what many files hold, or says that it did not; they stand whole in their places either way.
TEST_F(FileRewritePosix, ManyFilesAreFlushedByOneCallOrEach) {
  std::vector<std::unique_ptr<system::StagedFile>> files;
  std::vector<system::StagedFile*> staged;
  std::string reason;
  const std::string_view bytes = "whole";
  for (int i = 0; i < 40; ++i) {
    files.push_back(
        system::Stage((folder / std::to_string(i)).string(), {&bytes, 1}, nullptr, false, reason));
    ASSERT_NE(files.back(), nullptr) << reason;
    staged.push_back(files.back().get());
  }
  std::cout << (system::FlushTogether(staged) ? "by one call" : "each") << "\n";
  std::size_t failed = 0;
  EXPECT_TRUE(system::FlushAll(staged, failed, reason)) << reason;
  for (const auto& file : files) EXPECT_TRUE(file->Place(reason)) << reason;
  for (int i = 0; i < 40; ++i) EXPECT_EQ(Read(std::to_string(i)), bytes);
}

TEST_F(FileRewritePosix, FilesOfTwoFileSystemsAreFlushedEach) {
  std::string reason;
  const std::string_view bytes = "whole";
  const auto here = system::Stage((folder / "a").string(), {&bytes, 1}, nullptr, false, reason);
  const auto there =
      system::Stage("/dev/shm/rewrite-" + std::to_string(getpid()), {&bytes, 1}, nullptr, false, reason);
  if (there == nullptr) GTEST_SKIP() << "there is no second file system: " << reason;
  system::StagedFile* const both[] = {here.get(), there.get()};
  EXPECT_FALSE(system::FlushTogether(both));
  system::StagedFile* const inMemory[] = {there.get()};
  EXPECT_FALSE(system::FlushTogether(inMemory));
}

}  // namespace
}  // namespace qx
