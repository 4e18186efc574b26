// The little about paths that differs between systems; for platform/files/Paths*.cpp alone.
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

// The length of the drive that a path begins with ("C:"); 0 outside Windows, where that is part of a name.
std::size_t DriveLength(std::string_view path);
// Whether a path begins at the root of a drive that it does not name ("\x"); never outside Windows.
bool LacksDrive(std::string_view path);

// The path below the folder where its share is mounted; none when it begins with no mounted share.
std::optional<std::string> Mounted(std::string_view path);

}  // namespace qx::system
