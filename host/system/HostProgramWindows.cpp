#include <windows.h>

#include <cstdlib>

#include "host/system/HostProgram.h"
#include "platform/CommandLine.h"
#include "platform/Environment.h"
#include "platform/WindowsText.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::size_t kLongestPath = 32768;

}  // namespace

std::string ConfigFolder() {
  const std::string data = ReadEnvironment("APPDATA").value_or("");
  if (data.empty())
    throw Exception("No configuration folder: set APPDATA, or name the options file with --options");
  return WithTrailingDelimiter(data) + "qxhost\\";
}

std::string StateFolder() {
  const std::string data = ReadEnvironment("LOCALAPPDATA").value_or("");
  if (data.empty()) throw Exception("No folder for what the host keeps: set LOCALAPPDATA");
  return WithTrailingDelimiter(data) + "qxhost\\";
}

std::string ProgramFolder() {
  std::wstring path(kLongestPath, L'\0');
  const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (size == 0 || size == path.size()) throw Exception("The folder of this program cannot be found");
  return FolderPart(system::FromWide(path.substr(0, size)));
}

std::string FindOnPath(const std::string& program) {
  const std::wstring folders = system::ToWide(ReadEnvironment("PATH").value_or(""));
  std::wstring found(kLongestPath, L'\0');
  const DWORD size = SearchPathW(folders.c_str(), system::ToWide(program).c_str(), L".exe",
                                 static_cast<DWORD>(found.size()), found.data(), nullptr);
  return size == 0 || size >= found.size() ? std::string() : system::FromWide(found.substr(0, size));
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
  std::wstring wide = system::ToWide(line);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  const BOOL done = CreateProcessW(nullptr, wide.data(), nullptr, nullptr, FALSE, CREATE_NEW_PROCESS_GROUP,
                                   nullptr, nullptr, &start, &started);
  if (done == 0) throw Exception("Cannot start " + file + ": " + system::LastError());
  const system::Handle thread(started.hThread), process(started.hProcess);
}

void SetCurrentFolder(const std::string& folder) {
  if (SetCurrentDirectoryW(system::ToWide(folder).c_str()) != 0) return;
  throw Exception("Cannot enter " + folder + ": " + system::LastError());
}

void KeepFreedMemory() {}  // the heap of the system does so

// ExitProcess would wait for libraries, which may be what hangs.
void LeaveAtOnce(int exitCode) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
  std::abort();  // not reached
}

void IgnoreBrokenStreams() {}  // they only ever fail the write here

}  // namespace qx
