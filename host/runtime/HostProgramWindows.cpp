#include <windows.h>

#include "host/runtime/CommandLine.h"
#include "host/runtime/HostProgram.h"
#include "host/runtime/Variables.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/Texts.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

constexpr std::size_t kLongestPath = 32768;

std::string FromWide(const wchar_t* text) { return ToUtf8(reinterpret_cast<const char16_t*>(text)); }

}  // namespace

std::string ConfigFolder() {
  const std::string data = ReadEnvironment("APPDATA").value_or("");
  if (data.empty())
    throw Exception("No configuration folder: set APPDATA, or name the options file with --options");
  return WithTrailingDelimiter(data) + "qxhost\\";
}

std::string ProgramFolder() {
  std::wstring path(kLongestPath, L'\0');
  const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (size == 0 || size == path.size()) throw Exception("The folder of this program cannot be found");
  return FolderPart(FromWide(path.c_str()));
}

std::string FindOnPath(const std::string& program) {
  const std::u16string folders = ToUtf16(ReadEnvironment("PATH").value_or(""));
  const std::u16string name = ToUtf16(program);
  std::wstring found(kLongestPath, L'\0');
  const DWORD size = SearchPathW(reinterpret_cast<const wchar_t*>(folders.c_str()),
                                 reinterpret_cast<const wchar_t*>(name.c_str()), L".exe",
                                 static_cast<DWORD>(found.size()), found.data(), nullptr);
  return size == 0 || size >= found.size() ? std::string() : FromWide(found.c_str());
}

std::string FindCompanion(const std::string& program) {
  std::string beside = ProgramFolder() + program + ".exe";
  if (FileExists(beside)) return beside;
  std::string found = FindOnPath(program);
  if (found.empty())
    throw Exception(program + " is not installed: there is no " + beside + ", and none on the PATH");
  return found;
}

void HandOver(const std::string& file, const std::vector<std::string>& arguments) {
  std::string line = "\"" + file + "\"";
  for (const std::string& argument : arguments) line += " " + QuoteArgument(argument);
  std::u16string wide = ToUtf16(line);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  const BOOL done = CreateProcessW(nullptr, reinterpret_cast<wchar_t*>(wide.data()), nullptr, nullptr, FALSE,
                                   CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &start, &started);
  if (done == 0) throw Exception("Cannot start " + file + ": " + system::ErrorText(GetLastError()));
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
}

void SetCurrentFolder(const std::string& folder) {
  const std::u16string wide = ToUtf16(folder);
  if (SetCurrentDirectoryW(reinterpret_cast<const wchar_t*>(wide.c_str())) != 0) return;
  throw Exception("Cannot enter " + folder + ": error " + std::to_string(GetLastError()));
}

void KeepFreedMemory() {}  // the heap of the system does so

void IgnoreBrokenStreams() {}  // they only ever fail the write here

}  // namespace qx
