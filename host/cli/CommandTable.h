// The command line of qxhost: its commands, their options, help and examples, and the exit codes. Parsing,
// help, shell completion and the man page are all made from it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/commandline/CommandTable.h"

namespace qx::cli {

const ProgramRow& TheProgram();

// The paragraphs of a command's details, all of them.
std::vector<std::string> DetailsOf(const CommandRow& command);

struct ExitCodeRow {
  int code;
  std::string_view meaning;
};
std::span<const ExitCodeRow> ExitCodes();

}  // namespace qx::cli
