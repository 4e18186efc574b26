// Any text splits; what it splits into, quoted and joined, splits into the same again.
#include <cstdint>
#include <cstdlib>

#include "platform/CommandLine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> arguments = qx::SplitCommandLine(text);
  std::string joined;
  std::size_t bytes = 0;
  for (const std::string& argument : arguments) {
    joined += qx::QuoteArgument(argument) + " ";
    bytes += argument.size();
  }
  if (bytes > size || qx::SplitCommandLine(joined) != arguments) std::abort();
  const std::vector<std::string> whole = qx::SplitCommandLine(qx::QuoteArgument(text));
  if (whole.size() != 1 || whole.front() != text) std::abort();
  return 0;
}
