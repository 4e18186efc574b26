// Stands in for devenv.com and MSBuild.exe in tests: a copy of it under their names writes down how it was
// called and does what its script says. Beside it lie `script` (or `script.2` for the second call, and so on)
// and, afterwards, `record`. A script has one order a line: "out TEXT", "err TEXT", "wait MILLISECONDS",
// "exit CODE".
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;

// Appends "call N", the working directory and one line for each argument; gives N.
int WriteRecord(const fs::path& folder, int argc, char** argv) {
  const fs::path file = folder / "record";
  int call = 1;
  std::ifstream before(file);
  for (std::string line; std::getline(before, line);) call += line.starts_with("call ") ? 1 : 0;
  before.close();
  std::ofstream record(file, std::ios::app | std::ios::binary);
  record << "call " << call << "\nin " << fs::current_path().string() << '\n';
  for (int i = 1; i < argc; ++i) record << argv[i] << '\n';
  return call;
}

void Print(std::FILE* stream, const std::string& text) {
  std::fputs((text + '\n').c_str(), stream);
  std::fflush(stream);
}

int Play(std::ifstream script) {
  for (std::string line; std::getline(script, line);) {
    const std::string order = line.substr(0, line.find(' '));
    const std::string rest = line.size() > order.size() ? line.substr(order.size() + 1) : "";
    if (order == "out") Print(stdout, rest);
    if (order == "err") Print(stderr, rest);
    if (order == "wait") std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(rest)));
    if (order == "exit") return std::stoi(rest);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path folder = fs::path(argv[0]).parent_path();
  const int call = WriteRecord(folder, argc, argv);
  std::ifstream own(folder / ("script." + std::to_string(call)));
  return Play(own ? std::move(own) : std::ifstream(folder / "script"));
}
