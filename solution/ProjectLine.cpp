#include "solution/ProjectLine.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::string_view kProjectStart = "Project(\"";
// Braces included; what stands there is not examined (docs/deliberate.md).
constexpr std::size_t kTypeSize = 38;

}  // namespace

bool IsProjectLine(std::string_view line) { return line.starts_with(kProjectStart); }

ProjectLine ReadProjectLine(std::string_view line) {
  std::string_view rest = line.substr(std::min(kProjectStart.size(), line.size()));
  ProjectLine read;
  read.typeGuid = rest.substr(0, kTypeSize);
  rest.remove_prefix(std::min(kTypeSize, rest.size()));
  const std::size_t equals = rest.find('=');
  if (equals == std::string_view::npos) throw Exception("Error parsing project string");
  std::vector<std::string> items = SplitCommaText(TrimView(rest.substr(equals + 1)));
  if (items.size() < 3) throw Exception("Error parsing project string");
  read.name = std::move(items[0]);
  read.path = std::move(items[1]);
  read.guid = std::move(items[2]);
  return read;
}

}  // namespace qx
