#include "engine/front/OrderedOutput.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(OrderedOutput, PrintsTheFirstAsItComesAndTheOthersInTheirOrder) {
  ConsoleText target;
  OrderedOutput output(target, 4);
  output.Of(2).Line("third");
  output.Of(1).Line("second: error C1: text");
  output.Of(0).Line("first");
  EXPECT_EQ(target.Text(), "first\n");
  output.End(2);
  output.Of(1).Line("second again");
  EXPECT_EQ(target.Text(), "first\n");
  output.End(0);
  EXPECT_EQ(target.Text(), "first\nsecond: error C1: text\nsecond again\n");
  output.Of(3).Line("fourth");
  output.End(1);
  output.Of(3).Line("fourth again");
  EXPECT_EQ(target.Text(), "first\nsecond: error C1: text\nsecond again\nthird\nfourth\nfourth again\n");
  output.End(3);
  EXPECT_EQ(output.Of(1).Counted().errors, 1);
  EXPECT_EQ(output.Of(2).Counted().errors, 0);
  EXPECT_EQ(target.Counted().errors, 1);
}

}  // namespace
}  // namespace qx
