// The products themselves are the engine here: nothing is brought along, and nothing is handed on.
#include "host/settings/Engine.h"

namespace qx {

std::string InstalledEngineFolder() { return {}; }

std::string EngineRegistry(const std::string&) { return {}; }

void ApplyEngineSettings(const EngineSettings&) {}

}  // namespace qx
