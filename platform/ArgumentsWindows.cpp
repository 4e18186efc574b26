#include <windows.h>

#include <shellapi.h>

#include "platform/Arguments.h"
#include "platform/WindowsText.h"

namespace qx {

// The words that main was given have been through the system's code page, which may not hold them.
std::vector<std::string> CommandLineWords(int, char**) {
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> result;
  for (int i = 1; i < count; ++i) result.push_back(system::FromWide(words[i]));
  LocalFree(words);
  return result;
}

}  // namespace qx
