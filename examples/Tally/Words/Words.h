// Counts the words of a text.
#pragma once

#include <stddef.h>

// Words are divided by blanks, tabs and line ends.
size_t CountWords(const char* text);
