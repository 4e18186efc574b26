// What the page driver shows of a control.
#pragma once

#include <nlohmann/json.hpp>

#include "plugin/Qxcontrols.h"

namespace qx {

// Name, kind, caption, hint, tab order, enabled (as the user meets it; ownEnabled is its own flag), the name of
// the control it stands in, and what its kind has. A masked text comes as a user sees it: one "*" a character.
nlohmann::ordered_json StateOf(const TControl& control);

}  // namespace qx
