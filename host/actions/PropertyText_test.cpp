#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include "host/actions/PropertyText.h"

namespace qx {

enum class Fruit { apple, pear };
template <>
inline constexpr std::array<std::string_view, 2> ValueNames<Fruit>{"apple", "pear"};

namespace {

class Basket : public TPersistent {
 public:
  std::string GetLabel() const { return label_; }
  void SetLabel(const std::string& value) { label_ = value; }
  std::int32_t GetCount() const { return count_; }
  void SetCount(std::int32_t value) { count_ = value; }
  bool GetRipe() const { return ripe_; }
  void SetRipe(bool value) { ripe_ = value; }
  Fruit GetFruit() const { return fruit_; }
  void SetFruit(Fruit value) { fruit_ = value; }
  const TStringList& GetNotes() const { return notes_; }
  void SetNotes(const TStringList& value) { notes_ = value; }
  std::string GetView() const { return "view"; }
  void SetView(const std::string&) { FAIL() << "what is not stored is not read"; }
  std::string GetSecret() const { return sealed_.substr(std::min<std::size_t>(sealed_.size(), 1)); }
  void SetSecret(const std::string& value) { sealed_ = "*" + value; }
  std::string GetSealed() const { return sealed_; }
  void SetSealed(const std::string& value) { sealed_ = value; }

 private:
  std::string label_;
  std::int32_t count_ = 0;
  bool ripe_ = false;
  Fruit fruit_ = Fruit::apple;
  TStringList notes_;
  std::string sealed_;
};

constexpr std::array kProperties{
    Property<&Basket::GetLabel, &Basket::SetLabel>("Label"),
    Property<&Basket::GetCount, &Basket::SetCount>("Count"),
    Property<&Basket::GetRipe, &Basket::SetRipe>("Ripe"),
    Property<&Basket::GetFruit, &Basket::SetFruit>("Fruit"),
    Property<&Basket::GetNotes, &Basket::SetNotes>("Notes"),
    Property<&Basket::GetView, &Basket::SetView>("View", PropertyStorage::NotStored),
    Property<&Basket::GetSecret, &Basket::SetSecret>("Secret", PropertyStorage::Secret),
    Property<&Basket::GetSealed, &Basket::SetSealed>("_Secret"),
};

const PublishedProperty& Named(std::string_view name) { return NeedProperty(kProperties, name); }

std::string RoundTrip(std::string_view name, std::string_view text) {
  return PropertyToText(Named(name), PropertyFromText(Named(name), text));
}

std::string RefusalOf(std::string_view name, std::string_view text) {
  try {
    PropertyFromText(Named(name), text);
  } catch (const Exception& failure) {
    return failure.Message();
  }
  return "nothing was raised";
}

TEST(PropertyText, TextsStayAsTheyAre) { EXPECT_EQ(RoundTrip("Label", " a\r\n<&>;\xFF"), " a\r\n<&>;\xFF"); }

TEST(PropertyText, BooleansAreTrueAndFalseInAnyCase) {
  EXPECT_EQ(RoundTrip("Ripe", "tRUE"), "True");
  EXPECT_EQ(RoundTrip("Ripe", "False"), "False");
  EXPECT_EQ(RefusalOf("Ripe", "Flase"),
            "Ripe: \"Flase\" is no value of it; supported: False, True (nearest: False)");
  EXPECT_EQ(RefusalOf("Ripe", "1"), "Ripe: \"1\" is no value of it; supported: False, True");
}

TEST(PropertyText, IntegersAreDecimal) {
  EXPECT_EQ(RoundTrip("Count", "-12"), "-12");
  EXPECT_EQ(RoundTrip("Count", "-2147483648"), "-2147483648");
  EXPECT_EQ(RefusalOf("Count", "0x10"), "Count: \"0x10\" is no decimal number");
  EXPECT_EQ(RefusalOf("Count", ""), "Count: \"\" is no decimal number");
  EXPECT_EQ(RefusalOf("Count", "2147483648"),
            "Count: \"2147483648\" is beyond -2147483648 to 2147483647 (nearest: 2147483647)");
  EXPECT_EQ(RefusalOf("Count", "-9999999999"),
            "Count: \"-9999999999\" is beyond -2147483648 to 2147483647 (nearest: -2147483648)");
}

TEST(PropertyText, EnumerationsAreWrittenByName) {
  EXPECT_EQ(RoundTrip("Fruit", "PEAR"), "pear");
  EXPECT_EQ(RefusalOf("Fruit", "peer"),
            "Fruit: \"peer\" is no value of it; supported: apple, pear (nearest: pear)");
  EXPECT_EQ(RefusalOf("Fruit", "1"), "Fruit: \"1\" is no value of it; supported: apple, pear");
  EXPECT_EQ(PropertyToText(Named("Fruit"), EnumerationValue{7}), "7");
}

TEST(PropertyText, ListItemsAreSeparatedBySemicolons) {
  EXPECT_EQ(std::get<TStringList>(PropertyFromText(Named("Notes"), "{a};;b c;")).Items(),
            (std::vector<std::string>{"{a}", "", "b c"}));
  EXPECT_EQ(RoundTrip("Notes", "a;b"), "a;b");
  EXPECT_EQ(RoundTrip("Notes", ""), "");
}

TEST(PropertyText, FindsPropertiesInAnyCaseAndNamesTheNearest) {
  EXPECT_EQ(Named("fruit").name, "Fruit");
  EXPECT_EQ(FindProperty(kProperties, "Fruits"), nullptr);
  try {
    Named("Friut");
    FAIL();
  } catch (const Exception& failure) {
    EXPECT_EQ(failure.Message(),
              "There is no property \"Friut\"; supported: Label, Count, Ripe, Fruit, Notes, View, Secret, "
              "_Secret (nearest: Fruit)");
  }
}

// A build project in memory.
class Store : public IQXStateReader, public IQXStateWriter {
 public:
  virtual ~Store() = default;
  std::map<std::string, std::string, std::less<>> texts;
  std::map<std::string, TStringList, std::less<>> lists;
  std::vector<std::string> order;

  bool ReadText(std::string_view name, std::string& value) override {
    const auto found = texts.find(name);
    if (found != texts.end()) value = found->second;
    return found != texts.end();
  }
  bool ReadList(std::string_view name, TStringList& value) override {
    const auto found = lists.find(name);
    if (found != lists.end()) value = found->second;
    return found != lists.end();
  }
  void WriteText(std::string_view name, const std::string& value) override {
    texts.emplace(name, value);
    order.emplace_back(name);
  }
  void WriteList(std::string_view name, const TStringList& value) override {
    lists.emplace(name, value);
    order.emplace_back(name);
  }
};

TEST(PropertyText, WritesStoredPropertiesInDeclarationOrderAndNoSecret) {
  Basket basket;
  basket.SetSecret("hush");
  Store store;
  WriteProperties(basket, kProperties, store);
  EXPECT_EQ(store.order, (std::vector<std::string>{"Label", "Count", "Ripe", "Fruit", "Notes", "_Secret"}));
}

TEST(PropertyText, WhatWasWrittenIsReadBack) {
  Basket basket;
  basket.SetLabel("a\r\nb");
  basket.SetCount(-3);
  basket.SetRipe(true);
  basket.SetFruit(static_cast<Fruit>(9));
  basket.SetNotes(TStringList({"x;y", ""}));
  Store store;
  WriteProperties(basket, kProperties, store);
  Basket again;
  ReadProperties(again, kProperties, store);
  EXPECT_EQ(again.GetLabel(), "a\r\nb");
  EXPECT_EQ(again.GetCount(), -3);
  EXPECT_TRUE(again.GetRipe());
  EXPECT_EQ(again.GetFruit(), static_cast<Fruit>(9));
  EXPECT_EQ(again.GetNotes(), basket.GetNotes());
}

TEST(PropertyText, WhatTheReaderLacksKeepsItsValueAndViewsAreNotRead) {
  Basket basket;
  basket.SetCount(5);
  Store store;
  store.texts["View"] = "changed";
  store.texts["Secret"] = "hush";
  ReadProperties(basket, kProperties, store);
  EXPECT_EQ(basket.GetCount(), 5);
  EXPECT_EQ(basket.GetSecret(), "hush");
}

TEST(PropertyText, AClearTextIsNewerThanTheEncryptedFormBesideItUnlessItIsEmpty) {
  Basket basket;
  Store store;
  store.texts["Secret"] = "new";
  store.texts["_Secret"] = "*old";
  ReadProperties(basket, kProperties, store);
  EXPECT_EQ(basket.GetSecret(), "new");
  store.texts["Secret"] = "";
  ReadProperties(basket, kProperties, store);
  EXPECT_EQ(basket.GetSecret(), "old");
}

TEST(PropertyText, ABadValueInAFileNamesTheProperty) {
  Basket basket;
  Store store;
  store.texts["Ripe"] = "maybe";
  EXPECT_THROW(ReadProperties(basket, kProperties, store), Exception);
}

}  // namespace
}  // namespace qx
