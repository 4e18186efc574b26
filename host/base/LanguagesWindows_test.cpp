#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Texts.h"
#include "plugin/Qxlanguages.h"

namespace qx {
namespace {

std::vector<std::int32_t> found;

BOOL CALLBACK TakeLocale(wchar_t* text) {
  found.push_back(static_cast<std::int32_t>(std::wcstoul(text, nullptr, 16)));
  return TRUE;
}

std::string Ask(std::int32_t lcid, LCTYPE what) {
  wchar_t text[128] = {};
  GetLocaleInfoW(static_cast<LCID>(lcid), what, text, 128);
  return ToUtf8(reinterpret_cast<const char16_t*>(text));
}

// Windows itself is the other source of the table: it knows every locale that it lists.
TEST(LanguagesWindows, HaveEveryLocaleThatTheSystemLists) {
  found.clear();
  ASSERT_TRUE(EnumSystemLocalesW(TakeLocale, LCID_SUPPORTED));
  ASSERT_GT(found.size(), 100U);
  for (const std::int32_t lcid : found) {
    if (lcid == LOCALE_CUSTOM_UNSPECIFIED) continue;  // shared by all that have no identifier of their own
    EXPECT_GE(QXLanguages().IndexOf(lcid), 0)
        << std::hex << lcid << " " << Ask(lcid, LOCALE_SENGLISHLANGUAGENAME) << " "
        << Ask(lcid, LOCALE_SENGLISHCOUNTRYNAME);
  }
}

// Where the system has another word for a language ("Xhosa" for "isiXhosa") or for a region ("Macao SAR
// China"), the other part still shows that the identifier stands at the right name.
TEST(LanguagesWindows, NamesAgreeInLanguageOrRegion) {
  const TQXLanguages& languages = QXLanguages();
  int known = 0;
  for (int i = 0; i < languages.GetCount(); ++i) {
    const std::int32_t lcid = languages.GetLCID(i);
    const std::string language = Ask(lcid, LOCALE_SENGLISHLANGUAGENAME);
    if (language.empty()) continue;
    ++known;
    const std::string region = Ask(lcid, LOCALE_SENGLISHCOUNTRYNAME);
    const std::string name = languages.GetName(i);
    const bool sameLanguage = name.starts_with(language.substr(0, language.find(" (")) + " (");
    const bool sameRegion = name.ends_with(region + ")");
    EXPECT_TRUE(sameLanguage || sameRegion)
        << std::hex << lcid << " " << name << ": " << language << ", " << region;
  }
  EXPECT_GT(known, 200);
}

}  // namespace
}  // namespace qx
