// The file of the log when the disk gives no more, and where it lies.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>

#include "host/desktop/core/LogStore.h"
#include "host/testing/TestFolder.h"

namespace qx::desktop {
namespace {

// For the time of a test temporary files go into a folder of its own.
class LogSpool : public testing::Test {
 protected:
  void SetUp() override { Use(temporary_.Path()); }
  void TearDown() override {
    if (had_)
      setenv("TMPDIR", before_.c_str(), 1);
    else
      unsetenv("TMPDIR");
  }
  static void Use(const std::string& folder) { setenv("TMPDIR", folder.c_str(), 1); }
  static LogRecord Message(std::string_view text) {
    LogRecord record;
    record.text = text;
    return record;
  }

  TestFolder temporary_;
  bool had_ = getenv("TMPDIR") != nullptr;
  std::string before_ = had_ ? getenv("TMPDIR") : "";
};

TEST_F(LogSpool, LiesInAFolderOfItsOwnAndGoesWithTheStore) {
  {
    LogStore store;
    EXPECT_EQ(temporary_.Count(), 0);
    store.Take(Message("x"));
    store.Flush();
    ASSERT_EQ(temporary_.Count(), 1);
    struct stat status;
    ASSERT_EQ(stat((temporary_ / temporary_.Names()).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
  }
  EXPECT_EQ(temporary_.Count(), 0);
}

TEST_F(LogSpool, TellsWhenItCannotBeMadeAndTheRowsGoOn) {
  Use(temporary_ / "none");
  LogStore store;
  store.Take(Message("x"));
  store.Flush();
  store.Take(Message("y"));
  EXPECT_NE(store.FileError().find("Cannot make a temporary folder in " + (temporary_ / "none")),
            std::string::npos)
      << store.FileError();
  EXPECT_TRUE(store.Update());
  EXPECT_EQ(store.RowCount(), 2u);
}

TEST_F(LogSpool, TellsWhenTheDiskGivesNoMoreAndTheRowsGoOn) {
  LogStore store;
  store.Take(Message("before"));
  store.Flush();
  rlimit limit;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit small = limit;
  small.rlim_cur = 10'000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  for (int i = 0; i < 1'000; ++i) store.Take(Message("a line of twenty bytes"));
  store.Flush();
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, handler);

  EXPECT_NE(store.FileError().find("File too large"), std::string::npos) << store.FileError();
  EXPECT_TRUE(store.Update());
  EXPECT_EQ(store.RowCount(), 1'001u);
  const TestFolder folder;
  const std::string told = MessageOf([&] { store.SaveTo(folder / "saved.txt"); });
  EXPECT_NE(told.find("saved.txt holds only the beginning of the log: Cannot write"), std::string::npos)
      << told;
  EXPECT_EQ(folder.Read("saved.txt"), "before\n");
}

}  // namespace
}  // namespace qx::desktop
