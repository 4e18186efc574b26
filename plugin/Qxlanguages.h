// The host's table of Windows languages: every locale identifier (LCID) that has a name, sorted by name.
#pragma once

#include <cstdint>
#include <string>

#include "plugin/Qxtypes.h"

namespace qx {

class QX_API TQXLanguages {
 public:
  int GetCount() const;
  // English name with its region, "German (Austria)"; raises Exception for an index out of range.
  std::string GetName(int index) const;
  // Locale identifier, 0x0C07; 0, which is no language, for the index -1 that IndexOf gives for an unknown one.
  std::int32_t GetLCID(int index) const;
  // Index of a locale identifier, -1 when the table has none.
  int IndexOf(std::int32_t lcid) const;
};

QX_API const TQXLanguages& QXLanguages();

}  // namespace qx
