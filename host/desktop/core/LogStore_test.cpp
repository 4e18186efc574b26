#include "host/desktop/core/LogStore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "host/log/LogStream.h"
#include "host/testing/TestFolder.h"
#include "platform/Texts.h"

namespace qx::desktop {
namespace {

// A log whose store is shown.
struct Shown {
  explicit Shown(std::size_t kept = LogStore::kDefaultKept)
      : store(static_cast<LogStore&>(log.AddSink(std::make_unique<LogStore>(kept)))) {}
  void Status(const std::string& heading, const std::vector<std::string>& details) {
    const auto message = CreateLogMessage();
    if (!heading.empty()) message->SetHeading(heading);
    for (const std::string& detail : details) message->AppendDetail(detail);
    log.AddStatus(1, *message);
  }
  std::string Rows() {
    store.Update();
    std::string rows;
    for (std::size_t i = 0; i < store.RowCount(); ++i) {
      const LogRow& row = store.Row(i);
      rows += (i == 0 ? "" : "|") + std::string(row.isDetail ? "  " : "") +
              (row.hasDetails ? (store.IsOpen(i) ? "-" : "+") : "") + row.text;
    }
    return rows;
  }
  ActionLog log;
  LogStore& store;
};

TEST(LogStore, MakesRowsOfEveryKindOfRecord) {
  Shown shown;
  shown.log.AddMessage(1, "one\r\ntwo\n\nx.cs(1,2): error CS0001: e");
  shown.log.AddMessage(2, "");
  shown.Status("Heading\nof two lines", {"a", "b\nc", "", "warning CS1: w"});
  shown.Status("", {"x", "y"});
  shown.Status("Alone", {});
  shown.log.AddException(2, "The deed threw");
  shown.log.AddValidation(3, "Solution", "There is none");
  shown.log.AddResult(1, "Build", true, 1.25);
  shown.log.AddResult(2, "Test", false, 0);
  EXPECT_EQ(shown.Rows(),
            "one|two||x.cs(1,2): error CS0001: e||-Heading of two lines|  a|  b|  c|  |  warning CS1: w|x|y|"
            "Alone|The deed threw|Solution: There is none|Build: succeeded (1.3 s)|Test: failed (0.0 s)");
  const auto severity = [&](std::size_t row) { return shown.store.Row(row).severity; };
  EXPECT_EQ(severity(0), Severity::Plain);
  EXPECT_EQ(severity(3), Severity::Error);
  EXPECT_EQ(severity(5), Severity::Heading);
  EXPECT_EQ(severity(10), Severity::Warning);
  EXPECT_EQ(severity(14), Severity::Error);
  EXPECT_EQ(severity(15), Severity::Error);
  EXPECT_EQ(severity(16), Severity::Good);
  EXPECT_EQ(severity(17), Severity::Error);
  EXPECT_EQ(shown.store.Row(3).action, 1);
  EXPECT_EQ(shown.store.Row(4).action, 2);
  EXPECT_EQ(shown.store.LineCount(), 18u);
  EXPECT_EQ(shown.store.ErrorCount(), 1u);  // as a summary counts them
  EXPECT_EQ(shown.store.WarningCount(), 1u);
  EXPECT_EQ(shown.store.DroppedCount(), 0u);
}

TEST(LogStore, ReadsProblemsOutOfTheRowsThatTheyStandIn) {
  Shown shown(4);
  shown.log.AddMessage(1, "------ Build started: Project: App, Configuration: Release ------");
  shown.Status("Heading", {"fine", "src\\x.cs(3,4): error CS0103: no \xFF"});
  shown.log.AddMessage(2, "LINK : warning LNK4075: ignored\r\nx\ry\r\n");
  shown.store.Update();
  const std::vector<Problem>& problems = shown.store.Problems();
  ASSERT_EQ(problems.size(), 2u);
  EXPECT_EQ(problems[0].severity, Severity::Error);
  EXPECT_EQ(problems[0].project, "App");
  EXPECT_EQ(problems[0].file, "src\\x.cs");
  EXPECT_EQ(problems[0].line, 3);
  EXPECT_EQ(problems[0].text, "CS0103: no \xEF\xBF\xBD");
  EXPECT_EQ(problems[0].action, 1);
  EXPECT_EQ(shown.store.Row(shown.store.RowFrom(problems[0].number)).severity, Severity::Error);
  EXPECT_EQ(problems[1].severity, Severity::Warning);
  EXPECT_EQ(problems[1].file, "");
  EXPECT_EQ(problems[1].action, 2);
  EXPECT_EQ(shown.store.Row(shown.store.RowFrom(problems[1].number)).text, "LINK : warning LNK4075: ignored");
  EXPECT_EQ(shown.store.ErrorCount(), 1u);
  EXPECT_EQ(shown.store.WarningCount(), 1u);
  EXPECT_EQ(shown.store.ProblemCounts().errors, 1);
  shown.store.Clear();
  EXPECT_TRUE(shown.store.Problems().empty());
  EXPECT_EQ(shown.store.ProblemCounts().errors, 0);
}

TEST(LogStore, KnowsWhichProjectsWereSkippedOnPurpose) {
  Shown shown;
  shown.log.AddMessage(1, "------ Build started: Project: App, Configuration: Release ------");
  shown.log.AddMessage(1, "/s/App/App.vcproj : warning QXE0002: App: it needs MFC");
  RunReport report;
  report.projects = {{"App", "App\\App.vcproj", "", "missing", "there is no such file", {}, {}, true}};
  shown.store.TakeSkipped(report, 1);
  EXPECT_EQ(report.projects[0].status, "skipped");
  EXPECT_FALSE(report.projects[0].isFault);
}

TEST(LogStore, CountsTheRowsThatASearchFinds) {
  Shown shown;
  for (const char* text : {"apple", "pear", "APPLE apple", "plum", "apple"}) shown.log.AddMessage(1, text);
  shown.store.Update();
  EXPECT_EQ(shown.store.CountHits("Apple", 2).place, 2u);
  EXPECT_EQ(shown.store.CountHits("Apple", 2).count, 3u);
  EXPECT_EQ(shown.store.CountHits("apple", 1).place, 0u);
  EXPECT_EQ(shown.store.CountHits("grape", 0).count, 0u);
  EXPECT_EQ(shown.store.CountHits("", 0).count, 0u);
}

TEST(LogStore, SavesWhatTheTextLogWrites) {
  const TestFolder folder;
  {
    Shown shown;
    shown.log.AddSink(std::make_unique<StreamSink>(LogFile::Create(folder / "stream.txt"), LogStyle::Text,
                                                   ColourChoice::Never));
    shown.log.AddSecret("hush");
    shown.log.AddMessage(1, "bytes \xE9\xFF and hush\r\n");
    shown.Status("Heading", {"a", "b\r\nc", ""});
    shown.Status("", {"x"});
    shown.log.AddException(1, "threw");
    shown.log.AddValidation(1, "S", "M");
    shown.log.AddResult(1, "Build", true, 61.04);
    shown.store.SaveTo(folder / "saved.txt");
    shown.log.AddMessage(1, std::string(200'000, 'x'));
    shown.store.SaveTo(folder / "later.txt");
  }
  const std::string all = folder.Read("stream.txt");
  EXPECT_NE(all.find("bytes \xE9\xFF and ***\r\n"), std::string::npos);
  EXPECT_EQ(folder.Read("saved.txt") + std::string(200'000, 'x') + "\n", all);
  EXPECT_EQ(folder.Read("later.txt"), all);
  Shown empty;
  empty.store.SaveTo(folder / "empty.txt");
  EXPECT_TRUE(folder.Has("empty.txt"));
  EXPECT_EQ(folder.Read("empty.txt"), "");
  const std::string refused = MessageOf([&] { empty.store.SaveTo(folder / "none/saved.txt"); });
  EXPECT_TRUE(refused.starts_with("Cannot write " + (folder / "none/saved.txt"))) << refused;
}

TEST(LogStore, ShowsBytesThatAreNotUtf8AndCutsLongLines) {
  Shown shown;
  shown.log.AddMessage(1, "a\xE9z");
  shown.log.AddMessage(1, std::string(LogStore::kLongestRow, 'x'));
  shown.log.AddMessage(1, std::string(LogStore::kLongestRow - 1, 'x') + "\xE2\x82\xAC" + "end");
  shown.store.Update();
  EXPECT_EQ(shown.store.Row(0).text, "a\xEF\xBF\xBDz");
  EXPECT_EQ(shown.store.Row(1).text.size(), LogStore::kLongestRow);
  EXPECT_EQ(shown.store.Row(2).text, std::string(LogStore::kLongestRow - 1, 'x') + "...");
}

TEST(LogStore, OpensAndClosesDetails) {
  Shown shown;
  shown.Status("A", {"a1", "a2"});
  shown.log.AddMessage(1, "between");
  shown.Status("B", {"b1"});
  EXPECT_EQ(shown.Rows(), "-A|  a1|  a2|between|-B|  b1");
  shown.store.SetOpen(0, false);
  EXPECT_EQ(shown.Rows(), "+A|between|-B|  b1");
  shown.store.SetOpen(1, false);  // nothing to close
  shown.store.SetOpen(2, false);
  EXPECT_EQ(shown.Rows(), "+A|between|+B");
  shown.Status("C", {"c1"});
  EXPECT_EQ(shown.Rows(), "+A|between|+B|-C|  c1");
  shown.store.SetOpen(0, true);
  EXPECT_EQ(shown.Rows(), "-A|  a1|  a2|between|+B|-C|  c1");
}

TEST(LogStore, FiltersByTextAndSeverityAndKeepsTheHeadingOfADetail) {
  Shown shown;
  shown.Status("A", {"plain",
                     "x.cs(1,1): warning CS1: Gr\xC3\xBC\xC3\x9F"
                     "e"});
  shown.Status("B", {"plain"});
  shown.log.AddMessage(1, "error CS2: e");
  shown.store.SetFilter("", Severity::Warning);
  EXPECT_EQ(shown.Rows(),
            "-A|  x.cs(1,1): warning CS1: Gr\xC3\xBC\xC3\x9F"
            "e|error CS2: e");
  shown.store.SetOpen(0, false);
  EXPECT_EQ(shown.Rows(), "+A|error CS2: e");
  shown.Status("C", {"no", "error CS3: x"});
  EXPECT_EQ(shown.Rows(), "+A|error CS2: e|-C|  error CS3: x");
  shown.store.SetFilter("GR\xC3\x9C", Severity::Plain);
  EXPECT_EQ(shown.Rows(), "+A");
  shown.store.SetFilter("b", Severity::Plain);
  EXPECT_EQ(shown.Rows(), "-B");
  shown.store.SetFilter("", Severity::Error);
  EXPECT_EQ(shown.Rows(), "error CS2: e|-C|  error CS3: x");
  shown.log.AddMessage(1, "hidden");
  EXPECT_FALSE(shown.store.Update());
  shown.store.SetFilter("", Severity::Plain);
  EXPECT_EQ(shown.store.RowCount(), 8u);
}

TEST(LogStore, FindsAroundTheEnd) {
  Shown shown;
  EXPECT_EQ(shown.store.Find("a", 0, true), -1);
  for (const char* text : {"apple", "pear", "APPLE pie", "plum"}) shown.log.AddMessage(1, text);
  shown.store.Update();
  EXPECT_EQ(shown.store.Find("apple", 0, true), 0);
  EXPECT_EQ(shown.store.Find("apple", 1, true), 2);
  EXPECT_EQ(shown.store.Find("apple", 3, true), 0);
  EXPECT_EQ(shown.store.Find("apple", 1, false), 0);
  EXPECT_EQ(shown.store.Find("plum", 1, false), 3);
  // Behind the last row comes the first, and before the first the last.
  EXPECT_EQ(shown.store.Find("p", 4, true), 0);
  EXPECT_EQ(shown.store.Find("p", -1, false), 3);
  EXPECT_EQ(shown.store.Find("apple", -1, false), 2);
  EXPECT_EQ(shown.store.Find("plum", 4, true), 3);
  EXPECT_EQ(shown.store.Find("pear", 99, false), 1);
  EXPECT_EQ(shown.store.Find("pear", -5, true), 1);
  EXPECT_EQ(shown.store.Find("grape", 0, true), -1);
  EXPECT_EQ(shown.store.Find("", 0, true), -1);
}

TEST(LogStore, LetsTheOldestLinesGoWithTheStateOfTheirHeading) {
  Shown shown(4);
  shown.Status("A", {"a1", "a2"});
  EXPECT_EQ(shown.Rows(), "-A|  a1|  a2");
  shown.store.SetOpen(0, false);
  shown.log.AddMessage(1, "m1");
  shown.log.AddMessage(1, "m2");
  EXPECT_EQ(shown.Rows(), "m1|m2");  // A left, and what it hid stays hidden
  shown.store.SetFilter("", Severity::Plain);
  EXPECT_EQ(shown.Rows(), "m1|m2");
  EXPECT_EQ(shown.store.DroppedCount(), 1u);
  shown.Status("B", {"b1", "b2", "b3", "b4", "b5"});
  EXPECT_EQ(shown.Rows(), "  b2|  b3|  b4|  b5");
  EXPECT_EQ(shown.store.LineCount(), 11u);
  EXPECT_EQ(shown.store.DroppedCount(), 7u);
}

TEST(LogStore, KnowsARowAgainWhereverItWent) {
  Shown shown(6);
  shown.Status("A", {"a1", "a2"});
  for (const char* text : {"m1", "m2"}) shown.log.AddMessage(1, text);
  EXPECT_EQ(shown.Rows(), "-A|  a1|  a2|m1|m2");
  const std::size_t detail = shown.store.NumberOf(2);
  const std::size_t message = shown.store.NumberOf(4);
  EXPECT_EQ(shown.store.RowFrom(message), 4u);
  shown.store.SetOpen(0, false);
  EXPECT_EQ(shown.Rows(), "+A|m1|m2");
  EXPECT_EQ(shown.store.RowFrom(message), 2u);
  EXPECT_EQ(shown.store.RowFrom(detail), 1u);  // hidden: the next that is not
  shown.store.SetOpen(0, true);
  EXPECT_EQ(shown.store.RowFrom(detail), 2u);
  shown.store.SetFilter("m2", Severity::Plain);
  EXPECT_EQ(shown.store.RowFrom(message), 0u);
  shown.store.SetFilter("", Severity::Plain);

  for (const char* text : {"m3", "m4", "m5"}) shown.log.AddMessage(1, text);
  EXPECT_EQ(shown.Rows(), "  a2|m1|m2|m3|m4|m5");
  EXPECT_EQ(shown.store.RowFrom(detail), 0u);
  EXPECT_EQ(shown.store.RowFrom(message), 2u);
  EXPECT_EQ(shown.store.NumberOf(2), message);
  for (int i = 0; i < 20; ++i) shown.log.AddMessage(1, "n" + std::to_string(i));
  EXPECT_EQ(shown.Rows(), "n14|n15|n16|n17|n18|n19");  // more came than are kept: none is the old one
  EXPECT_EQ(shown.store.RowFrom(message), 0u);
  EXPECT_GT(shown.store.NumberOf(0), message);
  EXPECT_EQ(shown.store.RowFrom(shown.store.NumberOf(5) + 1), shown.store.RowCount());
}

TEST(LogStore, StartsAnewWhenCleared) {
  const TestFolder folder;
  Shown shown(2);
  for (int i = 0; i < 5; ++i) shown.log.AddMessage(1, "error CS1: " + std::to_string(i));
  shown.store.Update();
  shown.log.AddMessage(1, "waiting");
  shown.store.Clear();
  EXPECT_EQ(shown.Rows(), "");
  EXPECT_EQ(shown.store.LineCount() + shown.store.ErrorCount() + shown.store.DroppedCount(), 0u);
  shown.log.AddMessage(1, "new");
  EXPECT_EQ(shown.Rows(), "new");
  shown.store.SaveTo(folder / "saved.txt");
  EXPECT_EQ(folder.Read("saved.txt"), "new\n");
}

// The thread writes as fast as it can; whoever shows it holds no more than was agreed and misses nothing.
TEST(LogStore, HoldsAMillionRecordsFromAnotherThread) {
  constexpr int kRecords = 1'000'000;
  constexpr std::size_t kKept = 1'000;
  const TestFolder folder;
  Shown shown(kKept);
  std::atomic<bool> done{false};
  std::thread writer([&] {
    for (int i = 0; i < kRecords; ++i) shown.log.AddMessage(1, "line " + std::to_string(i));
    done = true;
  });
  std::size_t most = 0;
  std::size_t linesBefore = 0;
  while (!done) {
    shown.store.Update();
    most = std::max(most, shown.store.HeldCount());
    ASSERT_GE(shown.store.LineCount(), linesBefore);
    linesBefore = shown.store.LineCount();
    ASSERT_LE(shown.store.RowCount(), kKept);
    ASSERT_EQ(shown.store.DroppedCount() + shown.store.RowCount(), shown.store.LineCount());
    const std::size_t rows = shown.store.RowCount();
    if (rows == 0) continue;
    // What is shown is the run of lines up to the last that came, whatever left unseen.
    ASSERT_EQ(shown.store.Row(rows - 1).text, "line " + std::to_string(linesBefore - 1));
    ASSERT_EQ(shown.store.Row(0).text, "line " + std::to_string(linesBefore - rows));
  }
  writer.join();
  shown.store.Update();
  EXPECT_LE(most, 2 * kKept);
  EXPECT_EQ(shown.store.LineCount(), static_cast<std::size_t>(kRecords));
  EXPECT_EQ(shown.store.RowCount(), kKept);
  EXPECT_FALSE(shown.store.Update());

  shown.store.SaveTo(folder / "saved.txt");
  const std::string saved = folder.Read("saved.txt");
  int next = 0;
  bool same = true;
  ForEachLine(saved, [&](std::string_view line) { same = same && line == "line " + std::to_string(next++); });
  EXPECT_TRUE(same);
  EXPECT_EQ(next, kRecords);
}

// Nobody looks while everything comes: one Update takes in no more rows than are kept.
TEST(LogStore, AnUpdateIsBoundedHoweverMuchHasCome) {
  Shown shown(100);
  shown.log.AddMessage(1, "old");
  shown.store.Update();
  for (int i = 0; i < 50'000; ++i) shown.Status("H" + std::to_string(i), {"d"});
  EXPECT_EQ(shown.store.HeldCount(), 101u);
  EXPECT_TRUE(shown.store.Update());
  EXPECT_EQ(shown.store.HeldCount(), 100u);
  EXPECT_EQ(shown.store.Row(0).text, "H49950");
  EXPECT_EQ(shown.store.DroppedCount(), 100'001u - 100u);
}

}  // namespace
}  // namespace qx::desktop
