// Resource scripts in the form that windres reads: a copy in UTF-8, in which file names are found as they are
// on disk and statements that windres does not know are said in ones that it does. The script itself stays as
// it is.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

struct ResourceCopy {
  std::string text;                // UTF-8
  std::vector<std::string> notes;  // what was changed that a user may wonder at, one line each
};

// The file that a name in a script means: an icon, or a script or header that it includes.
struct ResourceName {
  std::string name;
  bool included = false;
};
// An absolute path with "/"; empty: leave the name as it is.
using ResourceResolver = std::function<std::string(const ResourceName&)>;

// `bytes`: the script as it lies on disk. `codePage`: of scripts that do not say theirs. `path`: its own,
// which errors will name.
ResourceCopy TranslateResourceScript(std::string_view bytes, std::uint32_t codePage, const std::string& path,
                                     const ResourceResolver& resolve);

// The ANSI code page of a language ("1041": 932); 1252 for those that have no other.
std::uint32_t CodePageOfCulture(std::string_view culture);

}  // namespace qx
