// Any text as a results file: a summary of one line, or a reason.
#include <cstdlib>

#include "host/runtime/TestResults.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  try {
    const qx::TestResults results = qx::ParseTestResults({reinterpret_cast<const char*>(data), size});
    if (!qx::SummaryOf(results).starts_with("Test results: ")) std::abort();
  } catch (const qx::Exception& e) {
    if (e.Message().empty()) std::abort();
  }
  return 0;
}
