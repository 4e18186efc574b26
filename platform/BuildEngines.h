// The build engines that a machine outside Windows may have on its PATH: the host asks whether one is there,
// and the front hands builds over to it. Header-only.
#pragma once

namespace qx {

struct BuildEngine {
  const char* program;
  const char* argument;  // what makes the program an engine; null when it is one by itself
};

// In the order of preference: the newest engine first.
inline constexpr BuildEngine kBuildEngines[] = {
    {"msbuild", nullptr}, {"dotnet", "msbuild"}, {"xbuild", nullptr}};

}  // namespace qx
