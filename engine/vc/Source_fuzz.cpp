// What the builder reads line by line: sources, module definitions, dependency files and the output of tools.
#include <algorithm>

#include "engine/vc/BuildRecord.h"
#include "engine/vc/DefFile.h"
#include "engine/vc/Diagnostics.h"
#include "engine/vc/IncludeScan.h"
#include "engine/vc/OldLiterals.h"
#include "platform/Texts.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto& include : qx::ScanSource(text).includes) {
    if (include.name.empty()) __builtin_trap();
  }
  const std::string literals = qx::WithNewLiterals(text);
  if (std::ranges::count(literals, '\n') != std::ranges::count(text, '\n')) __builtin_trap();
  const std::string definitions = qx::DefFileForLd(text);
  if (!definitions.starts_with("EXPORTS\n")) __builtin_trap();
  qx::DefFileWithStdcall(definitions, text);
  for (const std::string& name : qx::DependenciesIn(text)) {
    if (name.empty()) __builtin_trap();
  }
  qx::Diagnostics diagnostics("@ ", [](std::string_view) {});
  qx::ForEachLine(text, [&](std::string_view line) { diagnostics.Line(line); });
  return 0;
}
