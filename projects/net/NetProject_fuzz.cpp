// Project files of any bytes: the reader gives a project or raises its exception. What a file imports is the
// file itself again.
#include "plugin/Qxtypes.h"
#include "projects/net/NetOutput.h"
#include "projects/net/NetResources.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  qx::NetSelection selection;
  selection.configuration = "Release";
  for (const char* name : {"/nowhere/P.csproj", "/nowhere/P.vbproj"}) {
    std::string copy = bytes;
    try {
      const qx::NetProject project = qx::ParseNetProject(
          copy, name, selection, [&bytes](const std::string&) { return std::optional<std::string>(bytes); });
      const qx::NetOutput output = qx::WhereOutputLies(project);
      if (output.path.empty() == output.reason.empty()) __builtin_trap();
      for (const qx::NetFile& file : project.files) qx::NameOfResource(project, file, "");
    } catch (const qx::Exception&) {
      // A refusal is an answer.
    }
  }
  return 0;
}
