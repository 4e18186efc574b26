// Resource scripts of any bytes become a copy in UTF-8, or an exception.
#include "engine/vc/ResourceScript.h"
#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  try {
    const qx::ResourceCopy copy = qx::TranslateResourceScript(
        bytes, 932, "/x/a.rc", [](const qx::ResourceName& name) { return name.included ? "" : "/found"; });
    if (!qx::IsValidUtf8(copy.text)) __builtin_trap();
  } catch (const qx::Exception&) {
    // A refusal is an answer.
  }
  return 0;
}
