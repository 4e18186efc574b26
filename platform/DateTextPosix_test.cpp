#include <gtest/gtest.h>
#include <locale.h>
#include <stdlib.h>
#include <time.h>

#include <filesystem>
#include <optional>
#include <string>

#include "platform/DateText.h"

// The system's library never frees what it makes of LOCPATH.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep\n"; }

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
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() {
    old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_);
    tzset();
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

// A folder with one locale, "made", found through LOCPATH while it lives.
class MadeLocale {
 public:
  MadeLocale(const std::string& definition, const std::string& charset)
      : folder_((std::filesystem::temp_directory_path() / "locale-XXXXXX").string()) {
    if (mkdtemp(folder_.data()) == nullptr) return;
    const std::string make = "localedef -i " + definition + " -f " + charset + " " + folder_ + "/made";
    const bool isRun = system((make + " >/dev/null 2>&1").c_str()) >= 0;
    if (!isRun || !std::filesystem::exists(folder_ + "/made/LC_TIME")) return;
    folderEntry_.emplace("LOCPATH", folder_.c_str());
    nameEntry_.emplace("LC_ALL", "made");
  }
  MadeLocale(const MadeLocale&) = delete;
  MadeLocale& operator=(const MadeLocale&) = delete;
  ~MadeLocale() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  bool IsMade() const { return nameEntry_.has_value(); }

 private:
  std::string folder_;
  std::optional<Environment> folderEntry_;
  std::optional<Environment> nameEntry_;
};

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
