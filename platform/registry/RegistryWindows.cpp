#include <windows.h>

#include "platform/WindowsText.h"
#include "platform/registry/Registry.h"

namespace qx {

std::optional<std::string> ReadMachineText(const std::string& key, const std::string& name) {
  HKEY opened = nullptr;
  // The products that write there are 32-bit programs: on 64-bit Windows their values stand in that view.
  constexpr REGSAM kAccess = KEY_READ | KEY_WOW64_32KEY;
  const std::wstring path = system::ToWide(key.starts_with('\\') ? key.substr(1) : key);
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, kAccess, &opened) != ERROR_SUCCESS)
    return std::nullopt;

  const std::wstring valueName = system::ToWide(name);
  std::wstring text(260, L'\0');
  DWORD kind = 0;
  LSTATUS status = ERROR_MORE_DATA;
  while (status == ERROR_MORE_DATA) {
    DWORD size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    status = RegQueryValueExW(opened, valueName.c_str(), nullptr, &kind, reinterpret_cast<BYTE*>(text.data()),
                              &size);
    text.resize((size + 1) / sizeof(wchar_t));
  }
  RegCloseKey(opened);
  if (status != ERROR_SUCCESS || (kind != REG_SZ && kind != REG_EXPAND_SZ)) return std::nullopt;
  return system::FromWide(text.substr(0, text.find(L'\0')));
}

void SetRegistryFile(const std::string&) {}

void SetRegistryText(const std::string&) {}

}  // namespace qx
