#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "host/testing/TestFolder.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

mode_t ModeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

TEST(ReplaceFile, KeepsTheMode) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "old");
  chmod(path.c_str(), 0640);
  ReplaceFile(path, "new");
  EXPECT_EQ(ModeOf(path), 0640u);
}

TEST(ReplaceFile, GivesANewFileTheModeTheUserWants) {
  const TestFolder folder;
  const mode_t old = umask(027);
  ReplaceFile(folder / "a", "new");
  umask(old);
  EXPECT_EQ(ModeOf(folder / "a"), 0640u);
}

TEST(ReplaceFile, FollowsALinkToItsTarget) {
  const TestFolder folder;
  folder.Write("real/a", "old");
  ASSERT_EQ(symlink("real/a", (folder / "link").c_str()), 0);
  ReplaceFile(folder / "link", "new");
  EXPECT_EQ(folder.Read("real/a"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST(ReplaceFile, MakesTheTargetOfALinkThatLeadsNowhere) {
  const TestFolder folder;
  ASSERT_EQ(symlink("target", (folder / "link").c_str()), 0);
  ReplaceFile(folder / "link", "new");
  EXPECT_EQ(folder.Read("target"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST(ReplaceFile, EndsOnLinksThatGoInCircles) {
  const TestFolder folder;
  ASSERT_EQ(symlink("b", (folder / "a").c_str()), 0);
  ASSERT_EQ(symlink("a", (folder / "b").c_str()), 0);
  EXPECT_THROW(ReplaceFile(folder / "a", "new"), std::exception);
}

TEST(ReplaceFile, RefusesWhatIsNoRegularFile) {
  EXPECT_EQ(MessageOf([] { ReplaceFile("/dev/null", "x"); }),
            "Cannot write /dev/null: it is not a regular file");
}

TEST(ReadFile, DoesNotWaitAtAPipe) {
  const TestFolder folder;
  const std::string path = folder / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(MessageOf([&] { ReadFile(path); }), "Cannot read " + path + ": it is not a regular file");
}

// A limit on the size of files fails a write in its middle, as a full disk does, without a disk of one's own.
TEST(ReplaceFile, AWriteThatFailsInTheMiddleLeavesTheOldFileAndNothingElse) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "old");
  rlimit old{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{8192, old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string message = MessageOf([&] { ReplaceFile(path, std::string(100000, 'x')); });
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, ignored);
  EXPECT_EQ(message, "Cannot write " + path + ": File too large");
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Count(), 1);
}

TEST(ReplaceFile, AFullDiskLeavesTheOldFileAndNothingElse) {
  const TestFolder folder;
  std::filesystem::create_directory(folder / "disk");
  if (mount("none", (folder / "disk").c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "only the superuser can mount a small disk";
  }
  const std::string path = folder.Write("disk/a", "old");
  const std::string message = MessageOf([&] { ReplaceFile(path, std::string(1 << 20, 'x')); });
  const std::string kept = folder.Read("disk/a");
  const auto left = std::distance(std::filesystem::directory_iterator(folder / "disk"), {});
  umount((folder / "disk").c_str());
  EXPECT_EQ(message, "Cannot write " + path + ": No space left on device");
  EXPECT_EQ(kept, "old");
  EXPECT_EQ(left, 1);
}

// At whatever moment the writer dies, the file is the old one or the new one.
TEST(ReplaceFile, AWriterThatIsKilledLeavesTheOldFileOrTheNew) {
  const TestFolder folder;
  const std::string path = folder / "a";
  const std::string one(300000, '1'), two(300000, '2');
  ReplaceFile(path, one);
  for (int round = 0; round < 40; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      for (;;) {
        ReplaceFile(path, two);
        ReplaceFile(path, one);
      }
    }
    usleep(static_cast<useconds_t>(100 + 237 * round));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string now = folder.Read("a");
    ASSERT_TRUE(now == one || now == two) << "round " << round << ": " << now.size() << " bytes";
  }
}

TEST(FileLock, GoesWithAProcessThatIsKilled) {
  const TestFolder folder;
  const std::string path = folder.Write("project.xml", "");
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const FileLock lock(path);
    if (write(ready[1], "x", 1) != 1) _exit(1);
    pause();
  }
  char sign = 0;
  ASSERT_EQ(read(ready[0], &sign, 1), 1);
  EXPECT_EQ(MessageOf([&] { const FileLock lock(path); }),
            path + " is in use by process " + std::to_string(child));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  const FileLock lock(path);
  close(ready[0]);
  close(ready[1]);
}

}  // namespace
}  // namespace qx
