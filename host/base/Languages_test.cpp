#include <gtest/gtest.h>

#include <set>

#include "platform/Texts.h"
#include "plugin/Qxlanguages.h"

namespace qx {
namespace {

TEST(Languages, AreSortedByNameAndEachHasItsOwnIdentifier) {
  const TQXLanguages& languages = QXLanguages();
  std::set<std::int32_t> seen;
  for (int i = 0; i < languages.GetCount(); ++i) {
    EXPECT_TRUE(seen.insert(languages.GetLCID(i)).second) << languages.GetName(i);
    EXPECT_EQ(languages.IndexOf(languages.GetLCID(i)), i);
    EXPECT_TRUE(IsValidUtf8(languages.GetName(i)));
    if (i == 0) continue;
    EXPECT_LT(LowerCase(languages.GetName(i - 1)), LowerCase(languages.GetName(i)));
  }
}

TEST(Languages, NamesCarryTheRegion) {
  const TQXLanguages& languages = QXLanguages();
  EXPECT_EQ(languages.GetName(languages.IndexOf(0x0C07)), "German (Austria)");
  EXPECT_EQ(languages.GetName(languages.IndexOf(0x0409)), "English (United States)");
  EXPECT_EQ(languages.GetName(languages.IndexOf(0x0804)), "Chinese (Simplified, China)");
  EXPECT_EQ(languages.GetName(languages.IndexOf(0x0416)), "Portuguese (Brazil)");
}

TEST(Languages, NameLocalesOnly) {
  EXPECT_GT(QXLanguages().GetCount(), 200);
  EXPECT_EQ(QXLanguages().IndexOf(0), -1);
  EXPECT_EQ(QXLanguages().IndexOf(0x0007), -1);  // German, of no country
  EXPECT_EQ(QXLanguages().IndexOf(0x1000), -1);
}

TEST(Languages, AnIndexOutOfRangeIsRaised) {
  const int count = QXLanguages().GetCount();
  EXPECT_THROW(QXLanguages().GetName(count), Exception);
  EXPECT_THROW(QXLanguages().GetLCID(-2), Exception);
  EXPECT_THROW(QXLanguages().GetLCID(count), Exception);
}

TEST(Languages, NoLanguageHasTheIdentifierZero) {
  EXPECT_EQ(QXLanguages().GetLCID(QXLanguages().IndexOf(0x0007)), 0);
}

}  // namespace
}  // namespace qx
