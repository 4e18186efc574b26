#include "platform/DateText.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

constexpr std::time_t kNoon = 1795262400;  // 2026-11-21 12:00:00 UTC: the same day nearly everywhere

TEST(DateTextTest, TheLongDateHasTheWholeYear) {
  EXPECT_NE(LongDateText(kNoon).find("2026"), std::string::npos) << LongDateText(kNoon);
}

TEST(DateTextTest, TheShortTimeHasNoSeconds) {
  EXPECT_EQ(ShortTimeText(kNoon), ShortTimeText(kNoon + 59));
  EXPECT_NE(ShortTimeText(kNoon), ShortTimeText(kNoon + 60));
}

}  // namespace
}  // namespace qx
