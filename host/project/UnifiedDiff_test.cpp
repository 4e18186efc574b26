#include "host/project/UnifiedDiff.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace qx {
namespace {

TEST(UnifiedDiff, ShowsAChangeWithItsContext) {
  EXPECT_EQ(UnifiedDiff("f", "1\n2\n3\n4\n5\n6\n7\n8\n9\n", "1\n2\n3\n4\nfive\n6\n7\n8\n9\n"),
            "--- a/f\n+++ b/f\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n");
}

TEST(UnifiedDiff, SaysNothingOfEqualFiles) {
  EXPECT_EQ(UnifiedDiff("f", "a", "a"), "");
  EXPECT_EQ(UnifiedDiff("f", std::nullopt, std::nullopt), "");
}

TEST(UnifiedDiff, MarksAMissingLastLineEndAndKeepsCarriageReturns) {
  EXPECT_EQ(UnifiedDiff("f", "a\nb", "a\nb\r\n"),
            "--- a/f\n+++ b/f\n@@ -1,2 +1,2 @@\n a\n-b\n\\ No newline at end of file\n+b\r\n");
}

TEST(UnifiedDiff, MakesAndTakesAwayFiles) {
  EXPECT_EQ(UnifiedDiff("f", std::nullopt, "a\n"), "--- /dev/null\n+++ b/f\n@@ -0,0 +1,1 @@\n+a\n");
  EXPECT_EQ(UnifiedDiff("f", "a\n", std::nullopt), "--- a/f\n+++ /dev/null\n@@ -1,1 +0,0 @@\n-a\n");
}

TEST(UnifiedDiff, GivesDistantChangesHunksOfTheirOwn) {
  std::string before;
  std::string after;
  for (int i = 0; i < 40; ++i) {
    before += std::to_string(i) + "\n";
    after += (i == 5 || i == 30 ? "x" : std::to_string(i)) + "\n";
  }
  const std::string diff = UnifiedDiff("f", before, after);
  EXPECT_NE(diff.find("@@ -3,7 +3,7 @@"), std::string::npos) << diff;
  EXPECT_NE(diff.find("@@ -28,7 +28,7 @@"), std::string::npos) << diff;
}

TEST(UnifiedDiff, EndsANameWithBlanksByATab) {
  EXPECT_TRUE(UnifiedDiff("a b", "1\n", "2\n").starts_with("--- a/a b\t\n+++ b/a b\t\n@@"));
  EXPECT_TRUE(UnifiedDiff("a b", std::nullopt, "2\n").starts_with("--- /dev/null\n+++ b/a b\t\n@@"));
}

// A letter for each line's kind.
std::string KindsOf(const std::vector<DiffLine>& lines) {
  std::string kinds;
  for (const DiffLine& line : lines) kinds += ".PON@+-"[static_cast<std::size_t>(line.kind)];
  return kinds;
}

TEST(UnifiedDiff, TellsOfEachLineWhatItIsWhateverItSays) {
  const std::string before = "one\n-- the first\nWould run in a\n@@ -1,9 +1,9 @@\nend\n";
  const std::string after = "one\n++ the first\n-- other\nWould run in b\nend\n";
  const std::vector<DiffLine> lines = DiffLines("f", before, after);
  EXPECT_EQ(KindsOf(lines), "ON@.---+++.") << TextOf(lines);
  EXPECT_EQ(lines[4].text, "--- the first");
  EXPECT_EQ(KindsOf(DiffLines("f", "a\nb", "a\nc")), "ON@.-.+.");
  EXPECT_EQ(KindsOf(DiffLines("f", "a\r\nb\rc\r\n", "a\r\n--- b\rc\r\n")), "ON@.-+");
  EXPECT_EQ(KindsOf(DiffLines("f", "-- x\n", std::nullopt)), "ON@-");
  EXPECT_EQ(KindsOf(DiffLines("f", "", std::nullopt)), "ON");
}

// What `patch` does, in short: walks the hunks over the old text.
std::string Applied(const std::string& before, const std::string& diff) {
  std::vector<std::string> lines;
  const auto split = [](const std::string& text) {
    std::vector<std::string> result;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
      result.push_back(text.substr(at, end - at));
      at = end;
    }
    return result;
  };
  const std::vector<std::string> old = split(before);
  std::string out;
  std::size_t at = 0;
  bool lastAdded = false;
  for (const std::string& line : split(diff)) {
    if (line.starts_with("---") || line.starts_with("+++")) continue;
    if (line.starts_with("@@")) {
      const std::size_t begin = std::stoul(line.substr(4));
      const bool empty = line.substr(4, line.find(' ', 4) - 4).ends_with(",0");
      for (const std::size_t end = empty ? begin : begin - 1; at < end; ++at) out += old[at];
    } else if (line[0] == '\\') {
      if (lastAdded) out.pop_back();
    } else {
      lastAdded = line[0] != '-';
      if (line[0] != '+') {
        EXPECT_TRUE(at < old.size() && (line.substr(1) == old[at] || line.substr(1) == old[at] + "\n"));
        ++at;
      }
      if (lastAdded) out += line.substr(1);
    }
  }
  for (; at < old.size(); ++at) out += old[at];
  return out;
}

TEST(UnifiedDiff, AppliesBackToTheNewFileWhateverTheFiles) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    const auto text = [&](std::size_t lines) {
      std::string made;
      for (std::size_t i = 0; i < lines; ++i)
        made += std::string(1, static_cast<char>('a' + random() % 4)) + (random() % 5 ? "\n" : "\r\n");
      if (random() % 3 == 0) made += "end";
      return made;
    };
    const std::string before = text(random() % 30);
    const std::string after = text(random() % 30);
    const std::string diff = UnifiedDiff("f", before, after);
    ASSERT_EQ(Applied(before, diff), after) << before << "\n=>\n" << after << "\n" << diff;
  }
  std::string before;
  std::string after;
  for (int i = 0; i < 5000; ++i) {
    before += std::to_string(i) + "\n";
    after += std::to_string(i) + "\r\n";
  }
  EXPECT_EQ(Applied(before, UnifiedDiff("f", before, after)), after);
}

}  // namespace
}  // namespace qx
