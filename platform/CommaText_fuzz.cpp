// Comma-text of any bytes: splitting ends, and what was split comes back through joining.
#include <cstdlib>

#include "platform/Texts.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> items = qx::SplitCommaText(text);
  if (qx::SplitCommaText(qx::JoinCommaText(items)) != items) std::abort();
  return 0;
}
