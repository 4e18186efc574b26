#include "tools/vsinspect/Json.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace qx {
namespace {

using std::string_literals::operator""s;

TEST(JsonWriter, PutsCommasBetweenItemsOnly) {
  JsonWriter json;
  json.BeginObject().Key("a").Number(-1).Key("b").BeginList().Truth(true).Null().EndList();
  json.Key("c").BeginObject().EndObject().Key("d").Texts({}).Key("e").Texts({"x", "y"}).EndObject();
  EXPECT_EQ(json.Out(), R"({"a":-1,"b":[true,null],"c":{},"d":[],"e":["x","y"]})");
}

TEST(JsonWriter, EveryTextComesBack) {
  std::string all;
  for (int c = 0; c < 0x80; ++c) all += static_cast<char>(c);
  for (const std::string& text : {all, "ä€𝄞"s, "\\\"\r\n\t\0"s, ""s}) {
    JsonWriter json;
    json.BeginList().Text(text).EndList();
    EXPECT_EQ(nlohmann::json::parse(json.Out()).at(0), text);
  }
}

TEST(JsonWriter, BytesThatAreNotUtf8AreReplaced) {
  JsonWriter json;
  json.BeginList()
      .Text(
          "a\xFF"
          "b\xE4")
      .EndList();
  EXPECT_EQ(nlohmann::json::parse(json.Out()).at(0), "a\uFFFDb\uFFFD");
}

}  // namespace
}  // namespace qx
