// vsinspect: shows what the package sees in a file. Exit code 0, or 2 with the reader's own message on
// stderr.
#include <algorithm>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Arguments.h"
#include "tools/vsinspect/Reports.h"

namespace qx {
namespace {

constexpr int kUsageOrInput = 2;

constexpr std::string_view kHelp =
    R"(vsinspect: shows what the package sees in a file.

usage: vsinspect solution FILE.sln [--json]     projects, configurations, dependencies, resource scripts
       vsinspect version-info FILE.rc [--json]  the values of the file's VERSIONINFO block
       vsinspect --version
       vsinspect --help

--json prints one JSON object instead of text.
Exit code 0, or 2 when the file cannot be read; the reason is on stderr.
)";

struct Command {
  std::string_view name;
  std::string_view wants;
  std::string (*report)(const std::string& file, Form form);
};
constexpr Command kCommands[] = {{"solution", "FILE.sln", &SolutionReport},
                                 {"version-info", "FILE.rc", &VersionInfoReport}};

int Print(std::string_view text) {
  const bool written =
      std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (written) return 0;
  std::fputs("vsinspect: the output cannot be written\n", stderr);
  return kUsageOrInput;
}

int Complain(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  return kUsageOrInput;
}

int Refuse(const std::string& what) { return Complain("vsinspect: " + what + "\nTry vsinspect --help."); }

int Run(std::span<const std::string> arguments) {
  const auto given = [&](std::string_view word) {
    return std::find(arguments.begin(), arguments.end(), word) != arguments.end();
  };
  if (arguments.empty()) return Refuse("a command is wanted: solution or version-info");
  if (given("--help") || given("-h")) return Print(kHelp);
  if (arguments[0] == "--version") return Print("vsinspect " QX_VERSION "\n");

  const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                    [&](const Command& known) { return known.name == arguments[0]; });
  if (command == std::end(kCommands)) {
    return Refuse("unknown command " + arguments[0] + ": solution and version-info are known");
  }
  std::vector<std::string> files;
  Form form = Form::kText;
  for (const std::string& argument : arguments.subspan(1)) {
    if (argument == "--json") {
      form = Form::kJson;
    } else if (argument.starts_with("--")) {
      return Refuse("unknown option " + argument + ": --json is known");
    } else {
      files.push_back(argument);
    }
  }
  if (files.size() != 1) {
    return Refuse(std::string(command->name) + " wants one " + std::string(command->wants));
  }
  return Print(command->report(files[0], form));
}

}  // namespace
}  // namespace qx

int main(int count, char** words) {
  try {
    return qx::Run(qx::CommandLineWords(count, words));
  } catch (const std::exception& error) {
    return qx::Complain(error.what());
  }
}
