#include "tools/vsinspect/Json.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

using std::string_literals::operator""s;

TEST(JsonLine, HasItsMembersInTheirOrderAndAnEnd) {
  EXPECT_EQ(JsonLine({{"b", -1}, {"a", JsonTexts({"x", "y"})}, {"c", nullptr}, {"d", JsonTexts({})}}),
            "{\"b\":-1,\"a\":[\"x\",\"y\"],\"c\":null,\"d\":[]}\n");
}

TEST(JsonLine, EveryTextComesBack) {
  std::string all;
  for (int c = 0; c < 0x80; ++c) all += static_cast<char>(c);
  for (const std::string& text : {all, "ä€𝄞"s, "\\\"\r\n\t\0"s, ""s}) {
    EXPECT_EQ(Json::parse(JsonLine(JsonTexts({text}))).at(0), text);
  }
}

TEST(JsonLine, BytesThatAreNotUtf8AreReplaced) {
  const std::string text =
      "a\xFF"
      "b\xE4";
  EXPECT_EQ(Json::parse(JsonLine(JsonTexts({text}))).at(0), "a\uFFFDb\uFFFD");
}

}  // namespace
}  // namespace qx
