// Any bytes as a baseline: a reason, or a baseline; and any bytes as a diagnostic, which the baseline that is
// written from it holds.
#include <cstdlib>

#include "host/diagnostics/Baseline.h"
#include "plugin/Qxtypes.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    static_cast<void>(qx::Baseline::Read(text, "/src"));
  } catch (const qx::Exception& e) {
    if (e.Message().empty()) std::abort();
  }
  qx::Diagnostic diagnostic;
  diagnostic.code = text.substr(0, size / 4);
  diagnostic.file = text.substr(size / 4, size / 4);
  diagnostic.message = text.substr(size / 2);
  const std::string written = qx::BaselineText({&diagnostic, 1}, "/src");
  if (!qx::Baseline::Read(written, "/src").Holds(diagnostic)) std::abort();
  return 0;
}
