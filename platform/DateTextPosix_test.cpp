#include <gtest/gtest.h>
#include <locale.h>
#include <stdlib.h>
#include <time.h>

#include <filesystem>
#include <optional>
#include <string>

#include "platform/DateText.h"

namespace qx {
namespace {

// Sets an environment variable while it lives.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) {
    if (const char* old = getenv(name)) old_ = old;
    setenv(name, value, 1);
    tzset();
  }
  ~Environment() {
    old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_);
    tzset();
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

bool HasLocale(const char* name) {
  const locale_t locale = newlocale(LC_ALL_MASK, name, nullptr);
  if (locale != nullptr) freelocale(locale);
  return locale != nullptr;
}

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
  int tried = 0;
  for (const Case& one : {Case{"en_US.UTF-8", "Saturday, November 21, 2026", "1:35 PM"},
                          Case{"en_GB.UTF-8", "Saturday, 21 November 2026", "13:35"},
                          Case{"de_DE.UTF-8", "Samstag, 21 November 2026", "13:35"}}) {
    if (!HasLocale(one.locale)) continue;
    ++tried;
    const Environment locale("LC_ALL", one.locale);
    EXPECT_EQ(LongDateText(kAfternoon), one.date);
    EXPECT_EQ(ShortTimeText(kAfternoon), one.time);
  }
  if (tried == 0) GTEST_SKIP() << "none of the locales en_US, en_GB, de_DE is installed";
}

TEST(DateTextPosix, IsUtf8WhateverTheLocalesEncoding) {
  std::string folder = (std::filesystem::temp_directory_path() / "locale-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string make = "localedef -i de_DE -f ISO-8859-1 " + folder + "/old >/dev/null 2>&1";
  const bool isMade = system(make.c_str()) >= 0 && std::filesystem::exists(folder + "/old/LC_TIME");
  std::string date;
  if (isMade) {
    const Environment zone("TZ", "UTC");
    const Environment place("LOCPATH", folder.c_str());
    const Environment locale("LC_ALL", "old");
    date = LongDateText(1772539200);  // 2026-03-03 12:00:00 UTC
  }
  std::filesystem::remove_all(folder);
  if (!isMade) GTEST_SKIP() << "localedef cannot make a locale in Latin-1 here";
  EXPECT_EQ(date, "Dienstag, 3 M\xC3\xA4rz 2026");
}

}  // namespace
}  // namespace qx
