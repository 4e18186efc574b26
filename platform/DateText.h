// Dates and times as the system's regional settings write them.
#pragma once

#include <ctime>
#include <string>

namespace qx {

// The date in the long form, "Saturday, November 21, 2026", in local time. UTF-8.
std::string LongDateText(std::time_t time);
// The time in the short form, without seconds, "1:34 PM" or "13:34", in local time. UTF-8.
std::string ShortTimeText(std::time_t time);

}  // namespace qx
