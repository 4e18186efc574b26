// Prints how many words stand on its command line.
#include <Windows.h>
#include <stdio.h>

#include "Words.h"

int main() {
  printf("%u words\n", (unsigned)CountWords(GetCommandLineA()));
  return 0;
}
