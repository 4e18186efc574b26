// The keeper is a fork of the host, not a program of its own, so that nothing has to be installed or found. A fork of
// a process with threads may do little: the code below calls the system and nothing else.
#include "host/process/KeeperPosix.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace qx {
namespace {

constexpr char kKill = 'k';
constexpr char kRelease = 'r';

// What a keeper tells: that the program was started (an errno, 0), and how it ended (as waitpid has it).
enum class News { Started, Ended };
struct Report {
  News news;
  int value;
};

void SendReport(int channel, News news, int value) {
  const Report report{news, value};
  while (send(channel, &report, sizeof report, MSG_NOSIGNAL) < 0 && errno == EINTR) continue;
}

// Everything that was the host's goes, but the channel, which is moved.
int KeepOnly(int channel) {
  constexpr int kChannel = STDERR_FILENO + 1;
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) dup2(nothing, stream);
  if (channel != kChannel) dup2(channel, kChannel);
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
  closefrom(kChannel + 1);
#else
  for (int number = kChannel + 1; number < 4096; ++number) close(number);
#endif
  return kChannel;
}

// The keeper's own children. What one of them leaves behind becomes one, so this reaches everybody in the end.
void KillChildren(pid_t first) {
  kill(-first, SIGKILL);
  const int list = open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC);
  if (list < 0) return;
  char buffer[4096];
  pid_t number = 0;
  for (ssize_t size = 0; (size = read(list, buffer, sizeof buffer)) > 0;) {
    for (ssize_t i = 0; i < size; ++i) {
      if (buffer[i] >= '0' && buffer[i] <= '9') {
        number = number * 10 + (buffer[i] - '0');
      } else if (number > 0) {
        kill(number, SIGKILL);
        number = 0;
      }
    }
  }
  close(list);
}

// Whether anything is left; tells how the program ended.
bool ReapChildren(pid_t first, int channel) {
  for (;;) {
    int status = 0;
    const pid_t ended = waitpid(-1, &status, WNOHANG);
    if (ended == first) SendReport(channel, News::Ended, status);
    if (ended <= 0) return ended == 0;
  }
}

// The keeper's life.
[[noreturn]] void Keep(int channel, const KeptProgram& what) {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, nullptr);
  signal(SIGCHLD, SIG_DFL);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  prctl(PR_SET_NAME, "qxhost-keeper");
  prctl(PR_SET_PDEATHSIG, SIGCONT);  // should somebody have halted it
  pid_t first = 0;
  const int failure = posix_spawnp(&first, what.program, &what.orders.actions, &what.orders.attributes,
                                   what.arguments, what.environment);
  SendReport(channel, News::Started, failure);
  if (failure != 0) _exit(0);
  channel = KeepOnly(channel);
  if (chdir("/") != 0) _exit(0);
  prctl(PR_SET_DUMPABLE, 0);  // it has a copy of the host's memory
  sigset_t ended;
  sigemptyset(&ended);
  sigaddset(&ended, SIGCHLD);
  const int children = signalfd(-1, &ended, SFD_CLOEXEC | SFD_NONBLOCK);
  bool killing = false;
  for (int round = 0;; ++round) {
    const bool anybody = ReapChildren(first, channel);
    if (killing && !anybody) _exit(0);
    if (killing) KillChildren(first);
    // Whoever forks without end is met soon and often; whom the kernel holds, now and then.
    const int patience = !killing ? -1 : round < 500 ? 1 : 50;
    pollfd waited[] = {{killing ? -1 : channel, POLLIN, 0}, {children, POLLIN, 0}};
    poll(waited, 2, patience);
    signalfd_siginfo dropped;
    while (read(children, &dropped, sizeof dropped) > 0) continue;
    if (killing || waited[0].revents == 0) continue;
    char order = kKill;  // also when the host is gone
    const ssize_t size = recv(channel, &order, 1, MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) continue;
    if (size == 1 && order == kRelease) _exit(0);
    killing = true;
    round = 0;
  }
}

}  // namespace

int Keeper::Start(const KeptProgram& what) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return errno;
  channel_ = system::Descriptor(ends[0]);
  system::Descriptor keepers(ends[1]);
  pid_ = fork();
  if (pid_ < 0) {
    pid_ = 0;
    return errno;
  }
  if (pid_ == 0) {
    close(ends[0]);
    Keep(ends[1], what);
  }
  keepers.Close();
  Report report{};
  ssize_t size = 0;
  while ((size = recv(channel_.Number(), &report, sizeof report, 0)) < 0 && errno == EINTR) continue;
  if (size == sizeof report && report.value == 0) return 0;
  Release();
  return size == sizeof report ? report.value : ECHILD;
}

bool Keeper::Look() {
  while (!closed_) {
    Report report{};
    const ssize_t size = recv(channel_.Number(), &report, sizeof report, MSG_DONTWAIT);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && errno == EAGAIN) break;
    closed_ = size != sizeof report;
    if (!closed_ && report.news == News::Ended) status_ = report.value;
  }
  return closed_ || status_;
}

void Keeper::Tell(char order) {
  if (channel_.IsOpen()) send(channel_.Number(), &order, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
}

void Keeper::KillAll() {
  Tell(kKill);
  if (!IsGone()) kill(pid_, SIGCONT);
}

void Keeper::Release() {
  Tell(kRelease);
  while (!gone_ && waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) continue;
  gone_ = true;
}

bool Keeper::IsGone() {
  gone_ = gone_ || pid_ == 0 || waitpid(pid_, nullptr, WNOHANG) != 0;
  return gone_;
}

}  // namespace qx
