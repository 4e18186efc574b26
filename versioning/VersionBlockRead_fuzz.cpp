// The reader takes any bytes: it gives values or one of its errors, and what it reads can be written and read again.
#include <cstdlib>
#include <string>

#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"
#include "versioning/VersionBlock.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string decoded;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  qx::VersionReading reading;
  try {
    reading = qx::ReadVersionBlock(qx::DecodeText(bytes, decoded), "App.rc");
  } catch (const qx::Exception&) {
    return 0;
  }
  qx::VersionValues values;
  values.numbers = reading.numbers.value_or(values.numbers);
  values.flags = reading.flags.value_or(values.flags);
  values.locale = reading.locale.value_or(0);
  values.codePage = reading.codePage.value_or(0);
  const std::string block = qx::WriteVersionBlock(values, {});
  const qx::VersionReading again = qx::ReadVersionBlock(block, "App.rc");
  if (again.numbers != values.numbers || again.flags != values.flags || again.codePage != values.codePage ||
      again.locale != values.locale) {
    std::abort();
  }
  return 0;
}
