// The environment of this process, read the way build projects expect it: names regardless of letter case.
// One source a system.
#pragma once

#include <optional>
#include <string>

namespace qx {

// Looks a name up: as it stands first, then without regard to letter case (Windows never regards it). Values
// are UTF-8 on Windows, bytes as they stand elsewhere. Safe from any thread while nobody writes.
std::optional<std::string> ReadEnvironment(const std::string& name);

}  // namespace qx
