#include "programs/ProgramFile.h"

#include "plugin/Qxtypes.h"

namespace qx {

ProgramFile ReadProgram(ByteSource& bytes) {
  const PeImage image(bytes);
  ProgramFile program;
  program.machine = image.Machine();
  program.isManaged = IsManaged(image);
  program.assembly = ReadAssemblyName(image);
  if (const auto block = FindVersionResource(image)) program.version = ReadVersionResource(*block);
  return program;
}

ProgramFile ReadProgram(const std::string& path) {
  FileBytes bytes(path);
  try {
    return ReadProgram(bytes);
  } catch (const Exception& error) {
    throw Exception("Cannot read " + path + ": " + error.Message());
  }
}

}  // namespace qx
