// Resources in XML (.resx) compiled to the binary form that assemblies hold, by mono's resgen.
#pragma once

#include <string>
#include <vector>

#include "engine/Console.h"
#include "engine/dotnet/CompilePlan.h"

namespace qx {

// What a resource's compiled form is made from: the file itself and the files that it names.
std::vector<std::string> InputsOfResource(const PlannedResource& resource);

// Compiles those that are not fresh, through files in `scratch` (a folder that exists). The answer is why it
// failed, one line; empty: it did not.
std::string CompileResources(const CompilePlan& plan, const std::string& scratch, Console& console);

}  // namespace qx
