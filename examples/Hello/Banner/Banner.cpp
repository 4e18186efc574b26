// Prints a line that stands in the resource script, between two rules as long as the line.
#include <windows.h>

#include <cstdio>
#include <cwchar>

#include "resource.h"

int main()
{
    wchar_t title[80] = L"";
    if (LoadStringW(GetModuleHandleW(NULL), IDS_TITLE, title, 80) == 0)
        return 1;
    for (int line = 0; line < 3; ++line)
    {
        if (line == 1)
        {
            std::printf("%ls\n", title);
            continue;
        }
        for (std::size_t column = 0; column < std::wcslen(title); ++column)
            std::putchar('=');
        std::putchar('\n');
    }
    return 0;
}
