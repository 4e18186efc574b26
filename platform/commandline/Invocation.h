// A command line taken apart by a program's table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/commandline/CommandTable.h"
#include "plugin/Qxtypes.h"

namespace qx::cli {

struct Invocation {
  const CommandRow* command = nullptr;  // null: none was named
  std::vector<std::string> operands;
  std::vector<std::pair<std::string_view, std::string>> options;  // by the table's name, in the order given

  bool Has(std::string_view option) const;
  // The last value given for an option.
  std::optional<std::string> Value(std::string_view option) const;
  std::vector<std::string> Values(std::string_view option) const;
  // The value of a ValueKind::Number; `otherwise` where the option is not given.
  int Number(std::string_view option, int otherwise) const;
};

// What is wrong with a command line. The message names it, the nearest valid word and where help is.
class UsageFault : public Exception {
 public:
  enum class Kind { UnknownCommand, UnknownOption, WrongValue, WrongOperands };
  UsageFault(Kind what, const std::string& message, std::string unknown = {}, const CommandRow* at = nullptr)
      : Exception(message), kind(what), word(std::move(unknown)), command(at) {}
  Kind kind;
  std::string word;           // the one that is not known
  const CommandRow* command;  // whose options or operands are wrong; null: before any
};

// NAME=VALUE at its first "="; raises Exception when there is none or nothing before it.
std::pair<std::string, std::string> SplitAssignment(const std::string& text);

// A decimal number above 0; nothing for any other text.
std::optional<double> ToSeconds(std::string_view text);

// The program's options may stand anywhere; values as "--log json" or "--log=json"; "--" ends the options.
// Raises UsageFault. With --help or --version missing operands are no fault.
Invocation ParseArguments(const ProgramRow& program, const std::vector<std::string>& arguments);

}  // namespace qx::cli
