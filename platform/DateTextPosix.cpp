#include <langinfo.h>
#include <locale.h>
#include <time.h>

#include <array>
#include <memory>
#include <string_view>
#include <type_traits>

#include "platform/DateText.h"
#include "platform/Posix.h"

namespace qx {
namespace {

struct FreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

// The user's settings as the environment names them (LC_ALL, LC_TIME, LANG); "C" where it names none that exists.
Locale UsersLocale() {
  locale_t locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "C", nullptr);
  return Locale(locale);
}

// A text in the locale's own encoding, which is Latin-1 in many an old one; as it stands where the system
// cannot convert it.
std::string ToUtf8(std::string text, locale_t locale) {
  system::Converter converter("UTF-8", nl_langinfo_l(CODESET, locale));
  std::string_view rest = text;
  std::string out;
  return converter.IsOpen() && converter.Convert(rest, out) ? out : text;
}

std::string Format(const char* format, std::time_t time, locale_t locale) {
  struct tm parts {};
  localtime_r(&time, &parts);
  std::array<char, 256> text;
  const std::size_t size = strftime_l(text.data(), text.size(), format, &parts, locale);
  return ToUtf8(std::string(text.data(), size), locale);
}

// The system knows no long date; its short one tells in which order the parts stand.
const char* LongDateFormat(std::string_view shortDate) {
  const std::size_t day = shortDate.find_first_of("de");
  const std::size_t month = shortDate.find_first_of("mbB");
  const std::size_t year = shortDate.find_first_of("yY");
  if (shortDate.find("%D") != std::string_view::npos) return "%A, %B %-d, %Y";
  if (shortDate.find("%F") != std::string_view::npos || year < month) return "%Y %B %-d, %A";
  return month < day ? "%A, %B %-d, %Y" : "%A, %-d %B %Y";
}

}  // namespace

std::string LongDateText(std::time_t time) {
  const Locale locale = UsersLocale();
  return Format(LongDateFormat(nl_langinfo_l(D_FMT, locale.get())), time, locale.get());
}

std::string ShortTimeText(std::time_t time) {
  const Locale locale = UsersLocale();
  const std::string_view format = nl_langinfo_l(T_FMT, locale.get());
  const bool twelveHours = format.find("%r") != std::string_view::npos ||
                           format.find("%I") != std::string_view::npos ||
                           format.find("%l") != std::string_view::npos;
  return Format(twelveHours ? "%-I:%M %p" : "%H:%M", time, locale.get());
}

}  // namespace qx
