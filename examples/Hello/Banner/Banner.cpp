// Prints a line that stands in the resource script, between two rules as long as the line.
#include <windows.h>

#include <cstdio>
#include <cwchar>

#include "..\Frame\frame.h"
#include "resource.h"

int main() {
  wchar_t title[80] = L"";
  if (LoadStringW(GetModuleHandleW(NULL), IDS_TITLE, title, 80) == 0) return 1;
  FrameRule(std::wcslen(title));
  std::printf("%ls\n", title);
  std::fflush(stdout);
  FrameRule(std::wcslen(title));
  return 0;
}
