// What a built program or library says about itself: machine, version resource, assembly name. For Windows
// programs of 32 and 64 bits (PE), with and without .NET. Only the parts that are wanted are read, so that
// thousands can be.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "programs/ByteSource.h"
#include "programs/CliMetadata.h"
#include "programs/VersionResource.h"

namespace qx {

struct ProgramFile {
  std::uint16_t machine = 0;  // MachineName gives its name
  bool isManaged = false;     // it holds CLI metadata
  std::optional<AssemblyName> assembly;
  std::optional<VersionResource> version;
};

// Raises "Cannot read FILE: REASON" for a file that is no such program, is cut off or damaged.
ProgramFile ReadProgram(const std::string& path);

// The same from any bytes; raises Exception with the reason alone.
ProgramFile ReadProgram(ByteSource& bytes);

}  // namespace qx
