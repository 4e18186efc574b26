#include <windows.h>

#include "host/runtime/HostProgram.h"
#include "host/runtime/Variables.h"
#include "platform/Paths.h"
#include "platform/Texts.h"

namespace qx {
namespace {

std::string FromWide(const wchar_t* text) { return ToUtf8(reinterpret_cast<const char16_t*>(text)); }

}  // namespace

std::string ConfigFolder() {
  const std::string data = ReadEnvironment("APPDATA").value_or("");
  if (data.empty())
    throw Exception("No configuration folder: set APPDATA, or name the options file with --options");
  return WithTrailingDelimiter(data) + "qxhost\\";
}

std::string ProgramFolder() {
  std::wstring path(32768, L'\0');  // the longest path of the system
  const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (size == 0 || size == path.size()) throw Exception("The folder of this program cannot be found");
  return FolderPart(FromWide(path.c_str()));
}

void SetCurrentFolder(const std::string& folder) {
  const std::u16string wide = ToUtf16(folder);
  if (SetCurrentDirectoryW(reinterpret_cast<const wchar_t*>(wide.c_str())) != 0) return;
  throw Exception("Cannot enter " + folder + ": error " + std::to_string(GetLastError()));
}

void KeepFreedMemory() {}  // the heap of the system does so

void IgnoreBrokenStreams() {}  // they only ever fail the write here

}  // namespace qx
