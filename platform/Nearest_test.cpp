#include "platform/Nearest.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(Nearest, CountsSwappedNeighboursAsOneEdit) {
  EXPECT_EQ(NearestName("urn", {"sun", "run"}), "run");
  EXPECT_EQ(NearestName("SHOW", {"set", "show"}), "show");
  EXPECT_EQ(NearestName("anything", std::vector<std::string>()), "");
}

TEST(Nearest, IsOneOrTwoSlipsAway) {
  EXPECT_EQ(NearestName("valdiat", {"validate", "version"}), "validate");
  EXPECT_EQ(NearestName("Relaese|Win32", {"Debug|Win32", "Release|Win32"}), "Release|Win32");
  EXPECT_EQ(NearestName("brian", {"Build VS.Net Solution", "Run MSTest"}), "");
  EXPECT_EQ(NearestName("sxt", {"set", "add"}), "set");
  EXPECT_EQ(NearestName("axx", {"add"}), "");
  EXPECT_EQ(NearestName("1", {"0"}), "");
  EXPECT_EQ(NearestName("", {"0", "set"}), "");
}

TEST(Nearest, IsTheOnlyNameThatBeginsSo) {
  EXPECT_EQ(NearestName("build", {"Build VS.Net Solution", "Run MSTest"}), "Build VS.Net Solution");
  EXPECT_EQ(NearestName("ver", {"version", "validate"}), "version");
  EXPECT_EQ(NearestName("Debug", {"Debug|Win32", "Debug|x64"}), "");
  EXPECT_EQ(NearestName("v", {"version"}), "");
}

TEST(Nearest, IsNoneOfSeveralThatAreTwoSlipsAway) {
  EXPECT_EQ(NearestName("vs2010", {"vs2002", "vs2003", "vs2005"}), "");
  EXPECT_EQ(NearestName("vs202", {"vs2002", "vs2003", "vs2005"}), "vs2002");
}

TEST(NameAdvice, ShowsAShortListWhole) {
  EXPECT_EQ(NameAdvice("vs2010", std::vector<std::string>{"vs2002", "vs2003", "vs2005"}),
            "; supported: vs2002, vs2003, vs2005");
  EXPECT_EQ(NameAdvice("gren", std::vector<std::string>{"red", "green"}),
            "; supported: red, green (nearest: green)");
  EXPECT_EQ(NameAdvice("x", std::vector<std::string>()), "");
}

TEST(NameAdvice, NamesOneOfALongListOnly) {
  std::vector<std::string> names;
  for (char c = 'a'; c <= 'i'; ++c) names.push_back("name " + std::string(3, c));
  EXPECT_EQ(NameAdvice("name aab", names), " (nearest: name aaa)");
  EXPECT_EQ(NameAdvice("other", names), "");
}

}  // namespace
}  // namespace qx
