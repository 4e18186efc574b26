#include <malloc.h>
#include <unistd.h>

#include <climits>
#include <csignal>

#include "host/system/HostProgram.h"
#include "platform/Environment.h"
#include "platform/Posix.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsProgram(const std::string& file) { return access(file.c_str(), X_OK) == 0 && FileExists(file); }

}  // namespace

std::string ConfigFolder() {
  // A relative folder in the variable is to be ignored, says the convention of these folders.
  const std::string config = ReadEnvironment("XDG_CONFIG_HOME").value_or("");
  if (config.starts_with('/')) return WithTrailingDelimiter(config) + "qxhost/";
  const std::string home = ReadEnvironment("HOME").value_or("");
  if (!home.empty()) return WithTrailingDelimiter(home) + ".config/qxhost/";
  throw Exception("No configuration folder: set HOME, or name the options file with --options");
}

std::string StateFolder() {
  const std::string state = ReadEnvironment("XDG_STATE_HOME").value_or("");
  if (state.starts_with('/')) return WithTrailingDelimiter(state) + "qxhost/";
  const std::string home = ReadEnvironment("HOME").value_or("");
  if (!home.empty()) return WithTrailingDelimiter(home) + ".local/state/qxhost/";
  throw Exception("No folder for what the host keeps: set HOME or XDG_STATE_HOME");
}

std::string ProgramFolder() {
  char path[PATH_MAX];
  const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
  if (size <= 0) throw Exception("The folder of this program cannot be found");
  return FolderPart(std::string_view(path, static_cast<std::size_t>(size)));
}

std::string FindOnPath(const std::string& program) {
  return system::FindProgramOn(system::SearchPath(), program);
}

std::string FindCompanion(const std::string& program) {
  std::string beside = ProgramFolder() + program;
  if (IsProgram(beside)) return beside;
  std::string found = FindOnPath(program);
  if (found.empty())
    throw Exception(program + " is not installed: there is no " + beside + ", and none on the PATH");
  return found;
}

void HandOver(const std::string& file, const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {file};
  words.insert(words.end(), arguments.begin(), arguments.end());
  system::BecomeProgram(std::move(words));
  throw Exception("Cannot start " + file + ": " + system::LastError());
}

void SetCurrentFolder(const std::string& folder) {
  if (chdir(folder.c_str()) != 0) throw Exception("Cannot enter " + folder + ": " + system::LastError());
}

void KeepFreedMemory() {
  constexpr int kMostKept = 32 << 20, kAtOnce = 1 << 20;
  mallopt(M_MMAP_THRESHOLD, kMostKept);
  mallopt(M_TRIM_THRESHOLD, kMostKept);
  // One heap for all threads: that of a thread grows page by page, with a call of the system each time.
  mallopt(M_ARENA_MAX, 1);
  mallopt(M_TOP_PAD, kAtOnce);
}

void LeaveAtOnce(int exitCode) { _exit(exitCode); }

void IgnoreBrokenStreams() {
  // A handler, unlike SIG_IGN, is not handed on to programs that are started.
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  sigaction(SIGPIPE, &action, nullptr);
}

}  // namespace qx
