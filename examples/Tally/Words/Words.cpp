#include "words.h"

static bool IsDivider(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

size_t CountWords(const char* text) {
  size_t words = 0;
  bool inside = false;
  for (; *text != 0; ++text) {
    if (!IsDivider(*text) && !inside) ++words;
    inside = !IsDivider(*text);
  }
  return words;
}
