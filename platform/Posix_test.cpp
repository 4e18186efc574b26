#include "platform/Posix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "host/testing/TestFolder.h"

namespace qx::system {
namespace {

bool IsOpen(int number) { return fcntl(number, F_GETFD) >= 0; }

TEST(Descriptor, ClosesWithItsOwner) {
  int number = -1;
  {
    const Descriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
    number = file.Number();
    EXPECT_TRUE(file.IsOpen());
    EXPECT_TRUE(IsOpen(number));
  }
  EXPECT_FALSE(IsOpen(number));
}

TEST(Descriptor, MovesAndIsGivenUpWithoutBeingClosed) {
  Descriptor first(open("/dev/null", O_RDONLY | O_CLOEXEC));
  const int number = first.Number();
  Descriptor second(std::move(first));
  Descriptor third;
  third = std::move(second);
  EXPECT_EQ(third.Release(), number);
  EXPECT_FALSE(third.IsOpen());
  EXPECT_TRUE(IsOpen(number));
  EXPECT_TRUE(Descriptor(number).Close());
  EXPECT_FALSE(IsOpen(number));
}

TEST(Descriptor, ANegativeNumberIsNone) {
  Descriptor none(-1);
  EXPECT_FALSE(none.IsOpen());
  EXPECT_TRUE(none.Close());
}

TEST(Descriptor, TellsWhenClosingFails) {
  Descriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
  close(file.Number());
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(errno, EBADF);
}

TEST(Converter, TakesOffWhatItConvertsAndStopsAtWhatHasNoPlace) {
  Converter converter("CP1252", "UTF-8");
  ASSERT_TRUE(converter.IsOpen());
  std::string_view text = "\xC3\xA4-\xD0\x96x";
  std::string out;
  EXPECT_FALSE(converter.Convert(text, out));
  EXPECT_EQ(out, "\xE4-");
  EXPECT_EQ(text, "\xD0\x96x");
}

TEST(Converter, ConvertsMoreThanItsBufferHolds) {
  Converter converter("UTF-8", "CP1252");
  const std::string many(10000, '\x80');
  std::string_view text = many;
  std::string out;
  EXPECT_TRUE(converter.Convert(text, out));
  EXPECT_TRUE(text.empty());
  std::string euros;
  for (std::size_t i = 0; i < many.size(); ++i) euros += "\xE2\x82\xAC";
  EXPECT_EQ(out, euros);
}

TEST(Converter, KnowsWhichEncodingsThereAre) { EXPECT_FALSE(Converter("UTF-8", "no-such-page").IsOpen()); }

TEST(Programs, AreFoundInTheFirstFolderThatHasThem) {
  const TestFolder folder;
  const auto write = [&folder](const char* name) {
    std::filesystem::permissions(folder.Write(name, ""), std::filesystem::perms::owner_all);
  };
  write("second/cc");
  write("third/cc");
  const std::string path = folder / "first:" + folder / "second:" + folder / "third";
  EXPECT_EQ(FindProgramOn(path, "cc"), folder / "second/cc");
  folder.Write("first/cc", "nobody may run it");
  EXPECT_EQ(FindProgramOn(path, "cc"), folder / "second/cc");
  std::filesystem::create_directories(folder / "first/ld");
  EXPECT_EQ(FindProgramOn(path, "ld"), "");
  EXPECT_EQ(FindProgramOn("", "no-such-program"), "");
}

TEST(Programs, ArePassedPointersAndANullBehindThem) {
  std::vector<std::string> texts{"a", ""};
  const std::vector<char*> pointers = Pointers(texts);
  ASSERT_EQ(pointers.size(), 3u);
  EXPECT_STREQ(pointers[0], "a");
  EXPECT_STREQ(pointers[1], "");
  EXPECT_EQ(pointers[2], nullptr);
}

TEST(Programs, ThatCannotBeStartedLeaveTheReason) {
  BecomeProgram({"/no/such/program"});
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(LastError(), ErrorText(ENOENT));
}

}  // namespace
}  // namespace qx::system
