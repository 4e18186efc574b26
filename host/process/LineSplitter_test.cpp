#include "host/process/LineSplitter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

#include "host/system/SecretWords.h"

namespace qx {
namespace {

using Lines = std::vector<std::string>;

// The lines of a stream that arrives as `pieces`.
Lines Split(const Lines& pieces, std::size_t longest = LineSplitter::kLongestLine) {
  Lines lines;
  const LineSink sink = [&](std::string_view line) { lines.emplace_back(line); };
  LineSplitter splitter(longest);
  for (std::string_view piece : pieces) {
    while (!piece.empty()) {
      const std::span<char> space = splitter.Space();
      const std::size_t size = std::min(space.size(), piece.size());
      std::memcpy(space.data(), piece.data(), size);
      piece.remove_prefix(size);
      splitter.Commit(size, sink);
    }
  }
  splitter.Finish(sink);
  return lines;
}

TEST(LineSplitter, TakesBothLineEndsAway) { EXPECT_EQ(Split({"a\nb\r\nc\n"}), (Lines{"a", "b", "c"})); }

TEST(LineSplitter, KeepsEmptyLines) { EXPECT_EQ(Split({"\n\r\na\n\n"}), (Lines{"", "", "a", ""})); }

TEST(LineSplitter, DeliversALastLineWithoutEnd) {
  EXPECT_EQ(Split({"a\nb"}), (Lines{"a", "b"}));
  EXPECT_EQ(Split({"a\r"}), Lines{"a\r"});
  EXPECT_EQ(Split({""}), Lines{});
}

TEST(LineSplitter, ACarriageReturnElsewhereIsText) {
  EXPECT_EQ(Split({"10%\r20%\r\r\nx"}), (Lines{"10%\r20%\r", "x"}));
}

TEST(LineSplitter, ALineEndMayBeBrokenOverTwoReads) {
  EXPECT_EQ(Split({"a\r", "\nb\r", "c", "\n"}), (Lines{"a", "b\rc"}));
}

TEST(LineSplitter, BytesOfAnyKindPass) {
  const std::string odd("\xff\x00\xfe\xc3", 4);
  EXPECT_EQ(Split({odd + "\n" + odd}), (Lines{odd, odd}));
}

TEST(LineSplitter, KeepsALineOfTheLimitWholeWithItsLineEndInTheNextRead) {
  const std::string line(8, 'x');
  EXPECT_EQ(Split({line, "\n"}, 8), Lines{line});
  EXPECT_EQ(Split({line + "\r", "\n"}, 8), Lines{line});
  EXPECT_EQ(Split({line + "\r\n"}, 8), Lines{line});
  EXPECT_EQ(Split({line + "\r"}, 8), (Lines{line, "\r"}));
}

TEST(LineSplitter, DividesALongerLineBetweenCharacters) {
  EXPECT_EQ(Split({"123456789"}, 8), (Lines{"12345678", "9"}));
  EXPECT_EQ(Split({"1234567\xc3\xa4z\n"}, 8), (Lines{"1234567", "\xc3\xa4z"}));
  EXPECT_EQ(Split({"12345\xf0\x9f\x98\x80z\n"}, 8), (Lines{"12345", "\xf0\x9f\x98\x80z"}));
  EXPECT_EQ(Split({"1234\x80\x80\x80\x80\x80\x80\n"}, 8), (Lines{"1234\x80\x80\x80\x80", "\x80\x80"}));
}

// Half a secret is masked by nobody, however the stream comes in.
TEST(LineSplitter, DividesNoSecret) {
  NeverDivide("opensesame");
  const Lines pieces{"123456", "opensesame78"};
  EXPECT_EQ(Split({"123456opensesame78\n"}, 12), pieces);
  EXPECT_EQ(Split({"123456opensesame78"}, 12), pieces);
  Lines bytes;
  for (const char c : std::string("123456opensesame78\n")) bytes.emplace_back(1, c);
  EXPECT_EQ(Split(bytes, 12), pieces);
  EXPECT_EQ(Split({"opensesame"}, 6), (Lines{"opense", "same"})) << "one that is longer than a line may be";
}

TEST(LineSplitter, MemoryIsBoundedForALineWithoutEnd) {
  LineSplitter splitter;
  std::size_t bytes = 0;
  std::size_t longest = 0;
  const LineSink sink = [&](std::string_view line) {
    bytes += line.size();
    longest = std::max(longest, line.size());
  };
  const char* lowest = nullptr;
  for (int round = 0; round < 1000; ++round) {
    const std::span<char> space = splitter.Space();
    std::memset(space.data(), 'x', space.size());
    splitter.Commit(space.size(), sink);
    if (round == 500) lowest = splitter.Space().data();
  }
  EXPECT_LT(std::abs(splitter.Space().data() - lowest),
            static_cast<std::ptrdiff_t>(4 * LineSplitter::kLongestLine));
  splitter.Finish(sink);
  EXPECT_EQ(bytes, 1000 * LineSplitter::kReadSize);
  EXPECT_EQ(longest, LineSplitter::kLongestLine);
}

TEST(LineSplitter, HowTheStreamWasReadMakesNoDifference) {
  std::mt19937 random(7);
  const std::string alphabet = "ab\r\r\n\n\xc3\xa4\xe2\x82\xac";
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (auto left = random() % 60; left > 0; --left) text += alphabet[random() % alphabet.size()];
    Lines pieces;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t size = 1 + random() % 5;
      pieces.push_back(text.substr(at, size));
      at += size;
    }
    ASSERT_EQ(Split(pieces, 8), Split({text}, 8)) << testing::PrintToString(text);
    ASSERT_EQ(Split(pieces), Split({text}));
  }
}

}  // namespace
}  // namespace qx
