#include "host/process/ProcessTreePosix.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/Posix.h"

namespace qx {
namespace {

struct Process {
  pid_t pid = 0;
  pid_t parent = 0;
  pid_t session = 0;
  char state = 0;
  bool member = false;
};

// A file of /proc, whole; empty when it is gone or not ours to read. (Its size is not known beforehand.)
std::string ReadProcFile(pid_t pid, const char* name) {
  char path[64];
  std::snprintf(path, sizeof path, "/proc/%d/%s", static_cast<int>(pid), name);
  const system::Descriptor file(open(path, O_RDONLY | O_CLOEXEC));
  std::string text;
  if (!file.IsOpen()) return text;
  char buffer[4096];
  for (ssize_t count = 0; (count = read(file.Number(), buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return text;
}

std::optional<Process> ReadProcess(pid_t pid) {
  const std::string stat = ReadProcFile(pid, "stat");
  const std::size_t nameEnd =
      stat.rfind(')');  // the program's name may hold anything, blanks and brackets too
  if (nameEnd == std::string::npos) return std::nullopt;
  Process process;
  process.pid = pid;
  const int fields = std::sscanf(stat.c_str() + nameEnd + 1, " %c %d %*d %d", &process.state, &process.parent,
                                 &process.session);
  if (fields != 3) return std::nullopt;
  return process;
}

std::vector<Process> AllProcesses() {
  std::vector<Process> all;
  DIR* const folder = opendir("/proc");
  if (folder == nullptr) return all;
  while (const dirent* entry = readdir(folder)) {
    const std::string_view name(entry->d_name);
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error != std::errc() || end != name.data() + name.size()) continue;
    if (const std::optional<Process> process = ReadProcess(pid)) all.push_back(*process);
  }
  closedir(folder);
  return all;
}

bool IsAlive(const Process& process) { return process.state != 'Z' && process.state != 'X'; }

// The members that live, once children of members are members, to any depth.
std::vector<pid_t> Spread(std::vector<Process>& all) {
  std::unordered_set<pid_t> members;
  for (const Process& process : all) {
    if (process.member) members.insert(process.pid);
  }
  for (bool grown = true; grown;) {
    grown = false;
    for (Process& process : all) {
      if (process.member || !members.contains(process.parent)) continue;
      process.member = grown = members.insert(process.pid).second;
    }
  }
  std::vector<pid_t> living;
  for (const Process& process : all) {
    if (process.member && IsAlive(process)) living.push_back(process.pid);
  }
  return living;
}

}  // namespace

std::vector<pid_t> Descendants(pid_t root) {
  if (root <= 0) return {};
  std::vector<Process> all = AllProcesses();
  for (Process& process : all) process.member = process.parent == root;
  return Spread(all);
}

std::vector<pid_t> Strays() {
  std::vector<Process> all = AllProcesses();
  const pid_t session = getsid(0);
  for (Process& process : all) process.member = process.parent == getpid() && process.session != session;
  return Spread(all);
}

}  // namespace qx
