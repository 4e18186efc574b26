// Project files of any bytes: the scan gives a list or raises its exception.
#include "plugin/Qxtypes.h"
#include "solution/VcprojScan.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), size);
  qx::XmlDocument document;
  try {
    qx::ListedResourceScripts(bytes, document);
  } catch (const qx::Exception&) {
    // A refusal is an answer.
  }
  return 0;
}
