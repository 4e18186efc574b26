// Programs of any bytes: the reader answers or raises its exception, whatever stands in the file.
#include "plugin/Qxtypes.h"
#include "programs/ProgramFile.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  qx::MemoryBytes source(std::string_view(reinterpret_cast<const char*>(data), size));
  try {
    qx::ReadProgram(source);
  } catch (const qx::Exception&) {
    // A refusal is an answer.
  }
  return 0;
}
