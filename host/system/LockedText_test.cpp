#include "host/system/LockedText.h"

#include <gtest/gtest.h>

#include <utility>

namespace qx {
namespace {

TEST(LockedText, HoldsItsTextThroughCopiesAndMoves) {
  LockedText text("pa\0ss");
  EXPECT_EQ(text.View(), "pa");
  text = std::string("pass\0word", 9);
  EXPECT_EQ(text.View(), std::string_view("pass\0word", 9));
  const LockedText copy = text;
  LockedText moved = std::move(text);
  EXPECT_EQ(copy.View(), moved.View());
  EXPECT_NE(copy.Text(), moved.Text());
  EXPECT_EQ(moved.Text()[9], '\0');
  moved = LockedText();
  EXPECT_TRUE(moved.IsEmpty());
  EXPECT_STREQ(moved.Text(), "");
}

TEST(LockedText, WipedTextsHoldNothingAnyMoreNotEvenBehindTheirEnd) {
  std::string text(40, 'x');
  text.resize(3);
  Wipe(text);
  EXPECT_EQ(text, "");
  const std::string_view memory(text.data(), text.capacity());
  EXPECT_EQ(memory.find('x'), std::string_view::npos);
}

}  // namespace
}  // namespace qx
