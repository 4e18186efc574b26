// What is written from the command table: help, shell completion and the man page.
#pragma once

#include <span>
#include <string>

#include "host/cli/CommandTable.h"

namespace qx::cli {

class Session;

std::string ProgramHelp();
std::string CommandHelp(const CommandRow& command);
// "FILE ACTION [NAME=VALUE]..."
std::string OperandUsage(const CommandRow& command);

std::string BashCompletion();
std::string ZshCompletion();
// What may stand where NAME=VALUE is typed, a line each, for the words behind --print-words: "options", "action NAME",
// "file FILE N". Nothing where none of it can be known.
std::string CompletionWords(Session& session, std::span<const std::string> words);
// In the man macros.
std::string ManPage();

}  // namespace qx::cli
