#include "platform/CommandLine.h"

#include <algorithm>

namespace qx {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Reads one argument from the front of `rest`, which begins with something other than a blank. A folder's
// backslash before the closing quote takes the quote's meaning away, as on Windows (docs/deliberate.md).
std::string TakeArgument(std::string_view& rest) {
  std::string argument;
  bool quoted = false;
  while (!rest.empty() && (quoted || !IsBlank(rest.front()))) {
    const std::size_t backslashes = std::min(rest.find_first_not_of('\\'), rest.size());
    rest.remove_prefix(backslashes);
    if (rest.empty() || rest.front() != '"') {  // not before a quote: backslashes are just text
      argument.append(backslashes, '\\');
      if (backslashes == 0) {
        argument += rest.front();
        rest.remove_prefix(1);
      }
      continue;
    }
    rest.remove_prefix(1);
    argument.append(backslashes / 2, '\\');
    if (backslashes % 2 == 1) {
      argument += '"';
    } else if (quoted && !rest.empty() && rest.front() == '"') {
      argument += '"';
      rest.remove_prefix(1);
    } else {
      quoted = !quoted;
    }
  }
  return argument;
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view parameters) {
  std::vector<std::string> arguments;
  for (;;) {
    const std::size_t start = parameters.find_first_not_of(" \t");
    if (start == std::string_view::npos) return arguments;
    parameters.remove_prefix(start);
    arguments.push_back(TakeArgument(parameters));
  }
}

std::string QuoteArgument(std::string_view argument) {
  const bool needsQuotes = argument.empty() || argument.find_first_of(" \t") != std::string_view::npos;
  std::string text(needsQuotes ? "\"" : "");
  std::size_t backslashes = 0;  // how many stand directly before the place we are at
  for (const char c : argument) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  if (needsQuotes) text.append(backslashes, '\\') += '"';
  return text;
}

}  // namespace qx
