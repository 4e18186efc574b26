// What a program takes on its command line, as a table: commands, what they take, their options, help and
// examples. The parser (Invocation.h) reads it, and so does whatever is written from it: help, shell
// completion, a man page.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qx::cli {

// What the commands of a program work on. Each program with commands has a class of this name of its own.
class Session;
struct Invocation;

// What a value is, for completion and for checking.
enum class ValueKind { None, File, Choice, Number, Seconds, Text, Assignment, Action, Command };

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

inline constexpr int kAny = 1 << 20;

struct CommandRow {
  std::string_view name;
  std::span<const OperandRow> operands;
  std::span<const OptionRow> options;
  std::string_view summary;  // one line
  std::string_view details;  // paragraphs, one a line
  std::string_view example;  // one line of shell
  std::string_view outcome;  // what the example does
  int (*run)(Session& session, const Invocation& invocation);
  std::string (*furtherDetails)() = nullptr;  // paragraphs behind the details that another table gives
};

struct ProgramRow {
  std::string_view name;
  std::span<const OptionRow> options;    // with every command, and without one
  std::span<const CommandRow> commands;  // empty: the program does one thing
  std::span<const OperandRow> operands;  // of a program without commands
};

// What programs have in common. "-h" is "--help" too.
inline constexpr OptionRow kHelpOption{"--help", "",    ValueKind::None,
                                       {},       false, "show help, of a command when one is named"};
inline constexpr OptionRow kVersionOption{"--version", "", ValueKind::None, {}, false, "show the version"};

// Null when the program has no command of that name.
const CommandRow* FindCommand(const ProgramRow& program, std::string_view name);

}  // namespace qx::cli
