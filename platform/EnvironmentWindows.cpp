// The environment of this process; Windows itself disregards the letter case of its names.
#include <windows.h>

#include "platform/Environment.h"
#include "platform/Texts.h"

namespace qx {

std::optional<std::string> ReadEnvironment(const std::string& name) {
  const std::u16string wide = ToUtf16(name);
  const auto* wideName = reinterpret_cast<const wchar_t*>(wide.c_str());
  std::u16string value(256, u'\0');
  for (;;) {
    SetLastError(ERROR_SUCCESS);
    const DWORD size = GetEnvironmentVariableW(wideName, reinterpret_cast<wchar_t*>(value.data()),
                                               static_cast<DWORD>(value.size()));
    if (size == 0 && GetLastError() != ERROR_SUCCESS) return std::nullopt;
    const bool fits = size < value.size();
    value.resize(size);
    if (fits) return ToUtf8(value);
  }
}

}  // namespace qx
