#include "Frame.h"

#include <cstdio>

extern "C" void FrameRule(size_t columns) {
  for (size_t column = 0; column < columns; ++column) std::putchar('=');
  std::putchar('\n');
}
