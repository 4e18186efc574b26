// The difference of two files as a unified diff that `patch` applies. Bytes in, bytes out.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qx {

// From `before` to `after`, either of which may be no file at all; with three lines of context. `name` is
// what the file is called behind "a/" and "b/", with "/" as its delimiter. Empty when the two are equal.
// Files that have little in common are given as one replaced stretch: right, if not the shortest.
std::string UnifiedDiff(const std::string& name, std::optional<std::string_view> before,
                        std::optional<std::string_view> after);

}  // namespace qx
