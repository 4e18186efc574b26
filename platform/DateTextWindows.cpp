#include <windows.h>

#include "platform/DateText.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

SYSTEMTIME LocalTime(std::time_t time) {
  // Seconds since 1970 to units of 100 ns since 1601.
  const unsigned long long ticks = (static_cast<unsigned long long>(time) + 11644473600ULL) * 10000000ULL;
  FILETIME file;
  file.dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFFULL);
  file.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
  SYSTEMTIME universal{}, local{};
  FileTimeToSystemTime(&file, &universal);
  SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
  return local;
}

}  // namespace

std::string LongDateText(std::time_t time) {
  const SYSTEMTIME local = LocalTime(time);
  wchar_t text[256] = {};
  GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_LONGDATE, &local, nullptr, text, 256, nullptr);
  return system::FromWide(text);
}

std::string ShortTimeText(std::time_t time) {
  const SYSTEMTIME local = LocalTime(time);
  wchar_t text[256] = {};
  GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, text, 256);
  return system::FromWide(text);
}

}  // namespace qx
