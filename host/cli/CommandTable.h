// The one table of the command line: commands, what they take, their options, help and examples. Parsing,
// help, shell completion and the man page are all made from it.
#pragma once

#include <span>
#include <string_view>

namespace qx::cli {

class Session;
struct Invocation;

// What a value is, for completion and for checking.
enum class ValueKind { None, File, Folder, Choice, Number, Seconds, Text, Assignment, Action, Command };

struct OptionRow {
  std::string_view name;         // with its dashes
  std::string_view placeholder;  // of its value; empty: the option has none
  ValueKind kind;
  std::span<const std::string_view> choices;  // of ValueKind::Choice
  bool repeats;                               // may be given several times; otherwise twice is an error
  std::string_view help;                      // one line
};

struct OperandRow {
  std::string_view name;
  ValueKind kind;
  int least;  // how many there must be, and may be; kAny: without a limit
  int most;
};

struct CommandRow {
  std::string_view name;
  std::span<const OperandRow> operands;
  std::span<const OptionRow> options;
  std::string_view summary;  // one line
  std::string_view details;  // paragraphs, one a line
  std::string_view example;  // one line of shell
  std::string_view outcome;  // what the example does
  int (*run)(Session& session, const Invocation& invocation);
};

inline constexpr int kAny = 1 << 20;

std::span<const OptionRow> GlobalOptions();
std::span<const CommandRow> Commands();
// Null when there is none of that name.
const CommandRow* FindCommand(std::string_view name);

struct ExitCodeRow {
  int code;
  std::string_view meaning;
};
std::span<const ExitCodeRow> ExitCodes();

}  // namespace qx::cli
