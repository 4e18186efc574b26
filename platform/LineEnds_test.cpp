#include "platform/LineEnds.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(LineEnds, OneLineThatChangedKeepsItsOwnEnd) {
  EXPECT_EQ(WithEndsOf("a\nb\nc\n", "a\r\nB\r\nc\r\n"), "a\nB\nc\n");
  EXPECT_EQ(WithEndsOf("a\r\nb\nc\r", "a\r\nB\r\nc\r\n"), "a\r\nB\nc\r");
}

TEST(LineEnds, ALastLineWithoutAnEndStaysWithout) {
  EXPECT_EQ(WithEndsOf("a\nb", "a\r\nB\r\n"), "a\nB");
  EXPECT_EQ(WithEndsOf("a\nb", "a\r\nb\r\nc\r\n"), "a\nb\nc\n");
}

TEST(LineEnds, NewLinesGetTheCommonestEnd) {
  EXPECT_EQ(WithEndsOf("a\nb\nc\r\n", "a\r\nb\r\nX\r\nY\r\nc\r\n"), "a\nb\nX\nY\nc\r\n");
  EXPECT_EQ(WithEndsOf("", "a\r\n"), "a\r\n");
}

TEST(LineEnds, ABlockThatGrewKeepsTheEndsAroundIt) {
  EXPECT_EQ(WithEndsOf("x\r\n1\n2\ny\n", "x\r\n1\r\nA\r\nB\r\n2\r\ny\r\n"), "x\r\n1\nA\nB\n2\ny\n");
}

}  // namespace
}  // namespace qx
