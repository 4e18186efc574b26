// vsinspect: shows what the package sees in a file. Exit code 0, 1 for built programs that are not as they
// should be, or 2 with the reader's own message on stderr.
#include <array>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Arguments.h"
#include "platform/VisibleText.h"
#include "platform/commandline/Invocation.h"
#include "tools/vsinspect/Reports.h"

namespace qx::cli {
// Nothing is kept between the words and the report.
class Session {};
}  // namespace qx::cli

namespace qx {
namespace {

using cli::CommandRow, cli::Invocation, cli::OperandRow, cli::OptionRow, cli::UsageFault, cli::ValueKind;

constexpr int kNotAsItShouldBe = 1;
constexpr int kUsageOrInput = 2;

constexpr std::string_view kHelp =
    R"(vsinspect: shows what the package sees in a file.

usage: vsinspect solution FILE.sln [--json]     projects, configurations, dependencies, resource scripts
       vsinspect version-info FILE.rc [--json]  the values of the file's VERSIONINFO block
       vsinspect binary FILE [--json]           a built program's or library's assembly name, versions and strings
       vsinspect built FILE.sln --configuration NAME [--json]
                                                whether each program of the solution is there, newer than its
                                                version's source, and bears the version that the source says
       vsinspect --version
       vsinspect --help

--json prints one JSON object instead of text.
Exit code 0; 1 when a program that "built" looks for is not as it should be, or cannot be looked for; 2 when the
file cannot be read; the reason is on stderr.
)";

int Print(std::string_view shown) {
  const std::string text = VisibleText(shown);
  const bool written =
      std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (written) return 0;
  std::fputs("vsinspect: the output cannot be written\n", stderr);
  return kUsageOrInput;
}

int Complain(const std::string& text) {
  std::fprintf(stderr, "%s\n", VisibleText(text).c_str());
  return kUsageOrInput;
}

int Refuse(const std::string& what) { return Complain("vsinspect: " + what + "\nTry vsinspect --help."); }

Form FormOf(const Invocation& invocation) { return invocation.Has("--json") ? Form::AsJson : Form::AsText; }

template <std::string (*report)(const std::string&, Form)>
int Show(cli::Session&, const Invocation& invocation) {
  return Print(report(invocation.operands[0], FormOf(invocation)));
}

int ShowBuilt(cli::Session&, const Invocation& invocation) {
  const std::string configuration = invocation.Value("--configuration").value_or("");
  if (configuration.empty()) return Refuse("built wants --configuration NAME, one of the solution's");
  const BuiltAnswer built = BuiltReport(invocation.operands[0], configuration, FormOf(invocation));
  const int printed = Print(built.text);
  return printed != 0 || built.isGood ? printed : kNotAsItShouldBe;
}

constexpr OptionRow kJson{"--json", "", ValueKind::None, {}, false, "print one JSON object instead of text"};
constexpr std::array kShowOptions{kJson};
constexpr std::array kBuiltOptions{
    kJson, OptionRow{"--configuration", "NAME", ValueKind::Text, {}, false, "one of the solution's"}};
constexpr std::array kSolution{OperandRow{"FILE.sln", ValueKind::File, 1, 1}};
constexpr std::array kScript{OperandRow{"FILE.rc", ValueKind::File, 1, 1}};
constexpr std::array kProgramFile{OperandRow{"FILE", ValueKind::File, 1, 1}};

constexpr std::array kCommands{
    CommandRow{"solution", kSolution, kShowOptions, "", "", "", "", Show<SolutionReport>},
    CommandRow{"version-info", kScript, kShowOptions, "", "", "", "", Show<VersionInfoReport>},
    CommandRow{"binary", kProgramFile, kShowOptions, "", "", "", "", Show<BinaryReport>},
    CommandRow{"built", kSolution, kBuiltOptions, "", "", "", "", ShowBuilt}};
constexpr std::array kOptions{cli::kHelpOption, cli::kVersionOption};
constexpr cli::ProgramRow kVsinspect{"vsinspect", kOptions, kCommands, {}};

// "a, b" and the last with `word` before it.
std::string Listed(std::span<const std::string> names, const std::string& word) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " " + word + " " : ", ";
    text += names[i];
  }
  return text;
}

std::string CommandNames(const std::string& word) {
  std::vector<std::string> names;
  for (const CommandRow& row : kCommands) names.emplace_back(row.name);
  return Listed(names, word);
}

std::string OptionsKnown(std::span<const OptionRow> rows) {
  std::vector<std::string> names;
  for (const OptionRow& row : rows) {
    names.push_back(std::string(row.name) +
                    (row.placeholder.empty() ? "" : " " + std::string(row.placeholder)));
  }
  return Listed(names, "and") + (names.size() == 1 ? " is known" : " are known");
}

// The words to know are few, so all of them are named.
std::string Reworded(const UsageFault& fault) {
  switch (fault.kind) {
    case UsageFault::Kind::UnknownCommand:
      return "unknown command " + fault.word + ": " + CommandNames("and") + " are known";
    case UsageFault::Kind::UnknownOption:
      return "unknown option " + fault.word + ": " +
             OptionsKnown(fault.command == nullptr ? std::span<const OptionRow>(kOptions)
                                                   : fault.command->options);
    case UsageFault::Kind::WrongOperands:
      return std::string(fault.command->name) + " wants one " + std::string(fault.command->operands[0].name);
    case UsageFault::Kind::WrongValue:
      break;
  }
  return fault.Message();
}

int Run(const std::vector<std::string>& arguments) {
  Invocation invocation;
  try {
    invocation = cli::ParseArguments(kVsinspect, arguments);
  } catch (const UsageFault& fault) {
    return Refuse(Reworded(fault));
  }
  if (invocation.Has("--help")) return Print(kHelp);
  if (invocation.Has("--version")) return Print("vsinspect " QX_VERSION "\n");
  if (invocation.command == nullptr) return Refuse("a command is wanted: " + CommandNames("or"));
  cli::Session session;
  return invocation.command->run(session, invocation);
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
