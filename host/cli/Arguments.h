// The command line taken apart by the command table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/cli/CommandTable.h"

namespace qx::cli {

struct Invocation {
  const CommandRow* command = nullptr;  // null: none was named
  std::vector<std::string> operands;
  std::vector<std::pair<std::string_view, std::string>> options;  // by the table's name, in the order given

  bool Has(std::string_view option) const;
  // The last value given for an option.
  std::optional<std::string> Value(std::string_view option) const;
  std::vector<std::string> Values(std::string_view option) const;
};

// NAME=VALUE at its first "="; raises Exception when there is none or nothing before it.
std::pair<std::string, std::string> SplitAssignment(const std::string& text);

// What --action says, 1 without it.
int ActionNumber(const Invocation& invocation);

// A decimal number above 0; nothing for any other text.
std::optional<double> ToSeconds(std::string_view text);

// Global options may stand anywhere; values as "--log json" or "--log=json"; "--" ends the options. Raises
// Exception that names what is wrong and the nearest valid word. With --help or --version missing operands
// are no error.
Invocation ParseArguments(const std::vector<std::string>& arguments);

}  // namespace qx::cli
