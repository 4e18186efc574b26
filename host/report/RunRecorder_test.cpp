#include "host/report/RunRecorder.h"

#include <gtest/gtest.h>

#include "host/actions/ActionHost.h"
#include "host/testing/TestFolder.h"
#include "host/testing/TestHost.h"
#include "platform/files/Files.h"
#include "plugin/Qxrunreport.h"

namespace qx {
namespace {

// Tells of two files that it changed.
class StampingAction : public TQXAction, public AnswersUncounted<IQXRunReport> {
 public:
  RunReport ReportRun(bool looksForPrograms) override {
    EXPECT_FALSE(looksForPrograms);
    RunReport report;
    report.files = {{file, "AssemblyInfo", true, file + ".bak"},
                    {file + ".none", "AssemblyInfo", true, file + ".none.bak"},
                    {file, "AssemblyInfo", false, ""}};
    return report;
  }
  std::string file;
};

const TQXActionClass& StampingClass() {
  static constexpr TQXActionClass record{
      "TStampingAction",
      [] { return std::string("Stamping"); },
      {},
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<StampingAction>(); }};
  return record;
}

LogRecord Message(std::string_view text) {
  LogRecord record;
  record.action = 1;
  record.text = text;
  return record;
}

TEST(RunRecorder, KeepsTheWholeOfASmallLog) {
  RunRecorder recorder;
  recorder.Take(Message("a"));
  recorder.Take(Message("b"));
  RunRecord record;
  recorder.FillIn(record);
  EXPECT_EQ(record.log.head, "a\nb\n");
  EXPECT_EQ(record.log.linesBetween, 0);
}

TEST(RunRecorder, KeepsBeginningAndEndOfALargeLog) {
  RunRecorder recorder;
  constexpr std::int64_t kLines = 100'000;
  const std::string line(99, 'x');
  for (std::int64_t i = 0; i < kLines; ++i) recorder.Take(Message(line));
  recorder.Take(Message("the end"));
  RunRecord record;
  recorder.FillIn(record);
  EXPECT_LE(record.log.head.size(), RunRecorder::kMostLog);
  EXPECT_TRUE(record.log.tail.ends_with("\nthe end\n"));
  const auto kept = std::count(record.log.head.begin(), record.log.head.end(), '\n') +
                    std::count(record.log.tail.begin(), record.log.tail.end(), '\n');
  EXPECT_EQ(kept + record.log.linesBetween, kLines + 1);
  EXPECT_GE(record.log.tail.size(), RunRecorder::kMostLog - 100);
}

TEST(RunRecorder, KeepsWhatAnActionChangedAsDiffs) {
  TestHost host;
  TestFolder folder;
  const auto action = host.Make<StampingAction>(StampingClass());
  action->file = folder / "AssemblyInfo.cs";
  ReplaceFile(action->file + ".bak", "\xFF\xFE" + std::string("o\0l\0d\0\r\0\n\0", 10));
  ReplaceFile(action->file, "new\r\n");
  RunRecorder recorder;
  recorder.LookAt(*action, 1);
  RunRecord record;
  recorder.FillIn(record);
  ASSERT_EQ(record.changes.size(), 2u);
  EXPECT_EQ(record.changes[0].diff.back().text, "+new");
  EXPECT_EQ(record.changes[0].remark, "");
  EXPECT_TRUE(record.changes[1].diff.empty());
  EXPECT_NE(record.changes[1].remark.find("Cannot read"), std::string::npos);
}

}  // namespace
}  // namespace qx
