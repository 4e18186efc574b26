#include <gtest/gtest.h>

#include "plugin/Qxstrings.h"

namespace qx {
namespace {

std::string MessageOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const Exception& failure) {
    return failure.Message();
  }
  return "nothing was raised";
}

TEST(StringList, RaisesTheIndexErrorOnBothSides) {
  TStringList list({"a"});
  EXPECT_EQ(MessageOf([&] { list.Get(1); }), "List index out of bounds (1)");
  EXPECT_EQ(MessageOf([&] { list.Get(-1); }), "List index out of bounds (-1)");
  EXPECT_EQ(MessageOf([&] { list.Put(1, "x"); }), "List index out of bounds (1)");
  EXPECT_EQ(MessageOf([&] { list.Delete(1); }), "List index out of bounds (1)");
  EXPECT_EQ(MessageOf([&] { list.Insert(2, "x"); }), "List index out of bounds (2)");
}

TEST(StringList, InsertsAtTheEndToo) {
  TStringList list({"a"});
  list.Insert(1, "c");
  list.Insert(1, "b");
  EXPECT_EQ(list.Items(), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(list.Add("d"), 3);
}

TEST(StringList, FindsTextsWithoutRegardToCase) {
  const TStringList list({"Alpha", "beta", "BETA"});
  EXPECT_EQ(list.IndexOf("BeTa"), 1);
  EXPECT_EQ(list.IndexOf("gamma"), -1);
}

TEST(StringList, JoinsLinesWithLineEndsAfterTheLastToo) {
  EXPECT_EQ(TStringList({"a", ""}).Text(), "a\r\n\r\n");
  EXPECT_EQ(TStringList().Text(), "");
}

TEST(StringList, SplitsAtEveryKindOfLineEnd) {
  TStringList list;
  list.SetText("a\r\nb\rc\n\nd\n");
  EXPECT_EQ(list.Items(), (std::vector<std::string>{"a", "b", "c", "", "d"}));
}

TEST(StringList, CommaTextComesBack) {
  TStringList list;
  list.SetCommaText("a \"b c\",\"d\"\"e\"");
  EXPECT_EQ(list.Items(), (std::vector<std::string>{"a", "b c", "d\"e"}));
  TStringList again;
  again.SetCommaText(list.CommaText());
  EXPECT_EQ(again, list);
}

TEST(StringList, ValueIsThatOfTheFirstLineOfTheName) {
  const TStringList list({"no name", "Key=1=2", "KEY=3", " Key=4"});
  EXPECT_EQ(list.Value("key"), "1=2");
  EXPECT_EQ(list.IndexOfName("KEY"), 1);
  EXPECT_EQ(list.Value("no name"), "");
  EXPECT_EQ(list.IndexOfName("no name"), -1);
}

TEST(StringList, SettingAValueReplacesInPlaceAppendsOrDeletes) {
  TStringList list({"a=1", "b=2"});
  list.SetValue("A", "9");
  list.SetValue("c", "3");
  EXPECT_EQ(list.Items(), (std::vector<std::string>{"A=9", "b=2", "c=3"}));
  list.SetValue("B", "");
  list.SetValue("unknown", "");
  EXPECT_EQ(list.Items(), (std::vector<std::string>{"A=9", "c=3"}));
}

}  // namespace
}  // namespace qx
