#include "platform/files/Files.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "host/testing/TestFolder.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

using std::string_literals::operator""s;

TEST(Files, AreReadWhole) {
  const TestFolder folder;
  const std::string bytes = "a\r\n\0\xFF"s + std::string(200000, 'x');
  EXPECT_EQ(ReadFile(folder.Write("a", bytes)), bytes);
  EXPECT_EQ(ReadFile(folder.Write("empty", "")), "");
}

TEST(Files, AreReadUnderAnyLetterCaseAndDelimiter) {
  const TestFolder folder;
  folder.Write("Sub/File.txt", "x");
  EXPECT_EQ(ReadFile(folder / "sub\\FILE.TXT"), "x");
}

TEST(Files, AReadErrorNamesTheFileAndTheReason) {
  const TestFolder folder;
  const std::string missing = folder / "missing.sln";
  const std::string message = MessageOf([&] { ReadFile(missing); });
  EXPECT_TRUE(message.starts_with("Cannot read " + missing + ": ")) << message;
  EXPECT_GT(message.size(), ("Cannot read " + missing + ": ").size());
  EXPECT_EQ(MessageOf([&] { ReadFile(folder.Path()); }), "Cannot read " + folder.Path() + ": it is a folder");
}

TEST(Files, TryingAloneReadsIntoTheBufferThatIsThere) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "short");
  std::string buffer(1000, 'z'), reason;
  const char* memory = buffer.data();
  EXPECT_TRUE(TryReadFile(path, buffer));
  EXPECT_EQ(buffer, "short");
  EXPECT_EQ(buffer.data(), memory);
  EXPECT_FALSE(TryReadFile(folder / "missing", buffer, &reason));
  EXPECT_NE(reason, "");
}

TEST(Files, ExistWhenTheyAreNoFolders) {
  const TestFolder folder;
  folder.Write("Sub/a", "");
  EXPECT_TRUE(FileExists(folder / "Sub\\A"));
  EXPECT_FALSE(FileExists(folder / "Sub"));
  EXPECT_TRUE(FolderExists(folder / "SUB"));
  EXPECT_TRUE(FolderExists(folder / "SUB\\"));
  EXPECT_FALSE(FolderExists(folder / "Sub\\a"));
  EXPECT_FALSE(FileExists(""));
}

TEST(Files, TellWhenTheyWereWritten) {
  const TestFolder folder;
  const std::string older = folder.Write("Older.txt", "1"), newer = folder.Write("newer.txt", "2");
  const auto now = std::filesystem::last_write_time(older);
  std::filesystem::last_write_time(newer, now + std::chrono::seconds(2));
  ASSERT_TRUE(TimeWritten(older).has_value());
  EXPECT_LT(TimeWritten(older), TimeWritten(newer));
  EXPECT_EQ(TimeWritten(folder / "OLDER.TXT"), TimeWritten(older));
  EXPECT_EQ(TimeWritten(folder / "none"), std::nullopt);
}

TEST(Files, FoldersAreMadeWithThoseAboveThem) {
  const TestFolder folder;
  CreateFolders(folder / "a\\b/c\\");
  EXPECT_TRUE(FolderExists(folder / "a/b/c"));
  CreateFolders(folder / "A\\B\\d");
  EXPECT_TRUE(FolderExists(folder / "a/b/d"));
  EXPECT_EQ(folder.Count(), 1) << "a folder of another letter case was made";
  const std::string belowFile = folder.Write("file", "") + "/x";
  const std::string message = MessageOf([&] { CreateFolders(belowFile); });
  EXPECT_TRUE(message.starts_with("Cannot create folder " + belowFile + ": ")) << message;
}

TEST(ReplaceFile, MakesAndReplacesAndLeavesNothingBeside) {
  const TestFolder folder;
  ReplaceFile(folder / "a.txt", "one");
  EXPECT_EQ(folder.Read("a.txt"), "one");
  ReplaceFile(folder / "A.TXT", "two\0"s);
  EXPECT_EQ(folder.Read("a.txt"), "two\0"s);
  EXPECT_EQ(folder.Count(), 1);
}

TEST(ReplaceFile, LeavesAFileOfTheSameBytesAlone) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "same");
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(path, longAgo);
  const auto before = std::filesystem::last_write_time(path);
  ReplaceFile(path, "same");
  EXPECT_EQ(std::filesystem::last_write_time(path), before);
  ReplaceFile(path, "other");
  EXPECT_NE(std::filesystem::last_write_time(path), before);
}

TEST(ReplaceFile, RefusesAReadOnlyFileAndNamesIt) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(MessageOf([&] { ReplaceFile(path, "new"); }), "Cannot write " + path + ": the file is read-only");
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Count(), 1);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

TEST(ReplaceFile, RefusesAFolderAndAFolderThatIsNotThere) {
  const TestFolder folder;
  folder.Write("Sub/a", "");
  EXPECT_EQ(MessageOf([&] { ReplaceFile(folder / "Sub", "x"); }),
            "Cannot write " + (folder / "Sub") + ": it is a folder");
  const std::string path = folder / "nowhere/a";
  const std::string message = MessageOf([&] { ReplaceFile(path, "x"); });
  EXPECT_TRUE(message.starts_with("Cannot write " + path + ": ")) << message;
  EXPECT_FALSE(FolderExists(folder / "nowhere"));
}

TEST(CopyFileAside, CopiesOverWhatWasThere) {
  const TestFolder folder;
  const std::string from = folder.Write("a", "one\0"s);
  folder.Write("a.bak", "older");
  CopyFileAside(from, from + ".bak");
  EXPECT_EQ(folder.Read("a.bak"), "one\0"s);
  EXPECT_EQ(folder.Read("a"), "one\0"s);
  const std::string message = MessageOf([&] { CopyFileAside(folder / "b", folder / "c"); });
  EXPECT_TRUE(message.starts_with("Cannot read " + (folder / "b") + ": ")) << message;
}

TEST(CopyFileAside, ACopyOfAReadOnlyFileCanBeReplacedNextTime) {
  const TestFolder folder;
  const std::string from = folder.Write("a", "one");
  std::filesystem::permissions(from, std::filesystem::perms::owner_read);
  CopyFileAside(from, from + ".bak");
  std::filesystem::permissions(from, std::filesystem::perms::owner_all);
  ReplaceFile(from, "two");
  CopyFileAside(from, from + ".bak");
  EXPECT_EQ(folder.Read("a.bak"), "two");
}

TEST(RemoveFile, RemovesAndMindsNoAbsence) {
  const TestFolder folder;
  folder.Write("a", "");
  RemoveFile(folder / "A");
  EXPECT_EQ(folder.Count(), 0);
  RemoveFile(folder / "A");
}

TEST(FileLock, KeepsOthersOutAndNamesTheHolder) {
  const TestFolder folder;
  const std::string path = folder.Write("project.xml", "");
  {
    const FileLock lock(path);
    EXPECT_TRUE(FileExists(path + ".lock"));
    const std::string message = MessageOf([&] { const FileLock second(path); });
    const std::string start = path + " is in use by process ";
    ASSERT_TRUE(message.starts_with(start)) << message;
    EXPECT_GT(std::stol(message.substr(start.size())), 0) << message;
  }
  EXPECT_FALSE(FileExists(path + ".lock"));
  const FileLock again(path);
}

TEST(FileLock, CannotBeHadInAFolderThatIsNotThere) {
  const TestFolder folder;
  const std::string path = folder / "nowhere/project.xml";
  const std::string message = MessageOf([&] { const FileLock lock(path); });
  EXPECT_TRUE(message.starts_with("Cannot lock " + path + ": ")) << message;
}

TEST(FileLock, TellsWhyItCannotBeHadByTheTypeOfTheException) {
  const TestFolder folder;
  const std::string path = folder.Write("project.xml", "");
  const FileLock lock(path);
  EXPECT_THROW(FileLock second(path), FileInUse);
  EXPECT_THROW(FileLock third(folder / "nowhere/project.xml"), FileNotLockable);
}

TEST(FileLock, WaitsForItsHolderAsLongAsItIsTold) {
  const TestFolder folder;
  const std::string path = folder.Write("project.xml", "");
  auto lock = std::make_unique<FileLock>(path);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THROW(FileLock second(path, std::chrono::milliseconds(30)), FileInUse);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
  std::thread holder([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    lock.reset();
  });
  EXPECT_NO_THROW(FileLock third(path, std::chrono::minutes(1)));
  holder.join();
}

TEST(FileLock, OneOfManyThreadsHasItAtATime) {
  const TestFolder folder;
  const std::string path = folder.Write("project.xml", "");
  std::atomic<int> inside{0}, most{0}, had{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 50;) {
        try {
          const FileLock lock(path);
          const int now = ++inside;
          if (now > most) most = now;
          ++had;
          ++round;
          --inside;
        } catch (const std::exception&) {
          std::this_thread::yield();
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(had, 200);
  EXPECT_EQ(most, 1);
}

TEST(WriteCapture, RecordsAndShowsWhatWouldBeOnDisk) {
  const TestFolder folder;
  const std::string path = folder.Write("A.txt", "old");
  folder.Write("gone", "x");
  {
    const WriteCapture capture;
    ReplaceFile(folder / "a.TXT", "new");
    CopyFileAside(path, path + ".bak");
    RemoveFile(folder / "gone");
    ReplaceFile(path, "newer");
    EXPECT_EQ(ReadFile(path), "newer");
    EXPECT_EQ(ReadFile(path + ".bak"), "new");
    EXPECT_TRUE(FileExists(path + ".bak"));
    EXPECT_FALSE(FileExists(folder / "gone"));
    EXPECT_THROW(ReadFile(folder / "gone"), std::exception);
    const auto changes = capture.Changes();
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_TRUE(SameText(FilePart(changes[0].path), "A.txt")) << changes[0].path;
    EXPECT_EQ(changes[0].bytes, "newer");
    EXPECT_EQ(changes[1].bytes, "new");
    EXPECT_EQ(changes[2].bytes, std::nullopt);
  }
  EXPECT_EQ(ReadFile(path), "old");
  EXPECT_FALSE(FileExists(path + ".bak"));
  EXPECT_TRUE(FileExists(folder / "gone"));
}

TEST(WriteCapture, RefusesWhatDiskWouldRefuse) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  const WriteCapture capture;
  EXPECT_EQ(MessageOf([&] { ReplaceFile(path, "new"); }), "Cannot write " + path + ": the file is read-only");
  EXPECT_TRUE(capture.Changes().empty());
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

TEST(WriteCapture, BytesThatChangeNothingAreNoChange) {
  const TestFolder folder;
  const std::string path = folder.Write("a", "same");
  const WriteCapture capture;
  ReplaceFile(path, "same");
  EXPECT_TRUE(capture.Changes().empty());
}

TEST(WriteCapture, LeavesOtherThreadsTheDiskUnlessTheyJoin) {
  const TestFolder folder;
  const WriteCapture capture;
  std::thread other([&] {
    EXPECT_FALSE(WritesAreCaptured());
    ReplaceFile(folder / "theirs", "saved");
  });
  other.join();
  std::thread helper([&] {
    const WriteCapture::Joined joined(capture);
    ReplaceFile(folder / "ours", "captured");
  });
  helper.join();
  EXPECT_EQ(folder.Read("theirs"), "saved");
  EXPECT_EQ(folder.Count(), 1);
  EXPECT_EQ(ReadFile(folder / "ours"), "captured");
  ASSERT_EQ(capture.Changes().size(), 1U);
}

TEST(WriteCapture, IsAliveOnceAtATime) {
  const WriteCapture capture;
  EXPECT_EQ(MessageOf([] { const WriteCapture second; }), "Writes are being captured already");
}

}  // namespace
}  // namespace qx
