// A record is read from a file that may be damaged in any way.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/history/KeptRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto record = qx::ReadKeptRun(bytes);
  if (!record) return 0;
  for (const qx::KeptContent& content : record->contents) {
    if (content.whole > (1u << 20)) return 0;
  }
  qx::KeptContents contents(*record, bytes);
  for (const qx::KeptContent& content : record->contents) contents.Find(content.digest);
  return 0;
}
