#include "host/process/ProcessTreePosix.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <optional>
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
  unsigned long long started = 0;  // clock ticks since the system's start
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
  const int fields =
      std::sscanf(stat.c_str() + nameEnd + 1,
                  " %c %d %*d %d %*d %*d %*u %*u %*u %*u %*u %*u %*u %*d %*d %*d %*d %*d %*d %llu",
                  &process.state, &process.parent, &process.session, &process.started);
  if (fields != 4) return std::nullopt;
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

// Children of members are members, to any depth.
void SpreadToChildren(std::vector<Process>& all) {
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
}

}  // namespace

std::string MakeTreeMark() {
  static std::atomic<unsigned> made = 0;  // no two marks of this process are the same
  const long long now = std::chrono::system_clock::now().time_since_epoch().count();
  char mark[80];
  std::snprintf(mark, sizeof mark, "[%d.%lld.%u]", static_cast<int>(getpid()), now, ++made);
  return mark;
}

std::vector<pid_t> LivingTree(pid_t root, const std::string& mark) {
  std::vector<Process> all = AllProcesses();
  const std::optional<Process> first = ReadProcess(root);
  const unsigned long long started = first ? first->started : 0;
  // What is older than the child is none of its descendants: most of a busy machine goes out here.
  std::erase_if(all, [&](const Process& process) { return process.started < started; });
  for (Process& process : all) process.member = process.pid == root || process.session == root;
  SpreadToChildren(all);
  for (Process& process : all) {
    if (process.member || process.state == 'Z') continue;
    process.member = ReadProcFile(process.pid, "environ").find(mark) != std::string::npos;
  }
  SpreadToChildren(all);

  std::vector<pid_t> living;
  for (const Process& process : all) {
    if (process.member && process.state != 'Z' && process.state != 'X') living.push_back(process.pid);
  }
  return living;
}

}  // namespace qx
