#include "platform/Texts.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

using Items = std::vector<std::string>;

TEST(CommaText, SeparatesByCommasAndByBlanksOutsideQuotes) {
  EXPECT_EQ(SplitCommaText("a, b c\t\"d, e\""), (Items{"a", "b", "c", "d, e"}));
}

}  // namespace
}  // namespace qx
