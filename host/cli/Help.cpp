#include <algorithm>

#include "host/cli/Commands.h"
#include "host/cli/Documents.h"
#include "host/cli/Session.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

constexpr std::size_t kWidth = 80;

// The words of a paragraph in lines of kWidth columns, every line after the first indented; `column` is where
// the first one begins.
std::string Wrapped(std::string_view paragraph, std::size_t indent, std::size_t column) {
  std::string out;
  while (!paragraph.empty()) {
    const std::size_t end = std::min(paragraph.find(' '), paragraph.size());
    const std::string_view word = paragraph.substr(0, end);
    const bool first = column <= indent;
    if (!first && column + 1 + word.size() > kWidth) {
      out += "\n" + std::string(indent, ' ');
      column = indent;
    } else if (!first) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
    paragraph.remove_prefix(std::min(end + 1, paragraph.size()));
  }
  return out + "\n";
}

std::string Row(const std::string& left, std::string_view right) {
  constexpr std::size_t column = 24;
  std::string line = "  " + left;
  line += line.size() + 2 > column ? "\n" + std::string(column, ' ') : std::string(column - line.size(), ' ');
  return line + Wrapped(right, column, column);
}

std::string OptionRows(std::span<const OptionRow> rows) {
  std::string text;
  for (const OptionRow& row : rows) {
    std::string left(row.name);
    if (!row.placeholder.empty()) left.append(" ").append(row.placeholder);
    text += Row(left, std::string(row.help) + (row.repeats ? " (may be repeated)" : ""));
  }
  return text;
}

}  // namespace

std::string OperandUsage(const CommandRow& command) {
  std::string usage;
  for (const OperandRow& row : command.operands) {
    const std::string name(row.name);
    usage += (usage.empty() ? "" : " ") + (row.least == 0 ? "[" + name + "]" : name) +
             (row.most == kAny ? "..." : "");
  }
  return usage;
}

std::string ProgramHelp() {
  std::string text =
      "usage: qxhost [GLOBAL OPTION]... COMMAND ...\n\nRuns build projects with the actions of "
      "packages.\n\nCommands:\n";
  for (const CommandRow& row : TheProgram().commands) text += Row(std::string(row.name), row.summary);
  text += "\nGlobal options:\n" + OptionRows(TheProgram().options) + "\nExit codes:\n";
  for (const ExitCodeRow& row : ExitCodes()) text += Row(std::to_string(row.code), row.meaning);
  return text +
         "\nFrom a solution, in two commands:\n"
         "  qxhost init App.sln --stamp\n"
         "  qxhost run App.build.xml\n"
         "\nBy hand, in three:\n"
         "  qxhost new nightly.xml\n"
         "  qxhost add nightly.xml ACTION NAME=VALUE   (qxhost actions lists the actions)\n"
         "  qxhost run nightly.xml\n\nSee qxhost help COMMAND for more.\n";
}

std::string CommandHelp(const CommandRow& command) {
  const std::string operands = OperandUsage(command);
  std::string text = "usage: qxhost " + std::string(command.name);
  for (const OptionRow& row : command.options) {
    text.append(" [").append(row.name).append(row.placeholder.empty() ? "" : " ").append(row.placeholder);
    text += row.repeats ? "]..." : "]";
  }
  text += (operands.empty() ? "" : " " + operands) + "\n\n";
  std::string summary(command.summary);
  summary[0] = static_cast<char>(summary[0] - 'a' + 'A');
  text += summary + ".\n";
  for (const std::string& paragraph : DetailsOf(command)) text += "\n" + Wrapped(paragraph, 0, 0);
  if (!command.options.empty()) text += "\nOptions:\n" + OptionRows(command.options);
  text += "\nExample:\n  " + std::string(command.example) + "\n    " + std::string(command.outcome) + "\n";
  return text + "\nSee qxhost --help for the global options and the exit codes.\n";
}

int ShowHelp(Session& session, const Invocation& invocation) {
  if (invocation.operands.empty()) {
    session.Print(ProgramHelp());
    return 0;
  }
  const CommandRow* command = FindCommand(TheProgram(), invocation.operands[0]);
  if (command == nullptr) {
    std::vector<std::string> names;
    for (const CommandRow& row : TheProgram().commands) names.emplace_back(row.name);
    throw Exception("Unknown command " + Quoted(invocation.operands[0]) +
                    NameAdvice(invocation.operands[0], names) + "; see qxhost --help");
  }
  session.Print(CommandHelp(*command));
  return 0;
}

}  // namespace qx::cli
