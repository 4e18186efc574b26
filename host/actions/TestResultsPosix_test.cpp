#include <gtest/gtest.h>
#include <locale.h>

#include <string>

#include "host/actions/TestResults.h"
#include "host/testing/MadeLocale.h"

// The system's library never frees what it makes of LOCPATH.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep\n"; }

namespace qx {
namespace {

TEST(TestResultsPosix, WritesSecondsWithAPointWhateverTheLocale) {
  const MadeLocale german("de_DE", "UTF-8");
  if (!german.IsMade()) GTEST_SKIP() << "localedef cannot make the locale de_DE here";
  ASSERT_NE(setlocale(LC_NUMERIC, ""), nullptr);
  const std::string comma = localeconv()->decimal_point;
  TestResults results;
  results.outcomes = {{"Passed", 1}};
  results.seconds = 1.25;
  const std::string summary = SummaryOf(results);
  setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(comma, ",");
  EXPECT_EQ(summary, "Test results: 1 passed, 0 failed in 1.250 s");
}

}  // namespace
}  // namespace qx
