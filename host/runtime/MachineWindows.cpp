// The temporary folder and the name of this computer.
#include <windows.h>

#include "platform/Texts.h"
#include "plugin/Qxutils.h"

namespace qx {

// Below the user's own profile, and so private already.
std::string GetTemporaryPath() {
  std::u16string folder(MAX_PATH + 1, u'\0');
  const DWORD size = GetTempPathW(static_cast<DWORD>(folder.size()), reinterpret_cast<wchar_t*>(folder.data()));
  if (size == 0 || size > folder.size()) throw Exception("The temporary folder cannot be found");
  folder.resize(size);
  while (folder.size() > 3 && (folder.back() == u'\\' || folder.back() == u'/')) folder.pop_back();
  return ToUtf8(folder);
}

std::string MachineName() {
  std::u16string name(MAX_COMPUTERNAME_LENGTH + 1, u'\0');
  auto size = static_cast<DWORD>(name.size());
  if (GetComputerNameW(reinterpret_cast<wchar_t*>(name.data()), &size) == 0) {
    throw Exception("This computer's name cannot be read");
  }
  name.resize(size);
  return ToUtf8(name);
}

}  // namespace qx
