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
    const bool own = (lcid & 0x3FF) != 0 && (lcid & 0xFC00) != 0x1000 && lcid <= 0xFFFF;
    if (!own && lcid == 0x1000) continue;
    EXPECT_GE(QXLanguages().IndexOf(lcid), 0)
        << std::hex << lcid << " " << Ask(lcid, LOCALE_SENGLISHLANGUAGENAME) << " " << Ask(lcid, LOCALE_SENGLISHCOUNTRYNAME);
  }
}

TEST(LanguagesWindows, NamesAgree) {
  const TQXLanguages& languages = QXLanguages();
  for (int i = 0; i < languages.GetCount(); ++i) {
    const std::int32_t lcid = languages.GetLCID(i);
    const std::string name = Ask(lcid, LOCALE_SENGLISHLANGUAGENAME) + " (" + Ask(lcid, LOCALE_SENGLISHCOUNTRYNAME) + ")";
    EXPECT_EQ(languages.GetName(i), name) << std::hex << lcid;
  }
}

}  // namespace
}  // namespace qx
