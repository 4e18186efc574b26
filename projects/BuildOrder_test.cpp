#include "projects/BuildOrder.h"

#include <gtest/gtest.h>

#include <numeric>

namespace qx {
namespace {

using Numbers = std::vector<std::size_t>;

TEST(BuildOrder, KeepsTheGivenOrderWhereNothingIsNeeded) {
  EXPECT_EQ(OrderByNeeds({{}, {}, {}}).order, (Numbers{0, 1, 2}));
  EXPECT_TRUE(OrderByNeeds({}).order.empty());
}

TEST(BuildOrder, PutsWhatIsNeededFirst) {
  const BuildOrder order = OrderByNeeds({{2, 1}, {2}, {}, {0}});
  EXPECT_EQ(order.order, (Numbers{2, 1, 0, 3}));
  EXPECT_TRUE(order.circles.empty());
}

TEST(BuildOrder, PassesOverItselfAndWhatIsNoProject) {
  const BuildOrder order = OrderByNeeds({{0, 7}, {1, 0}});
  EXPECT_EQ(order.order, (Numbers{0, 1}));
  EXPECT_TRUE(order.circles.empty());
}

TEST(BuildOrder, TellsCirclesAndStillOrdersEveryProjectOnce) {
  const BuildOrder order = OrderByNeeds({{1}, {2}, {0}, {2}});
  EXPECT_EQ(order.order, (Numbers{2, 1, 0, 3}));
  EXPECT_EQ(order.circles, (std::vector<Numbers>{{0, 1, 2}}));
}

TEST(BuildOrder, OrdersAChainOfAHundredThousand) {
  std::vector<Numbers> needs(100000);
  for (std::size_t i = 0; i + 1 < needs.size(); ++i) needs[i] = {i + 1};
  Numbers expected(needs.size());
  std::iota(expected.rbegin(), expected.rend(), 0U);
  EXPECT_EQ(OrderByNeeds(needs).order, expected);
}

}  // namespace
}  // namespace qx
