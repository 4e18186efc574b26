#include "platform/Nearest.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(Nearest, CountsSwappedNeighboursAsOneEdit) {
  EXPECT_EQ(NearestName("urn", {"sun", "run"}), "run");
  EXPECT_EQ(NearestName("SHOW", {"set", "show"}), "show");
  EXPECT_EQ(NearestName("anything", std::vector<std::string>()), "");
}

}  // namespace
}  // namespace qx
