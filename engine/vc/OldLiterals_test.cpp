#include "engine/vc/OldLiterals.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(OldLiterals, BecomeThoseOfC) {
  EXPECT_EQ(WithNewLiterals("x = 10i64 + 0xFFui64 + 1I64 + 7UI64;"), "x = 10LL + 0xFFULL + 1LL + 7ULL;");
  EXPECT_EQ(WithNewLiterals("a(1i8, 2ui16, 3i32)"), "a(1, 2U, 3)");
  EXPECT_EQ(WithNewLiterals("#define BIG 0x8000i64\r\nint y;\r\n"), "#define BIG 0x8000LL\r\nint y;\r\n");
  EXPECT_EQ(WithNewLiterals("1i64"), "1LL");
}

TEST(OldLiterals, OtherTextStays) {
  for (const char* text :
       {"\"10i64\" '\\'' \"a\\\"10i64\" x", "// 10i64\n", "/* 10i64\n10i64 */", "mi64 a1i64 _10i64x",
        "10i645 0xi64 i64", "\"open 10i64\nint", "'", "\"\\", "/* 1i64", ""}) {
    EXPECT_EQ(WithNewLiterals(text), text);
  }
}

TEST(OldLiterals, ALineMayHoldOne) {
  EXPECT_TRUE(MayHoldOldLiteral("x = 0xFFui64;"));
  EXPECT_TRUE(MayHoldOldLiteral("x = 1I64;"));
  EXPECT_FALSE(MayHoldOldLiteral("printf(\"%I64d\", mi64);"));
  EXPECT_FALSE(MayHoldOldLiteral("i64 ui64"));
}

}  // namespace
}  // namespace qx
