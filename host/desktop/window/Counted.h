// Numbers for a person, in groups of digits where the locale groups them.
#pragma once

#include <wx/numformatter.h>

#include <cstddef>

namespace qx::desktop {

inline wxString Number(std::size_t number) {
  return wxNumberFormatter::ToString(static_cast<wxLongLong_t>(number));
}

// "1 line", "2 lines".
inline wxString Counted(std::size_t count, const wxString& one, const wxString& many) {
  return Number(count) + " " + (count == 1 ? one : many);
}

}  // namespace qx::desktop
