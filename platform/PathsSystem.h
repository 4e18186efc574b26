// The little about paths that differs between systems; for platform/Paths*.cpp alone.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qx::system {

// With a trailing delimiter. Raises Exception when the system does not tell.
std::string CurrentFolder();
// The length of the root a path begins with, 0 for a relative one.
std::size_t RootLength(std::string_view path);

// The path below the folder where its share is mounted; none when it begins with no mounted share.
std::optional<std::string> Mounted(std::string_view path);

}  // namespace qx::system
