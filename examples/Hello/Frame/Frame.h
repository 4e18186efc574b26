// A rule as wide as a line of text.
#pragma once

#include <stddef.h>

// Prints a rule of that many columns and ends the line.
extern "C" void FrameRule(size_t columns);
