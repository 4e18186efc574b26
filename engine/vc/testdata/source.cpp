#include <a.h>
#include "b\\c.h"
#pragma comment(lib, "x.lib")
int x = 1i64;
