// The environment of this process: names are exact here, but build projects come from a system where they are not.
#include <unistd.h>

#include <cstdlib>

#include "platform/Environment.h"
#include "platform/Texts.h"

namespace qx {

std::optional<std::string> ReadEnvironment(const std::string& name) {
  if (const char* value = std::getenv(name.c_str())) return value;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view line(*entry);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || !SameText(line.substr(0, equals), name)) continue;
    return std::string(line.substr(equals + 1));
  }
  return std::nullopt;
}

}  // namespace qx
