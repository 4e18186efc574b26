#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <utility>
#include <vector>

#include "host/process/EventPosix.h"
#include "host/process/KeeperPosix.h"
#include "host/process/ProcessTreePosix.h"
#include "host/process/RunningChild.h"
#include "platform/CommandLine.h"
#include "platform/Posix.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

using system::Descriptor;
using system::ErrorText;

// What an abandoned pipe's reader is woken with; it never reaches a line.
constexpr char kWakeByte = '\0';
// How often an abandoned pipe is still read: far more than a pipe holds.
constexpr int kLastReads = 32;

struct Pipe {
  Descriptor readEnd;
  std::atomic<bool> abandoned = false;
  std::atomic<bool> wakeByteSent = false;
  int lastReads = 0;
};

// The file or folder that `path` names, absolute, for a path counts from the host's current folder. What does
// not exist stays as it is, for the error to name.
std::string FileOf(const std::string& path) {
  const std::string found = FindExisting(path);
  return found.empty() ? path : ExpandPath("", found);
}

// A bare name is left for the search along PATH.
std::string ProgramFile(const std::string& executable) {
  return executable.find_first_of("/\\") == std::string::npos ? executable : FileOf(executable);
}

// Whether a folder can be made the current one; an errno, 0 for yes.
int FolderError(const std::string& folder) {
  const Descriptor opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return errno;
  return faccessat(AT_FDCWD, folder.c_str(), X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

[[noreturn]] void RaiseCannotStart(const ChildProcess& what, const std::string& program,
                                   const std::string& folder, int error) {
  const std::string beginning = "Cannot start \"" + what.executable + "\"";
  if (!folder.empty()) {
    if (const int folderError = FolderError(folder); folderError != 0) {
      throw Exception(beginning + " in the folder \"" + what.directory + "\": " + ErrorText(folderError));
    }
  }
  struct stat status;
  if (error == EACCES && stat(program.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) error = EISDIR;
  throw Exception(beginning + ": " + ErrorText(error));
}

void CheckTexts(const ChildProcess& what) {
  for (const std::string* text : {&what.executable, &what.parameters, &what.directory}) {
    if (text->find('\0') == std::string::npos) continue;
    throw Exception("Cannot start \"" + std::string(what.executable.c_str()) +
                    "\": a zero byte in its command line");
  }
}

// Counts the runs that go on. As long as there is one, what a killed keeper kept comes to the host, which finds it.
class Adoption {
 public:
  Adoption() {
    if (++runs_ == 1) prctl(PR_SET_CHILD_SUBREAPER, 1);
  }
  ~Adoption() { End(); }
  Adoption(const Adoption&) = delete;
  Adoption& operator=(const Adoption&) = delete;
  void End() {
    if (!std::exchange(ended_, true) && --runs_ == 0) prctl(PR_SET_CHILD_SUBREAPER, 0);
  }

 private:
  static std::atomic<int> runs_;
  bool ended_ = false;
};

std::atomic<int> Adoption::runs_{0};

}  // namespace

struct RunningChild::System {
  std::string executable;
  Adoption adoption;
  Keeper keeper;
  bool over = false;
  std::array<Pipe, 2> pipes;

  Pipe& PipeOf(OutputStream stream) { return pipes[static_cast<std::size_t>(stream)]; }
  Descriptor OpenPipe(OutputStream stream);
  void Start(const ChildProcess& what);
  std::vector<pid_t> Living();
  void KillStrays();
};

// Keeps the end to read from; the other, for the child, is the result. In a host without standard streams a
// pipe may get their numbers; the end to read from gets the lower one, so the other is never 0, and error's
// never 1: what the child does to its streams, in their order, does not run over what it still needs.
Descriptor RunningChild::System::OpenPipe(OutputStream stream) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    throw Exception("Cannot start \"" + executable + "\": " + system::LastError());
  }
  PipeOf(stream).readEnd = Descriptor(ends[0]);
  return Descriptor(ends[1]);
}

void RunningChild::System::Start(const ChildProcess& what) {
  CheckTexts(what);
  // A session of its own rather than just a process group: a background group of the host's terminal would be
  // stopped when it asks it something.
  system::SpawnOrders orders(POSIX_SPAWN_SETSID);
  posix_spawn_file_actions_addopen(&orders.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  Descriptor output;
  Descriptor error;
  if (what.redirectOutput) {
    output = OpenPipe(OutputStream::Output);
    error = OpenPipe(OutputStream::Error);
    posix_spawn_file_actions_adddup2(&orders.actions, output.Number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&orders.actions, error.Number(), STDERR_FILENO);
  }
  const std::string folder = what.directory.empty() ? std::string() : FileOf(what.directory);
  if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&orders.actions, folder.c_str());
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
  // Our own are closed on exec anyway; this is for those of the host's other libraries.
  posix_spawn_file_actions_addclosefrom_np(&orders.actions, STDERR_FILENO + 1);
#endif
  const std::string program = ProgramFile(what.executable);
  std::vector<std::string> arguments = SplitCommandLine(what.parameters);
  arguments.insert(arguments.begin(), program);
  // It reports what exec refuses as its own error.
  const int failure = keeper.Start({program.c_str(), system::Pointers(arguments).data(), environ, orders});
  if (failure != 0) RaiseCannotStart(what, program, folder, failure);
}

// The tree, and when its keeper was killed what came from that to the host.
std::vector<pid_t> RunningChild::System::Living() {
  keeper.Look();
  return keeper.IsLost() ? Strays() : Descendants(keeper.Pid());
}

// What the keeper kept is the host's once the keeper is altogether gone. Killing one may bring its children here.
void RunningChild::System::KillStrays() {
  keeper.Release();
  for (int round = 0; round < 50; ++round) {
    const std::vector<pid_t> strays = Strays();
    for (const pid_t stray : strays) kill(stray, SIGKILL);
    if (strays.empty()) return;
    poll(nullptr, 0, 10);
  }
}

RunningChild::RunningChild(const ChildProcess& what) : system_(std::make_unique<System>()) {
  system_->executable = what.executable;
  system_->Start(what);
}

RunningChild::~RunningChild() {
  if (system_->over) return;
  // What the kernel holds (a dead network drive) is left to the keeper, which outlives us.
  for (int round = 0; round < 50; ++round) {
    KillTree();
    if (system_->keeper.IsGone() && !TreeIsAlive()) return;
    poll(nullptr, 0, 10);
  }
}

std::size_t RunningChild::Read(OutputStream stream, std::span<char> space) {
  Pipe& pipe = system_->PipeOf(stream);
  for (;;) {
    if (pipe.abandoned && ++pipe.lastReads > kLastReads) return 0;
    const ssize_t result = read(pipe.readEnd.Number(), space.data(), space.size());
    if (result < 0 && errno == EINTR) continue;
    if (result <= 0) return 0;  // the end, or nothing left in an abandoned pipe
    const auto count = static_cast<std::size_t>(result);
    const bool woken = space[count - 1] == kWakeByte && pipe.wakeByteSent.exchange(false);
    if (!woken) return count;
    if (count > 1) return count - 1;
  }
}

Woken RunningChild::Wait(TEvent* stop, TEvent& notice, bool forExit, std::chrono::milliseconds patience) {
  const WatchedEvent watchedStop(stop);
  const WatchedEvent watchedNotice(&notice);
  // A negative descriptor is passed over by poll.
  std::array<pollfd, 3> waited{{{watchedStop.Number(), POLLIN, 0},
                                {watchedNotice.Number(), POLLIN, 0},
                                {forExit ? system_->keeper.Channel() : -1, POLLIN, 0}}};
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return Woken::Time;
    if (poll(waited.data(), waited.size(), static_cast<int>(left.count())) < 0) continue;  // interrupted
    if (waited[0].revents != 0 && stop->WaitFor(0)) return Woken::Stop;
    if (waited[1].revents != 0 && notice.WaitFor(0)) return Woken::Notice;
    if (waited[2].revents == 0 || !system_->keeper.Look()) continue;
    // Nobody keeps the tree any more; as long as it lives it holds the pipes.
    if (system_->keeper.IsLost()) system_->KillStrays();
    return Woken::Exit;
  }
}

bool RunningChild::AskTreeToEnd() {
  const std::vector<pid_t> tree = system_->Living();
  for (const pid_t member : tree) {
    kill(member, SIGTERM);
    kill(member, SIGCONT);  // one that is halted would not hear it
  }
  return !tree.empty();
}

void RunningChild::KillTree() {
  system_->keeper.KillAll();
  for (const pid_t member : system_->Living()) kill(member, SIGKILL);
}

bool RunningChild::TreeIsAlive() { return !system_->Living().empty(); }

void RunningChild::AbandonPipes() {
  for (Pipe& pipe : system_->pipes) {
    const int readEnd = pipe.readEnd.Number();
    if (readEnd < 0 || pipe.abandoned.exchange(true)) continue;
    fcntl(readEnd, F_SETFL, O_NONBLOCK);
    // A reader that is blocked already needs something to read.
    const std::string name = "/proc/self/fd/" + std::to_string(readEnd);
    const Descriptor writeEnd(open(name.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    pipe.wakeByteSent = true;
    if (write(writeEnd.Number(), &kWakeByte, 1) != 1) pipe.wakeByteSent = false;  // full: nobody is blocked
  }
}

int RunningChild::ExitCode() {
  const std::optional<int> status = system_->keeper.Status();
  if (!status) {
    throw Exception("The exit code of \"" + system_->executable +
                    "\" is lost: the process that kept it was killed");
  }
  system_->adoption.End();
  system_->keeper.Release();
  system_->over = true;
  constexpr int kSignalBase = 128;  // as shells report it
  return WIFSIGNALED(*status) ? kSignalBase + WTERMSIG(*status) : WEXITSTATUS(*status);
}

}  // namespace qx
