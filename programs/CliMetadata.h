// The name that a .NET program bears in its CLI metadata: the one row of the Assembly table. Raises Exception
// with the reason alone.
#pragma once

#include <optional>
#include <string>

#include "programs/PeImage.h"
#include "programs/VersionResource.h"

namespace qx {

struct AssemblyName {
  std::string name;
  BinaryVersion version{};
  std::string culture;  // empty: neutral
};

bool IsManaged(const PeImage& image);

// None for a program without CLI metadata, and for a module that is no assembly.
std::optional<AssemblyName> ReadAssemblyName(const PeImage& image);

}  // namespace qx
