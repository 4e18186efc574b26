#include <gtest/gtest.h>

#include <string>

#include "host/testing/MadeLocale.h"
#include "platform/DateText.h"

// The system's library never frees what it makes of LOCPATH.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep\n"; }

namespace qx {
namespace {

constexpr std::time_t kAfternoon = 1795268100;  // 2026-11-21 13:35:00 UTC

TEST(DateTextPosix, FollowsTheEnvironmentsLocaleAndZone) {
  const Environment zone("TZ", "UTC");
  {
    const Environment locale("LC_ALL", "C");
    EXPECT_EQ(LongDateText(kAfternoon), "Saturday, November 21, 2026");
    EXPECT_EQ(ShortTimeText(kAfternoon), "13:35");
  }
  const Environment locale("LC_ALL", "no such locale");
  EXPECT_EQ(LongDateText(kAfternoon), "Saturday, November 21, 2026");
  const Environment east("TZ", "XYZ-11");
  EXPECT_EQ(LongDateText(kAfternoon), "Sunday, November 22, 2026");
  EXPECT_EQ(ShortTimeText(kAfternoon), "00:35");
}

TEST(DateTextPosix, PutsThePartsInTheLocalesOrder) {
  const Environment zone("TZ", "UTC");
  struct Case {
    const char* locale;
    const char* date;
    const char* time;
  };
  for (const Case& one : {Case{"en_US", "Saturday, November 21, 2026", "1:35 PM"},
                          Case{"en_GB", "Saturday, 21 November 2026", "13:35"},
                          Case{"de_DE", "Samstag, 21 November 2026", "13:35"}}) {
    const MadeLocale locale(one.locale, "UTF-8");
    if (!locale.IsMade()) GTEST_SKIP() << "localedef cannot make the locale " << one.locale << " here";
    EXPECT_EQ(LongDateText(kAfternoon), one.date);
    EXPECT_EQ(ShortTimeText(kAfternoon), one.time);
  }
}

TEST(DateTextPosix, IsUtf8WhateverTheLocalesEncoding) {
  const Environment zone("TZ", "UTC");
  const MadeLocale locale("de_DE", "ISO-8859-1");
  if (!locale.IsMade()) GTEST_SKIP() << "localedef cannot make a locale in Latin-1 here";
  EXPECT_EQ(LongDateText(1772539200), "Dienstag, 3 M\xC3\xA4rz 2026");  // 2026-03-03 12:00:00 UTC
}

}  // namespace
}  // namespace qx
