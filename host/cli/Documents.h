// What is written from the command table: help, shell completion and the man page.
#pragma once

#include <string>

#include "host/cli/CommandTable.h"

namespace qx::cli {

std::string ProgramHelp();
std::string CommandHelp(const CommandRow& command);
// "FILE ACTION [NAME=VALUE]..."
std::string OperandUsage(const CommandRow& command);

std::string BashCompletion();
std::string ZshCompletion();
// In the man macros.
std::string ManPage();

}  // namespace qx::cli
