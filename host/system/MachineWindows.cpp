// A private folder and the name of this computer.
#include <windows.h>

#include <atomic>

#include "host/system/TemporaryFolder.h"
#include "platform/Texts.h"
#include "platform/WindowsText.h"
#include "plugin/Qxutils.h"

namespace qx {

// Below the user's own profile, whose rights it inherits: others may not enter.
std::string MakePrivateFolder() {
  std::u16string shared(MAX_PATH + 1, u'\0');
  const DWORD size =
      GetTempPathW(static_cast<DWORD>(shared.size()), reinterpret_cast<wchar_t*>(shared.data()));
  if (size == 0 || size > shared.size()) throw Exception("The temporary folder cannot be found");
  shared.resize(size);
  static std::atomic<unsigned> count{0};  // no two names of this process are the same
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string folder = ToUtf8(shared) + "qxhost-" + std::to_string(GetCurrentProcessId()) + "-" +
                               std::to_string(GetTickCount64()) + "-" + std::to_string(++count);
    if (CreateDirectoryW(system::ToWide(folder).c_str(), nullptr) != 0) return folder;
    if (GetLastError() != ERROR_ALREADY_EXISTS) break;
  }
  throw Exception("Cannot make a temporary folder in " + ToUtf8(shared) + ": " + system::LastError());
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
