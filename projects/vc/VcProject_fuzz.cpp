// Project files and property sheets of any bytes: a project with its configurations worked out, or an
// exception. The bytes are the project and every sheet it asks for.
#include "plugin/Qxtypes.h"
#include "projects/vc/VcSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    std::string buffer = bytes;
    const qx::VcProject project = qx::ReadVcProject(buffer);
    for (const qx::VcConfiguration& configuration : project.configurations) {
      qx::VcPlace place{"/p/a.vcproj", "/p/a.sln", configuration.name, configuration.platform, {}, {}};
      place.readSheet = [&](const std::string&) { return std::optional<std::string>(bytes); };
      try {
        const qx::VcSettings settings(project, place);
        settings.ImportLibrary();
        settings.IntermediateFolder();
        for (const qx::VcFile& file : settings.Project().files) {
          settings.IsExcluded(file);
          settings.List(settings.ToolOf(file), "PreprocessorDefinitions", qx::VcList::Defines, &file);
          settings.Expand(file.path, &file, qx::VcPaths::ForCommands);
        }
      } catch (const qx::Exception&) {
        // A refusal is an answer.
      }
    }
  } catch (const qx::Exception&) {
  }
  try {
    std::string buffer = bytes;
    qx::ReadVcSheet(buffer);
  } catch (const qx::Exception&) {
  }
  return 0;
}
