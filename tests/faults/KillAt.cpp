// Starts a program and ends it at one of its system calls, or has that call fail:
//   kill_at kill N PROGRAM ARGUMENT...         before its Nth call
//   kill_at fail ERRNO N PROGRAM ARGUMENT...   its Nth call that writes, makes, names or flushes files gets the error
// The calls of all its threads count, in the order in which they come, none of its children's. Prints how many there
// were when the program ended by itself; exits as it did, or with 137 when it was killed.
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

namespace {

constexpr std::array<long, 14> kWriting{SYS_write,  SYS_pwrite64,  SYS_writev, SYS_fsync,    SYS_fdatasync,
                                        SYS_openat, SYS_linkat,    SYS_rename, SYS_renameat, SYS_renameat2,
                                        SYS_unlink, SYS_ftruncate, SYS_mkdir,  SYS_fchmod};

// Those of them that are given a descriptor: no disk is ever full for a pipe or an event, and who waits at its other
// end would wait for ever.
constexpr std::array<long, 7> kByDescriptor{SYS_write,     SYS_pwrite64,  SYS_writev, SYS_fsync,
                                            SYS_fdatasync, SYS_ftruncate, SYS_fchmod};

// Whether the call can meet a full disk.
bool MeetsTheDisk(pid_t thread, const user_regs_struct& registers) {
  const long number = static_cast<long>(registers.orig_rax);
  if (std::find(kWriting.begin(), kWriting.end(), number) == kWriting.end()) return false;
  if (std::find(kByDescriptor.begin(), kByDescriptor.end(), number) == kByDescriptor.end()) return true;
  char name[64];
  std::snprintf(name, sizeof name, "/proc/%d/fd/%d", static_cast<int>(thread),
                static_cast<int>(registers.rdi));
  struct stat about {};
  return stat(name, &about) == 0 && (S_ISREG(about.st_mode) || S_ISDIR(about.st_mode));
}

struct Order {
  bool kills = true;
  long error = 0;
  long at = 0;
};

class Tracer {
 public:
  Tracer(pid_t program, Order order) : program_(program), order_(order) {}

  int Run() {
    int status = 0;
    waitpid(program_, &status, 0);
    ptrace(PTRACE_SETOPTIONS, program_, 0,
           PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL);
    ptrace(PTRACE_SYSCALL, program_, 0, 0);
    for (;;) {
      const pid_t thread = waitpid(-1, &status, __WALL);
      if (thread < 0) return 2;
      if (WIFEXITED(status) || WIFSIGNALED(status)) {
        if (thread != program_) continue;
        if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
        std::printf("%ld\n", count_);
        return WEXITSTATUS(status);
      }
      Go(thread, status);
    }
  }

 private:
  void Go(pid_t thread, int status) {
    int signal = WSTOPSIG(status);
    if (signal == (SIGTRAP | 0x80)) {
      Call(thread);
      signal = 0;
    } else if (signal == SIGTRAP || signal == SIGSTOP) {
      signal = 0;
    }
    ptrace(PTRACE_SYSCALL, thread, 0, signal);
  }

  void Call(pid_t thread) {
    const bool enters = inside_.insert(thread).second;
    if (!enters) inside_.erase(thread);
    user_regs_struct registers;
    if (ptrace(PTRACE_GETREGS, thread, 0, &registers) != 0) return;
    if (enters) {
      const bool counts = order_.kills || MeetsTheDisk(thread, registers);
      if (!counts || ++count_ != order_.at) return;
      if (order_.kills) {
        kill(program_, SIGKILL);
        return;
      }
      failing_ = thread;
      registers.orig_rax = static_cast<unsigned long long>(-1);
      ptrace(PTRACE_SETREGS, thread, 0, &registers);
    } else if (failing_ == thread) {
      failing_ = 0;
      registers.rax = static_cast<unsigned long long>(-order_.error);
      ptrace(PTRACE_SETREGS, thread, 0, &registers);
    }
  }

  pid_t program_;
  Order order_;
  long count_ = 0;
  pid_t failing_ = 0;
  std::set<pid_t> inside_;  // threads within a call
};

}  // namespace

int main(int count, char** arguments) {
  const bool fails = count > 4 && std::strcmp(arguments[1], "fail") == 0;
  const int program = fails ? 4 : 3;
  if (count <= program) return 2;
  const Order order{!fails, fails ? std::atol(arguments[2]) : 0, std::atol(arguments[program - 1])};
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, 0, 0);
    raise(SIGSTOP);
    execv(arguments[program], arguments + program);
    _exit(127);
  }
  return Tracer(child, order).Run();
}
