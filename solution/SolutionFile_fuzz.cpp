// Solutions of any bytes: the reader gives a model or raises its exception, whatever stands in the file. The
// files that projects may name exist: one C# project, one C++ project with a resource script.
#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"
#include "solution/MemoryFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static qx::MemoryFiles* const files = [] {
    auto* made = new qx::MemoryFiles;  // kept for the process
    made->Put("A.csproj", "");
    made->Put("C.vcproj",
              "<VisualStudioProject><Files><Filter><File "
              "RelativePath='a.rc'/></Filter></Files></VisualStudioProject>");
    made->Put("a.rc", "1 VERSIONINFO");
    return made;
  }();
  std::string scratch;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  try {
    qx::ReadSolution(qx::MemoryFiles::Solution(), qx::DecodeText(bytes, scratch), *files);
  } catch (const qx::Exception&) {
    // A refusal is an answer.
  }
  return 0;
}
