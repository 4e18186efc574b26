#include "engine/ChildCommand.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>

#include "engine/Turns.h"
#include "platform/Posix.h"

namespace qx {
namespace {

constexpr int kSignalled = 128;

constexpr pid_t kFree = 0, kStarting = -1;

// Each leads a process group of its own. More are not started at the same time.
std::array<std::atomic<pid_t>, 64> runningChildren = {};
std::atomic<int> stopSignal = 0;

// Only what may be done in a signal handler. The groups of the children get the same signal: Ninja ends its
// compilers by it and removes what they had half written.
void Forward(int number) {
  const int error = errno;
  stopSignal = number;
  for (const std::atomic<pid_t>& each : runningChildren) {
    if (const pid_t child = each; child > 0) kill(-child, number);
  }
  errno = error;
}

// A child's place in the list, for as long as it runs.
class Place {
 public:
  Place() {
    place_ = std::ranges::find_if(runningChildren, [](std::atomic<pid_t>& each) {
      pid_t expected = kFree;
      return each.compare_exchange_strong(expected, kStarting);
    });
  }
  ~Place() {
    if (IsThere()) *place_ = kFree;
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  bool IsThere() const { return place_ != runningChildren.end(); }
  void Take(pid_t child) {
    *place_ = child;
    if (const int number = stopSignal; number != 0) kill(-child, number);  // it came between the two
  }

 private:
  decltype(runningChildren)::iterator place_;
};

std::vector<std::string> MergedEnvironment(const std::map<std::string, std::string>& added) {
  std::vector<std::string> all;
  for (char** at = environ; at != nullptr && *at != nullptr; ++at) {
    const std::string variable(*at);
    if (!added.contains(variable.substr(0, variable.find('=')))) all.push_back(variable);
  }
  for (const auto& [name, value] : added) all.push_back(name + "=" + value);
  return all;
}

// 0, or an errno; `child` then leads a group of its own, with signals as the system has them.
int Spawn(const ChildCommand& command, const std::string& program, int output, pid_t& child) {
  std::vector<std::string> arguments = command.arguments;
  std::vector<std::string> environment = MergedEnvironment(command.environment);
  system::SpawnOrders orders(POSIX_SPAWN_SETPGROUP);
  posix_spawn_file_actions_addopen(&orders.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&orders.actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&orders.actions, output, STDERR_FILENO);
  if (command.turns != nullptr) {
    environment.push_back(std::string(kTurnsVariable) + "=1");
    posix_spawn_file_actions_adddup2(&orders.actions, command.turns->ReadEnd(), kTakeTurn);
    posix_spawn_file_actions_adddup2(&orders.actions, command.turns->WriteEnd(), kGiveTurnBack);
  }
  if (!command.folder.empty()) {
    posix_spawn_file_actions_addchdir_np(&orders.actions, command.folder.c_str());
  }
  posix_spawnattr_setpgroup(&orders.attributes, 0);
  return posix_spawn(&child, program.c_str(), &orders.actions, &orders.attributes,
                     system::Pointers(arguments).data(), system::Pointers(environment).data());
}

// Hands on whole lines as their bytes come, without LF or CR LF.
class LineReader {
 public:
  explicit LineReader(const std::function<void(std::string_view)>& line) : line_(line) {}

  // False at the end of the pipe.
  bool ReadFrom(int pipe) {
    char buffer[16384];
    const ssize_t count = read(pipe, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) return true;
    if (count <= 0) return false;
    kept_.append(buffer, static_cast<std::size_t>(count));
    std::size_t begin = 0;
    for (std::size_t end; (end = kept_.find('\n', begin)) != std::string::npos; begin = end + 1) {
      Hand(std::string_view(kept_).substr(begin, end - begin));
    }
    kept_.erase(0, begin);
    return true;
  }
  // The last line, when it has no end.
  void Finish() {
    if (!kept_.empty()) Hand(kept_);
  }

 private:
  void Hand(std::string_view text) {
    if (text.ends_with('\r')) text.remove_suffix(1);
    line_(text);
  }

  const std::function<void(std::string_view)>& line_;
  std::string kept_;
};

// Reads until the child has ended and what it had written is read. The pipe's end is not waited for: what the
// child leaves behind (Wine's server, a build engine's nodes) keeps it open.
void ReadLines(int pipe, pid_t child, const std::function<void(std::string_view)>& line) {
  LineReader reader(line);
  const system::Descriptor endOfChild(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
  pollfd waits[] = {{pipe, POLLIN, 0}, {endOfChild.Number(), POLLIN, 0}};
  for (bool open = true; open;) {
    const bool hasEnded = waits[1].revents != 0;
    waits[0].revents = 0;
    if (poll(waits, endOfChild.IsOpen() ? 2 : 1, hasEnded ? 0 : -1) < 0 && errno != EINTR) break;
    if (waits[0].revents != 0) {
      open = reader.ReadFrom(pipe);
    } else if (hasEnded) {
      break;
    }
  }
  reader.Finish();
}

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ChildResult RunChild(const ChildCommand& command, const std::function<void(std::string_view)>& line) {
  if (IsStopped()) return {-1, "stopped"};
  if (command.arguments.empty()) return {-1, "no program is named"};
  const std::string program = FindProgram(command.arguments.front());
  if (program.empty()) return {-1, command.arguments.front() + " was not found on the PATH"};
  Place place;
  if (!place.IsThere()) return {-1, "too many programs run at the same time"};

  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {-1, system::LastError()};
  const system::Descriptor readEnd(ends[0]);
  system::Descriptor writeEnd(ends[1]);
  pid_t child = 0;
  const int error = Spawn(command, program, writeEnd.Number(), child);
  writeEnd.Close();
  if (error != 0) return {-1, "cannot start " + program + ": " + system::ErrorText(error)};
  place.Take(child);
  ReadLines(readEnd.Number(), child, line);
  return {WaitFor(child), ""};
}

std::string FindProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  return system::FindProgramOn(system::SearchPath(), name);
}

int StopSignal() { return stopSignal; }

void ForwardSignals() {
  struct sigaction action = {};
  action.sa_handler = Forward;
  sigemptyset(&action.sa_mask);
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction before = {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);  // nohup's wish is kept
  }
}

}  // namespace qx
