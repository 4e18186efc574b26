#include <dirent.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "host/testing/TestChild.h"

namespace qx::test_child {
namespace {

bool withoutEnvironment = false;

}  // namespace

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

std::string CommandLine() { return program_invocation_name; }

std::string CurrentFolder() {
  char folder[PATH_MAX];
  return getcwd(folder, sizeof folder) != nullptr ? folder : "?";
}

void Write(int stream, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(stream, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) _exit(3);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

std::size_t ReadInput() {
  char buffer[4096];
  std::size_t total = 0;
  for (ssize_t count = 0; (count = read(0, buffer, sizeof buffer)) > 0;)
    total += static_cast<std::size_t>(count);
  return total;
}

void Sleep(int milliseconds) {
  timespec left{milliseconds / 1000, milliseconds % 1000 * 1000000L};
  while (nanosleep(&left, &left) != 0) continue;
}

void Spawn(const std::vector<std::string>& orders) {
  std::vector<std::string> texts(orders);
  texts.insert(texts.begin(), "qx_test_child");
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  if (fork() != 0) return;
  char* nothing[] = {nullptr};
  execve("/proc/self/exe", arguments.data(), withoutEnvironment ? nothing : environ);
  _exit(3);
}

void LeaveSession() { setsid(); }

void DropEnvironment() { withoutEnvironment = true; }

void IgnoreRequests() {
  for (const int request : {SIGTERM, SIGINT, SIGHUP}) signal(request, SIG_IGN);
}

void KillParent() { kill(getppid(), SIGKILL); }

bool AwaitRequest() {
  sigset_t requests;
  sigemptyset(&requests);
  sigaddset(&requests, SIGTERM);
  sigprocmask(SIG_BLOCK, &requests, nullptr);
  int received = 0;
  return sigwait(&requests, &received) == 0;
}

void EndBySignal(int number) { kill(getpid(), number); }

int OpenBeyondStandard() {
  int count = 0;
  DIR* const folder = opendir("/proc/self/fd");
  while (const dirent* entry = readdir(folder)) {
    const int number = std::atoi(entry->d_name);
    if (number > 2 && number != dirfd(folder)) ++count;
  }
  closedir(folder);
  return count;
}

}  // namespace qx::test_child
