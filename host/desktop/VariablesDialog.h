// The variables of a build project in a grid that can be edited.
#pragma once

#include <wx/window.h>

#include <string>
#include <utility>
#include <vector>

namespace qx::desktop {

// True when the user has confirmed; they are then in `variables`. Rows without a name are left out.
bool AskForVariables(wxWindow* parent, std::vector<std::pair<std::string, std::string>>& variables);

}  // namespace qx::desktop
