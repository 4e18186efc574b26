// qx_test_child: the child program of the process service's tests. It carries out its arguments one after the other:
//
//   out:TEXT err:TEXT   writes TEXT, in which \n \r \\ and \xHH mean what they mean in C++
//   flood:BYTES         writes so many bytes to each stream, in lines of 64, both streams in turn
//   lines:N             writes N lines of some 40 bytes to standard output, as a build does, in blocks of 64
//   KiB single-lines:N      the same, each line by itself, as a program on a console does beat:FILE adds a
//   byte to FILE every 10 milliseconds for a minute: who looks at it sees whether we live sleep:MS  exit:N
//   signal:N env:NAME  cwd  stdin  descriptors  command-line      print a line about it args prints the
//   arguments behind it, one a line in square brackets, and ends spawn:N             starts itself with the N
//   arguments that follow, and goes on without waiting new-session  no-environment  kill-parent  ignore-requests see
//   TestChild.h
#include "host/testing/TestChild.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

using namespace qx::test_child;

std::string Unescape(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      bytes += text[i];
      continue;
    }
    const char kind = text[++i];
    if (kind == 'x') {
      bytes += static_cast<char>(std::strtol(std::string(text.substr(i + 1, 2)).c_str(), nullptr, 16));
      i += 2;
    } else {
      bytes += kind == 'n' ? '\n' : kind == 'r' ? '\r' : kind;
    }
  }
  return bytes;
}

void Flood(std::size_t bytes) {
  std::string block;
  while (block.size() < 32768)
    block += std::string(63, static_cast<char>('a' + block.size() / 64 % 26)) + "\n";
  for (std::size_t written = 0; written < bytes; written += block.size()) {
    Write(1, block);
    Write(2, block);
  }
}

void WriteLines(long count, std::size_t blockSize) {
  std::string block;
  for (long i = 0; i < count; ++i) {
    const std::string unit = std::to_string(i % 997);
    block += i % 5 == 0 ? "..\\Module\\unit" + unit + ".cpp(12) : warning C4244: possible loss of data\n"
                        : "unit" + unit + ".cpp compiled, no warnings\n";
    if (block.size() < blockSize) continue;
    Write(1, block);
    block.clear();
  }
  Write(1, block);
}

void Beat(const std::string& file) {
  for (int i = 0; i < 6000; ++i) {
    std::ofstream(file, std::ios::app | std::ios::binary) << '.';
    Sleep(10);
  }
}

void Print(const std::string& line) { Write(1, line + "\n"); }

// False: an order that there is not.
bool Obey(std::string_view order, std::string_view value) {
  const std::string text(value);
  const int number = std::atoi(text.c_str());
  if (order == "out") return Write(1, Unescape(value)), true;
  if (order == "err") return Write(2, Unescape(value)), true;
  if (order == "flood") return Flood(std::strtoull(text.c_str(), nullptr, 10)), true;
  if (order == "lines") return WriteLines(number, 65536), true;
  if (order == "single-lines") return WriteLines(number, 1), true;
  if (order == "beat") return Beat(text), true;
  if (order == "sleep") return Sleep(number), true;
  if (order == "exit") std::exit(number);
  if (order == "signal") return EndBySignal(number), true;
  if (order == "env") return Print(std::getenv(text.c_str()) ? std::getenv(text.c_str()) : "(unset)"), true;
  if (order == "cwd") return Print(CurrentFolder()), true;
  if (order == "stdin") return Print(std::to_string(ReadInput())), true;
  if (order == "descriptors") return Print(std::to_string(OpenBeyondStandard())), true;
  if (order == "command-line") return Print(CommandLine()), true;
  if (order == "await-request") return Write(1, AwaitRequest() ? Unescape(value) : "cannot be asked"), true;
  if (order == "new-session") return LeaveSession(), true;
  if (order == "no-environment") return DropEnvironment(), true;
  if (order == "kill-parent") return KillParent(), true;
  if (order == "ignore-requests") return IgnoreRequests(), true;
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments = Arguments(argc, argv);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const std::size_t colon = argument.find(':');
    const std::string_view value =
        colon == std::string_view::npos ? std::string_view() : argument.substr(colon + 1);
    const auto rest = arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1;
    if (argument == "args") {
      std::string lines;
      for (auto at = rest; at != arguments.end(); ++at) lines += "[" + *at + "]\n";
      Write(1, lines);
      return 0;
    }
    if (argument.starts_with("spawn:")) {
      const std::size_t count = std::strtoull(std::string(value).c_str(), nullptr, 10);
      Spawn({rest, rest + static_cast<std::ptrdiff_t>(count)});
      i += count;
    } else if (!Obey(argument.substr(0, colon), value)) {
      Write(2, "qx_test_child: no such order: " + arguments[i] + "\n");
      return 2;
    }
  }
  return 0;
}
