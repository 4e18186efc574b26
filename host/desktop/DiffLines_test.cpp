#include "host/desktop/DiffLines.h"

#include <gtest/gtest.h>

#include "host/runtime/UnifiedDiff.h"

namespace qx::desktop {
namespace {

// A letter for each line's kind.
std::string KindsOf(const std::string& report) {
  std::string kinds;
  for (const DiffLine& line : DiffLinesOf(report)) kinds += ".PON@+-"[static_cast<std::size_t>(line.kind)];
  return kinds;
}

TEST(DiffLines, KnowProgramsAndFiles) {
  const std::string report =
      "Would run in /w:\n    make -a --- x\n"
      "--- a/f\n+++ b/f\n@@ -1,3 +1,3 @@\n a\n-b\n+c\n d\n"
      "Would run in /v:\n    + more\n";
  EXPECT_EQ(KindsOf(report), "P.ON@.-+.P.");
  EXPECT_EQ(DiffLinesOf(report)[6].text, "-b");
  EXPECT_EQ(KindsOf(""), "");
  EXPECT_EQ(KindsOf("\n\n"), "..");
}

TEST(DiffLines, AreNoHeadingsForWhatTheySay) {
  const std::string before = "one\n-- the first\nWould run in a\n@@ -1,9 +1,9 @@\nend\n";
  const std::string after = "one\n++ the first\n-- other\nWould run in b\nend\n";
  const std::string report = UnifiedDiff("f", before, after);
  EXPECT_EQ(KindsOf(report), "ON@.---+++.") << report;
  const std::vector<DiffLine> lines = DiffLinesOf(report + UnifiedDiff("g", "-- x\n", std::nullopt));
  EXPECT_EQ(CountOf(lines, DiffKind::NewFile), 2u);
  EXPECT_EQ(CountOf(lines, DiffKind::Removed), 4u);
  EXPECT_EQ(CountOf(lines, DiffKind::Added), 3u);
}

TEST(DiffLines, MayLeaveOutACountOfOne) {
  EXPECT_EQ(
      KindsOf(
          "--- a/f\n+++ b/f\n@@ -1 +1 @@\n--- x\n+++ y\n--- a/g\n+++ b/g\n@@ -0,0 +1 @@\n+++ z\n--- a/h\n"),
      "ON@-+ON@+O");
  EXPECT_EQ(KindsOf("@@ -1,2 +1 @@ int main()\n-a\n b\n-c\n"), "@-..");
}

TEST(DiffLines, DoNotCountTheWordAboutAMissingLineEnd) {
  const std::string report = UnifiedDiff("f", "a\nb", "a\nc") + UnifiedDiff("g", "-- x", "++ x");
  EXPECT_EQ(KindsOf(report), "ON@.-.+.ON@-.+.") << report;
  EXPECT_EQ(KindsOf("@@ -1 +0,0 @@\n-a\n\\ No newline at end of file\n--- a/g\n"), "@-.O");
}

TEST(DiffLines, EndAtLineFeedsAlone) {
  const std::string report = UnifiedDiff("f", "a\r\nb\rc\r\n", "a\r\n--- b\rc\r\n");
  EXPECT_EQ(KindsOf(report), "ON@.-+") << report;
  EXPECT_EQ(DiffLinesOf(report)[3].text, " a");
}

TEST(DiffLines, AreOfNoHunkWhenItsHeadingIsNone) {
  EXPECT_EQ(KindsOf("@@ -1,x +1 @@\n-a\n@@ -1\n-a\n@@ -99999999999999999999999 +1 @@\n-a\n"), "......");
}

}  // namespace
}  // namespace qx::desktop
