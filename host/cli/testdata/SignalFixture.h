// The real qxhost started without being waited for, so that a test can send it signals. Outside Windows only.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>

#include "host/cli/testdata/CliFixture.h"
#include "host/project/BuildProject.h"

namespace qx::cli {

using Milliseconds = std::chrono::milliseconds;

class SignalTest : public CliTest {
 protected:
  // Starts qxhost with its standard output in a file, "closed" for one whose reader is gone.
  pid_t Start(const Words& words, const std::string& out) const {
    Words all{ProgramFile("qxhost"), "--package", PackageFile("tiny"), "--options", PathOf("options.xml")};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int ends[2];
    if (out == "closed" && pipe(ends) != 0) return -1;
    const pid_t child = fork();
    if (child != 0) {
      if (out == "closed") close(ends[0]), close(ends[1]);
      return child;
    }
    if (chdir(folder_.c_str()) != 0) _exit(126);
    const int target = out == "closed" ? ends[1] : open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    dup2(target, STDOUT_FILENO);
    if (out == "closed") close(ends[0]), close(ends[1]);
    execv(arguments[0], arguments.data());
    _exit(127);
  }

  static int ExitCode(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  void WaitFor(const std::string& name, const std::string& part) const {
    for (int i = 0; i < 500 && !(Exists(name) && Holds(Content(name), part)); ++i) {
      std::this_thread::sleep_for(Milliseconds(10));
    }
  }

  // False for one that has ended and only waits to be asked about.
  static bool Runs(pid_t process) {
    std::string status;
    if (!TryReadFile("/proc/" + std::to_string(process) + "/status", status)) return false;
    return !Holds(status, "State:\tZ");
  }

  int Count() const { return std::stoi(BuildProject::Load(PathOf("p.xml")).ReadText(0, "Count").value()); }

  // The exit code of a program that has two seconds to end; -SIGKILL when it had to be killed.
  static int CodeWithinTwoSeconds(pid_t child) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
      if (std::chrono::steady_clock::now() > end) kill(child, SIGKILL);
      std::this_thread::sleep_for(Milliseconds(5));
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
};

}  // namespace qx::cli
